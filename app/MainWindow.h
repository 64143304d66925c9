#ifndef MAINWINDOW_H
#define MAINWINDOW_H

#include "QtMainWindow.h"

class QAction;
class QStackedWidget;
class QtMessageTip;
class QtStatusBar;
class QtTabBar;
class QtTitleBar;
class QtWaitDialog;
class QtWidgetBase;
class LinkTools;
class ToolsMenu;

// The one top-level window: title bar, tab bar, the stack of the five tool pages and
// the status bar. It routes each page's notifications and counts to the status bar.
class MainWindow : public QtMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // where the help page and the maker's site live
    static const char *const HelpUrl;
    static const char *const MakerUrl;
    // the manual installed with this copy as a file URL, HelpUrl when there is none
    static QString helpUrl();
    // version, license, manual and maker's address, for a user without a browser
    static QString aboutText();

    QStackedWidget *stackedWidget() const { return m_stackedWidget; }
    QtStatusBar *statusBar() const { return m_statusBar; }
    QtTabBar *tabBar() const { return m_tabBar; }
    QtTitleBar *titleBar() const { return m_titleBar; }
    ToolsMenu *toolsMenu() const { return m_toolsMenu; }
    LinkTools *linkTools() const { return m_linkTools; }
    // the tab titles, in page order
    static QStringList pageTitles();

public slots:
    void SltTabBarClicked(int index);
    void SltRefreshCounts(int index);
    void SltClearCounts();
    void SltActionTrigger(QAction *action);
    void SltAboutMenuTrigger(QAction *action);
    void SltBtnHelpClicked();
    // a plot of the shown page's link, beside the page
    void SltOpenPlot();
    void SltShowAutomation();
    // a script's plot(name, value) into its page's plot window
    void SltScriptPlot(const QString &name, double value);
    void SltScriptStarted();
    void closeApp();

private:
    void InitWidget();
    void AddSystemMenu();
    void AddEditorTools();

    QtTitleBar *m_titleBar = nullptr;
    QtTabBar *m_tabBar = nullptr;
    QStackedWidget *m_stackedWidget = nullptr;
    QtWidgetBase *m_serialPage = nullptr;
    QtWidgetBase *m_cameraPage = nullptr;
    QtWidgetBase *m_networkPage = nullptr;
    QtWidgetBase *m_pidPage = nullptr;
    QtWidgetBase *m_hexEditPage = nullptr;
    QtStatusBar *m_statusBar = nullptr;
    QtWaitDialog *m_waitDialog = nullptr;
    QtMessageTip *m_messageTip = nullptr;
    ToolsMenu *m_toolsMenu = nullptr;
    LinkTools *m_linkTools = nullptr;
};

#endif // MAINWINDOW_H
