#include "QtFoldButton.h"
#include "IconHelper.h"

QtFoldButton::QtFoldButton(QWidget *column, QWidget *parent)
    : QToolButton(parent)
    , m_widgetColumn(column)
{
    setObjectName("btnFold");
    setFixedSize(6, 170);
    setCursor(Qt::PointingHandCursor);
    updateLook(true);
}

void QtFoldButton::SltBtnFoldClicked()
{
    m_widgetColumn->setVisible(!m_widgetColumn->isVisible());
    updateLook(m_widgetColumn->isVisible());
}

void QtFoldButton::updateLook(bool shown)
{
    IconHelper::Instance()->setIcon(this, QChar(shown ? 0xE6A7 : 0xE6AF), 8);
    setToolTip(shown ? "隐藏配置界面" : "显示配置界面");
}
