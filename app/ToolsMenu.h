#ifndef TOOLSMENU_H
#define TOOLSMENU_H

#include <QMenu>

#include <functional>

class QAction;
class QStackedWidget;
class QtWidgetBase;

// The "工具" menu: the additions that act on the page shown (capture, reopen, control
// lines, plots, automation, the editor's file commands). An entry that does not apply
// to the page shown is disabled, not hidden; the test runs each time the menu opens
// and each time the page changes, so keyboard shortcuts follow it too.
class ToolsMenu : public QMenu
{
    Q_OBJECT
public:
    // whether an entry applies to the page at this index of the stack
    using Applies = std::function<bool(int index, QtWidgetBase *page)>;

    ToolsMenu(QStackedWidget *pages, QWidget *parent = nullptr);

    // an entry of the menu (or of `into`, a submenu of it); its shortcut, if any, is
    // live in the whole window while the entry is enabled
    QAction *addPageAction(const QString &text, const Applies &applies, QMenu *into = nullptr);
    // a submenu enabled as a whole by `applies`
    QMenu *addPageMenu(const QString &title, const Applies &applies);

    // every page with a link tap; the editor page has none
    static bool hasLink(int index, QtWidgetBase *page);
    // the three pages that open serial ports: 0 serial, 1 camera, 3 PID
    static bool isSerialPage(int index, QtWidgetBase *page);

    QtWidgetBase *currentPage() const;
    int currentIndex() const;

public slots:
    void SltUpdateEntries();

private:
    QStackedWidget *m_pages;
    QList<QPair<QAction *, Applies>> m_entries;
};

#endif // TOOLSMENU_H
