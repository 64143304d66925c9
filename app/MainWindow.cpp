#include "MainWindow.h"
#include "AppPaths.h"
#include "PlotWindow.h"
#include "IconHelper.h"
#include "MyApp.h"
#include "UiSkin.h"

#include "QtMessageBox.h"
#include "QtMessageTip.h"
#include "QtStatusBar.h"
#include "QtStyleDialog.h"
#include "QtTabBar.h"
#include "QtTitleBar.h"
#include "QtUpdateDialog.h"
#include "UpdateProtocol.h"
#include "QtWaitDialog.h"
#include "QtWidgetBase.h"
#include "CameraDebugWidget.h"
#include "HexEditWidget.h"
#include "NetworkToolWidget.h"
#include "PidDebugWidget.h"
#include "QSerialPorCheck.h"
#include "SerialportWidget.h"
#include "LinkTools.h"
#include "ToolsMenu.h"
#include "AutomationWindow.h"
#include "ScriptRuntime.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QUrl>
#include <QVBoxLayout>

// the manual on the web, for a copy that came without its own
const char *const MainWindow::HelpUrl = "https://larktools.github.io/manual/";
const char *const MainWindow::MakerUrl = "https://larktools.github.io/";

MainWindow::MainWindow(QWidget *parent)
    : QtMainWindow(parent)
{
    setWindowIcon(QIcon(":/resources/images/app_logo.png"));
    InitWidget();
    AddSystemMenu();
    m_messageTip = QtMessageTip::Instance();
    m_messageTip->SetParentWidget(this);
    m_waitDialog = QtWaitDialog::Instance();
}

MainWindow::~MainWindow()
{
    delete m_waitDialog;
    m_waitDialog = nullptr;
    delete m_messageTip;
    m_messageTip = nullptr;
}

void MainWindow::InitWidget()
{
    setObjectName("MainWindow");

    m_titleBar = new QtTitleBar(this, QtTitleBar::QtWindowFlags(QFlag(15)));
    m_titleBar->setWinTitle("云雀多功能调试助手");
    connect(m_titleBar, SIGNAL(signalCloseWindow()), this, SLOT(closeApp()));

    m_tabBar = new QtTabBar(this);
    m_tabBar->setTabTitles(pageTitles());

    m_stackedWidget = new QStackedWidget(this);

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);
    layout->addWidget(m_tabBar);
    layout->addWidget(m_stackedWidget, 1);

    connect(m_tabBar, SIGNAL(signalClicked(int)), this, SLOT(SltTabBarClicked(int)));

    m_serialPage = new SerialportWidget(m_stackedWidget);
    m_cameraPage = new CameraDebugWidget(m_stackedWidget);
    m_networkPage = new NetworkToolWidget(m_stackedWidget);
    m_pidPage = new PidDebugWidget(m_stackedWidget);
    m_hexEditPage = new HexEditWidget(m_stackedWidget);
    m_stackedWidget->addWidget(m_serialPage);
    m_stackedWidget->addWidget(m_cameraPage);
    m_stackedWidget->addWidget(m_networkPage);
    m_stackedWidget->addWidget(m_pidPage);
    m_stackedWidget->addWidget(m_hexEditPage);

    m_statusBar = new QtStatusBar(this);
    layout->addWidget(m_statusBar);
    connect(m_statusBar, SIGNAL(clearCount()), this, SLOT(SltClearCounts()));

    for (QtWidgetBase *page : {m_serialPage, m_cameraPage, m_pidPage, m_networkPage})
        connect(page, SIGNAL(signalNotify(QString, int)), m_statusBar, SLOT(showSystemNotify(QString, int)));
    for (QtWidgetBase *page : {m_serialPage, m_cameraPage, m_networkPage, m_hexEditPage})
        connect(page, SIGNAL(signalRefresCounts(int)), this, SLOT(SltRefreshCounts(int)));

    // one watcher for every page that opens serial ports
    QSerialPorCheck *portCheck = new QSerialPorCheck(this);
    connect(portCheck, SIGNAL(signalSerialChanged(QStringList)), m_serialPage, SLOT(SltSerialportChanged(QStringList)));
    connect(portCheck, SIGNAL(signalSerialChanged(QStringList)), m_cameraPage, SLOT(SltSerialportChanged(QStringList)));
    connect(portCheck, SIGNAL(signalSerialChanged(QStringList)), m_pidPage, SLOT(SltSerialportChanged(QStringList)));
    portCheck->start();
}

void MainWindow::AddEditorTools()
{
    // the file editor's commands, live while it is the page shown
    const struct {
        const char *text;
        QKeySequence keys;
        const char *slot;
    } entries[] = {
        {"保存文件", QKeySequence("Ctrl+S"), SLOT(SltSave())},
        {"另存为...", QKeySequence("Ctrl+Shift+S"), SLOT(SltSaveAs())},
        {"查找...", QKeySequence("Ctrl+F"), SLOT(SltShowFind())},
        {"跳转到偏移...", QKeySequence("Ctrl+G"), SLOT(SltShowGoto())},
    };
    const ToolsMenu::Applies isEditor = [](int index, QtWidgetBase *) { return index == 4; };
    QMenu *menu = m_toolsMenu->addPageMenu("二进制文件", isEditor);
    for (const auto &entry : entries) {
        QAction *action = m_toolsMenu->addPageAction(entry.text, isEditor, menu);
        action->setShortcut(entry.keys);
        connect(action, SIGNAL(triggered()), m_hexEditPage, entry.slot);
    }
}

void MainWindow::AddSystemMenu()
{
    QHBoxLayout *layout = new QHBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);

    // the additions beyond the specified menus: one place, acting on the page shown
    QPushButton *btnTools = new QPushButton("工具", this);
    btnTools->setObjectName("btnTools");
    btnTools->setIcon(QIcon(IconHelper::Instance()->getPixmap("#ffffff", QChar(0xEB01), 12, 16, 16)));
    m_toolsMenu = new ToolsMenu(m_stackedWidget, this);
    btnTools->setMenu(m_toolsMenu);
    QAction *plotAction = m_toolsMenu->addPageAction("波形绘图…", ToolsMenu::hasLink);
    plotAction->setShortcut(QKeySequence("Ctrl+Shift+G"));
    connect(plotAction, SIGNAL(triggered()), this, SLOT(SltOpenPlot()));
    QAction *automation = m_toolsMenu->addPageAction("自动应答与脚本…", ToolsMenu::hasLink);
    automation->setShortcut(QKeySequence("Ctrl+Shift+A"));
    connect(automation, SIGNAL(triggered()), this, SLOT(SltShowAutomation()));
    layout->addWidget(btnTools);
    AddEditorTools();
    // capture, reopen and control lines; a running capture shows in the status bar
    QLabel *labCapture = new QLabel(m_statusBar);
    labCapture->setObjectName("labCapture");
    if (QBoxLayout *bar = qobject_cast<QBoxLayout *>(m_statusBar->layout()))
        bar->insertWidget(1, labCapture);
    m_linkTools = new LinkTools(m_toolsMenu, m_stackedWidget, labCapture, this);

    QPushButton *btnSettings = new QPushButton("设置", this);
    btnSettings->setIcon(QIcon(IconHelper::Instance()->getPixmap("#ffffff", QChar(0xE63B), 12, 16, 16)));
    QPushButton *btnHelp = new QPushButton("帮助", this);
    btnHelp->setIcon(QIcon(IconHelper::Instance()->getPixmap("#ffffff", QChar(0xE609), 12, 16, 16)));
    QPushButton *btnAbout = new QPushButton("关于...", this);
    btnAbout->setMinimumWidth(67);
    layout->addWidget(btnSettings);
    layout->addWidget(btnHelp);
    layout->addWidget(btnAbout);
    m_tabBar->addLayout(layout);

    QMenu *menu = new QMenu(this);
    // a submenu of exclusive, checkable entries; the entry at checkedIndex is checked
    auto addChoiceMenu = [this, menu](const QString &title, const QStringList &entries, int checkedIndex) {
        QMenu *sub = menu->addMenu(title);
        QActionGroup *group = new QActionGroup(this);
        group->setExclusive(true);
        for (int i = 0; i < entries.size(); ++i) {
            QAction *action = sub->addAction(entries.at(i));
            action->setCheckable(true);
            action->setChecked(i == checkedIndex);
            group->addAction(action);
        }
    };
    addChoiceMenu("编码设置", {"UTF-8", "GB18030"}, MyApp::m_nTextCodecIndex);
    addChoiceMenu("主题", {"深色", "浅色"}, MyApp::m_nSkinStyle);
    menu->addAction("恢复默认设置");
    menu->addAction("退出");
    btnSettings->setMenu(menu);
    connect(menu, SIGNAL(triggered(QAction *)), this, SLOT(SltActionTrigger(QAction *)));

    connect(btnHelp, SIGNAL(clicked(bool)), this, SLOT(SltBtnHelpClicked()));

    QMenu *aboutMenu = new QMenu(this);
    aboutMenu->addAction("检查版本更新");
    aboutMenu->addAction("关于云雀科技");
    btnAbout->setMenu(aboutMenu);
    connect(aboutMenu, SIGNAL(triggered(QAction *)), this, SLOT(SltAboutMenuTrigger(QAction *)));
}

void MainWindow::SltTabBarClicked(int index)
{
    m_stackedWidget->setCurrentIndex(index);
    SltRefreshCounts(index);
}

void MainWindow::SltRefreshCounts(int index)
{
    if (index != m_stackedWidget->currentIndex())
        return;
    QtWidgetBase *page = static_cast<QtWidgetBase *>(m_stackedWidget->currentWidget());
    m_statusBar->setLabelCounts(page->getCounts());
}

void MainWindow::SltClearCounts()
{
    QtWidgetBase *page = static_cast<QtWidgetBase *>(m_stackedWidget->currentWidget());
    page->clearCounts();
    SltRefreshCounts(m_stackedWidget->currentIndex());
}

void MainWindow::SltActionTrigger(QAction *action)
{
    // dispatched by display text: the menu texts and these literals must agree
    const QString text = action->text();
    if (text == "接收区设置" || text == "发送区设置") {
        // no menu holds these entries in this version; the branch stays for such actions
        QtStyleDialog *dialog = new QtStyleDialog(this, text);
        dialog->exec();
    } else if (text == "深色") {
        MyApp::m_nSkinStyle = 0;
        UiSkin::LoadStyleSheet(MyApp::m_nSkinStyle);
    } else if (text == "浅色") {
        MyApp::m_nSkinStyle = 1;
        UiSkin::LoadStyleSheet(MyApp::m_nSkinStyle);
    } else if (text == "UTF-8") {
        MyApp::m_nTextCodecIndex = 0;
    } else if (text == "GB18030") {
        MyApp::m_nTextCodecIndex = 1;
    } else if (text == "中文") {
    } else if (text == "English") {
    } else if (text == "恢复默认设置") {
        if (QtMessageBox::question("确认恢复默认设置吗?", "询问") == 1) {
            MyApp::ResetConfig();
            QtMessageTip::Instance()->ShowToastMessage("配置已恢复！", 2000);
        }
    } else if (text == "退出") {
        closeApp();
    }
}

void MainWindow::SltAboutMenuTrigger(QAction *action)
{
    const QString text = action->text();
    if (text == "检查版本更新") {
        // deletes itself when closed
        QtUpdateDialog *dialog = new QtUpdateDialog(this);
        dialog->exec();
    } else if (text == "关于云雀科技") {
        // without a browser the user still learns what this is and where its manual is
        if (!QDesktopServices::openUrl(QUrl(MakerUrl)))
            QtMessageBox::infomation(aboutText(), "关于云雀科技");
    }
}

QString MainWindow::helpUrl()
{
    const QString manual = AppPaths::manualFile();
    return manual.isEmpty() ? QString(HelpUrl) : QUrl::fromLocalFile(manual).toString();
}

QString MainWindow::aboutText()
{
    const QString license = AppPaths::licenseFile();
    return QString("云雀多功能调试助手 V%1\n"
                   "许可证: MIT%2\n"
                   "使用手册: %3\n"
                   "主页: %4")
        .arg(UpdateProtocol::currentVersionText(),
             license.isEmpty() ? QString() : QString("（%1）").arg(license), helpUrl(), MakerUrl);
}

void MainWindow::SltBtnHelpClicked()
{
    QDesktopServices::openUrl(QUrl(helpUrl()));
}

void MainWindow::SltShowAutomation()
{
    // one window per page, kept while the program runs so its rules and script stay
    LinkTap *tap = m_toolsMenu->currentPage() ? m_toolsMenu->currentPage()->linkTap() : nullptr;
    if (!tap)
        return;
    AutomationWindow *window = nullptr;
    for (AutomationWindow *w : findChildren<AutomationWindow *>()) {
        if (w->tap() == tap)
            window = w;
    }
    if (!window) {
        const int index = m_toolsMenu->currentIndex();
        window = new AutomationWindow(tap, pageTitles().value(index), this);
        // beside the other settings, in the user's folders when the program's is not its own
        const QString kept = AppPaths::confDir() + QString("/automation/page%1").arg(index);
        window->setStateFiles(kept + ".json", kept + ".js");
        // queued: opening the plot window is slow work that must not count against the
        // script's time limit, which would otherwise stop a script for its first plot()
        connect(window, SIGNAL(plotValue(QString, double)), this, SLOT(SltScriptPlot(QString, double)),
                Qt::QueuedConnection);
        connect(window->runtime(), SIGNAL(started()), this, SLOT(SltScriptStarted()));
    }
    window->show();
    window->raise();
    window->activateWindow();
}

// A script that plots wants its curves seen: the first value of a run opens the page's
// plot window when none is shown, so nothing is lost before the user would open it. A
// window the user closes during the run stays closed, and the run's values are dropped
// until he opens it again: a window that keeps coming back could not be got rid of.
void MainWindow::SltScriptPlot(const QString &name, double value)
{
    auto *automation = qobject_cast<AutomationWindow *>(sender());
    if (!automation || !automation->tap())
        return;
    PlotWindow *plot = PlotWindow::shownFor(automation->tap());
    if (!plot && !automation->property("larkPlotOpened").toBool()) {
        automation->setProperty("larkPlotOpened", true);
        int index = 0;
        while (index < m_stackedWidget->count()
               && qobject_cast<QtWidgetBase *>(m_stackedWidget->widget(index))->linkTap() != automation->tap())
            ++index;
        plot = PlotWindow::showFor(automation->tap(), "波形绘图 - " + pageTitles().value(index));
    }
    if (plot)
        plot->SltPlotValue(name, value);
}

void MainWindow::SltScriptStarted()
{
    if (QObject *automation = sender()->parent())
        automation->setProperty("larkPlotOpened", false);
}

void MainWindow::closeApp()
{
    QCoreApplication::quit();
}

QStringList MainWindow::pageTitles()
{
    return QStringList() << "串口调试助手" << "摄像头调试助手" << "网络调试助手" << "PID调试助手" << "二进制文件编辑器";
}

void MainWindow::SltOpenPlot()
{
    QtWidgetBase *page = m_toolsMenu->currentPage();
    if (page && page->linkTap())
        PlotWindow::showFor(page->linkTap(), "波形绘图 - " + pageTitles().value(m_toolsMenu->currentIndex()));
}
