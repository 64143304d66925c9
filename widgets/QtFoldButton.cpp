#include "QtFoldButton.h"
#include "IconHelper.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

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

QtFoldButton *QtFoldButton::layOutPage(QWidget *page, QWidget *column, QWidget *view, QWidget *sendBox,
                                       int margin, int spacing, int viewSpacing)
{
    auto *fold = new QtFoldButton(column, page);
    auto *right = new QVBoxLayout();
    right->setContentsMargins(0, 0, 0, 0);
    right->setSpacing(viewSpacing);
    right->addWidget(view, 1);
    right->addWidget(sendBox);

    auto *layout = new QHBoxLayout(page);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(spacing);
    layout->addWidget(column);
    layout->addWidget(fold, 0, Qt::AlignVCenter);
    layout->addLayout(right, 1);
    connect(fold, SIGNAL(clicked()), page, SLOT(SltBtnFoldClicked()));
    return fold;
}
