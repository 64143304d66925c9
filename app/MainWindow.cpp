#include "MainWindow.h"
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
#include "QtWaitDialog.h"
#include "QtWidgetBase.h"
#include "CameraDebugWidget.h"
#include "HexEditWidget.h"
#include "NetworkToolWidget.h"
#include "PidDebugWidget.h"
#include "QSerialPorCheck.h"
#include "SerialportWidget.h"
#include "ToolsMenu.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QUrl>
#include <QVBoxLayout>

const char *const MainWindow::HelpUrl = "https://larktools.gitee.io/help.html";
const char *const MainWindow::MakerUrl = "https://larktools.gitee.io/";

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
    m_tabBar->setTabTitles(QStringList() << "串口调试助手" << "摄像头调试助手" << "网络调试助手"
                                         << "PID调试助手" << "二进制文件编辑器");

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
    layout->addWidget(btnTools);

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
        QDesktopServices::openUrl(QUrl(MakerUrl));
    }
}

void MainWindow::SltBtnHelpClicked()
{
    QDesktopServices::openUrl(QUrl(HelpUrl));
}

void MainWindow::closeApp()
{
    QCoreApplication::quit();
}
