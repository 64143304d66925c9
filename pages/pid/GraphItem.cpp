#include "GraphItem.h"

GraphItem::GraphItem(int id, QColor color, QString text, bool checked)
    : m_id(id)
    , m_color(color)
    , m_text(text)
    , m_checked(checked)
{
}
