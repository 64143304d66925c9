#include "ColorRole.h"

ColorRole::ColorRole(int id, const QRect &rect, const QColor &color)
    : m_nId(id)
    , m_rect(rect)
    , m_color(color)
{
}
