#include "ToolsMenu.h"

#include "QtWidgetBase.h"

#include <QAction>
#include <QStackedWidget>

ToolsMenu::ToolsMenu(QStackedWidget *pages, QWidget *parent)
    : QMenu(parent)
    , m_pages(pages)
{
    setObjectName("menuTools");
    connect(this, SIGNAL(aboutToShow()), this, SLOT(SltUpdateEntries()));
    connect(m_pages, SIGNAL(currentChanged(int)), this, SLOT(SltUpdateEntries()));
}

QAction *ToolsMenu::addPageAction(const QString &text, const Applies &applies, QMenu *into)
{
    QAction *action = (into ? into : this)->addAction(text);
    // shortcuts work while the menu is closed: the window holds the action too
    if (parentWidget())
        parentWidget()->addAction(action);
    action->setShortcutContext(Qt::WindowShortcut);
    m_entries.append({action, applies});
    action->setEnabled(applies(currentIndex(), currentPage()));
    return action;
}

QMenu *ToolsMenu::addPageMenu(const QString &title, const Applies &applies)
{
    QMenu *sub = addMenu(title);
    m_entries.append({sub->menuAction(), applies});
    sub->menuAction()->setEnabled(applies(currentIndex(), currentPage()));
    return sub;
}

bool ToolsMenu::hasLink(int, QtWidgetBase *page)
{
    return page && page->linkTap();
}

bool ToolsMenu::isSerialPage(int index, QtWidgetBase *)
{
    return index == 0 || index == 1 || index == 3;
}

QtWidgetBase *ToolsMenu::currentPage() const
{
    return qobject_cast<QtWidgetBase *>(m_pages->currentWidget());
}

int ToolsMenu::currentIndex() const
{
    return m_pages->currentIndex();
}

void ToolsMenu::SltUpdateEntries()
{
    const int index = currentIndex();
    QtWidgetBase *page = currentPage();
    for (const auto &entry : qAsConst(m_entries))
        entry.first->setEnabled(entry.second(index, page));
}
