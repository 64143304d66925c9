#include "QtTabBar.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QToolButton>

QtTabBar::QtTabBar(QWidget *parent)
    : QtWidgetBase(parent)
{
    setMinimumHeight(26);
}

void QtTabBar::ensureLayout()
{
    if (m_layout)
        return;
    m_layout = new QHBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_btnGroup = new QButtonGroup(this);
    m_btnGroup->setExclusive(true);
    connect(m_btnGroup, SIGNAL(buttonClicked(int)), this, SIGNAL(signalClicked(int)));
}

void QtTabBar::setTabTitles(const QStringList &titles)
{
    // the tabs are built once; a second call would pile tabs after the stretch
    if (m_bTabsBuilt)
        return;
    m_bTabsBuilt = true;
    ensureLayout();
    for (int i = 0; i < titles.size(); ++i) {
        QToolButton *btn = new QToolButton(this);
        btn->setCheckable(true);
        btn->setCursor(Qt::PointingHandCursor);
        btn->setText(titles.at(i));
        btn->setChecked(i == 0);
        m_btnGroup->addButton(btn, i);
        // before anything added to the right end already
        m_layout->insertWidget(i, btn);
    }
    m_layout->insertStretch(titles.size());
}

int QtTabBar::currentIndex() const
{
    return m_btnGroup ? m_btnGroup->checkedId() : -1;
}

void QtTabBar::setCurrentIndex(int index)
{
    if (!m_btnGroup)
        return;
    if (QAbstractButton *btn = m_btnGroup->button(index))
        btn->setChecked(true);
}

void QtTabBar::addLayout(QLayout *layout)
{
    ensureLayout();
    m_layout->addLayout(layout);
}

void QtTabBar::addWidget(QWidget *widget)
{
    ensureLayout();
    m_layout->addWidget(widget);
}
