#include "AppConfig.h"
#include "LarkTest.h"
#include "MainWindow.h"
#include "MyApp.h"
#include "UiSkin.h"

#include "QtCountLabel.h"
#include "QtMessageTip.h"
#include "QtRollSubtitlesWidget.h"
#include "QtStatusBar.h"
#include "QtTabBar.h"
#include "QtTitleBar.h"
#include "QtUpdateDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QPointer>
#include <QStackedWidget>
#include <QTcpServer>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

class TstMainWindow : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void windowShowsTitleTabsMenusAndWelcome();
    void tabClickShowsThatPagesCounts_data();
    void tabClickShowsThatPagesCounts();
    void countsOfAPageNotShownChangeNothing();
    void clearButtonClearsTheCurrentPage();
    void lightSkinSwitchesEveryWindowAndSurvivesARestart();
    void codecChoiceActsAtOnceButIsNotKept();
    void menuChecksFollowTheSettingsAtConstruction();
    void restoreDefaultsAsksAndReturnAnswersNo();
    void restoreDefaultsResetsWhenConfirmed();
    void updateEntryOpensTheUpdateDialog();
    void closeButtonAndExitEntryQuit_data();
    void closeButtonAndExitEntryQuit();

private:
    static QAction *findAction(QWidget *root, const QString &text);
    static QPushButton *findButton(QWidget *root, const QString &text);
    std::unique_ptr<MainWindow> m_window;
};

void TstMainWindow::init()
{
    LarkTest::cleanAppDirs();
    MyApp::m_nTextCodecIndex = 1;
    MyApp::m_nSkinStyle = 0;
    MyApp::InitApp();
    m_window.reset(new MainWindow);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TstMainWindow::cleanup()
{
    m_window.reset();
    LarkTest::cleanAppDirs();
    MyApp::m_nTextCodecIndex = 1;
    MyApp::m_nSkinStyle = 0;
}

QAction *TstMainWindow::findAction(QWidget *root, const QString &text)
{
    for (QMenu *menu : root->findChildren<QMenu *>()) {
        for (QAction *a : menu->actions()) {
            if (a->text() == text)
                return a;
        }
    }
    return nullptr;
}

QPushButton *TstMainWindow::findButton(QWidget *root, const QString &text)
{
    for (QPushButton *b : root->findChildren<QPushButton *>()) {
        if (b->text() == text)
            return b;
    }
    return nullptr;
}

void TstMainWindow::windowShowsTitleTabsMenusAndWelcome()
{
    MainWindow &w = *m_window;
    QCOMPARE(w.objectName(), QString("MainWindow"));
    QVERIFY(w.windowFlags() & Qt::FramelessWindowHint);
    QLabel *title = w.findChild<QLabel *>("winTitle");
    QVERIFY(title);
    QCOMPARE(title->text(), QString("云雀多功能调试助手"));

    QStringList tabs;
    for (QToolButton *b : w.tabBar()->findChildren<QToolButton *>())
        tabs << b->text();
    QCOMPARE(tabs, (QStringList{"串口调试助手", "摄像头调试助手", "网络调试助手", "PID调试助手", "二进制文件编辑器"}));
    QCOMPARE(w.stackedWidget()->count(), 5);
    for (int i = 0; i < 5; ++i)
        QVERIFY(qobject_cast<QtWidgetBase *>(w.stackedWidget()->widget(i)));

    QPushButton *settings = findButton(&w, "设置");
    QPushButton *help = findButton(&w, "帮助");
    QPushButton *about = findButton(&w, "关于...");
    QVERIFY(settings && help && about);
    QVERIFY(!settings->icon().isNull());
    QVERIFY(!help->icon().isNull());
    QVERIFY(about->icon().isNull());
    QVERIFY(settings->menu());
    QVERIFY(about->menu());
    QVERIFY(!help->menu());
    QVERIFY(settings->x() > w.tabBar()->findChildren<QToolButton *>().last()->x());
    for (const QString &t : {"UTF-8", "GB18030", "深色", "浅色", "恢复默认设置", "退出", "检查版本更新", "关于云雀科技"})
        QVERIFY2(findAction(&w, t), qPrintable(t));

    QCOMPARE(w.statusBar()->notifyWidget()->text(), QString("欢迎使用 本多功能调试助手！"));
}

void TstMainWindow::tabClickShowsThatPagesCounts_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < 5; ++i)
        QTest::newRow(qPrintable(QString("tab %1").arg(i))) << i;
}

void TstMainWindow::tabClickShowsThatPagesCounts()
{
    QFETCH(int, index);
    MainWindow &w = *m_window;
    w.statusBar()->setLabelCounts({"stale"});
    QToolButton *tab = w.tabBar()->findChildren<QToolButton *>().at(index);
    QTest::mouseClick(tab, Qt::LeftButton);
    QCOMPARE(w.stackedWidget()->currentIndex(), index);
    auto *page = static_cast<QtWidgetBase *>(w.stackedWidget()->currentWidget());
    const QStringList counts = page->getCounts();
    QCOMPARE(w.statusBar()->countLabel()->counts(), counts);
    // a page without counts (the PID page) has nothing to clear
    QCOMPARE(w.statusBar()->clearButton()->isVisible(), !counts.isEmpty());
}

void TstMainWindow::countsOfAPageNotShownChangeNothing()
{
    MainWindow &w = *m_window;
    w.statusBar()->setLabelCounts({"a", "b"});
    auto *other = static_cast<QtWidgetBase *>(w.stackedWidget()->widget(2));
    emit other->signalRefresCounts(2);
    QCOMPARE(w.statusBar()->countLabel()->counts(), (QStringList{"a", "b"}));
    auto *current = static_cast<QtWidgetBase *>(w.stackedWidget()->widget(0));
    emit current->signalRefresCounts(0);
    QCOMPARE(w.statusBar()->countLabel()->counts(), current->getCounts());
}

void TstMainWindow::clearButtonClearsTheCurrentPage()
{
    MainWindow &w = *m_window;
    w.statusBar()->setLabelCounts({"stale"});
    QTest::mouseClick(w.statusBar()->clearButton(), Qt::LeftButton);
    auto *page = static_cast<QtWidgetBase *>(w.stackedWidget()->currentWidget());
    QCOMPARE(w.statusBar()->countLabel()->counts(), page->getCounts());
}

void TstMainWindow::lightSkinSwitchesEveryWindowAndSurvivesARestart()
{
    MainWindow &w = *m_window;
    QWidget other; // a second top-level window follows the application sheet too
    other.show();
    const QString dark = qApp->styleSheet();
    const QColor darkBg = w.grab().toImage().pixelColor(w.width() / 2, w.height() - 60);

    findAction(&w, "浅色")->trigger();
    QCOMPARE(MyApp::m_nSkinStyle, 1);
    QVERIFY(qApp->styleSheet() != dark);
    QCOMPARE(AppConfig::ReadSettings("Common", "Skin").toInt(), 1);
    QCOMPARE(UiSkin::m_strMessageBoxTitleBg, QString("#0078d7"));
    const QColor lightBg = w.grab().toImage().pixelColor(w.width() / 2, w.height() - 60);
    QVERIFY(lightBg.lightness() > darkBg.lightness());
    QCOMPARE(other.styleSheet(), QString()); // no per-window sheet: one application sheet

    MyApp::m_nSkinStyle = 0;
    MyApp::InitApp(); // the next start
    QCOMPARE(MyApp::m_nSkinStyle, 1);

    findAction(&w, "深色")->trigger();
    QCOMPARE(qApp->styleSheet(), dark);
    QCOMPARE(AppConfig::ReadSettings("Common", "Skin").toInt(), 0);
}

void TstMainWindow::codecChoiceActsAtOnceButIsNotKept()
{
    findAction(m_window.get(), "UTF-8")->trigger();
    QCOMPARE(MyApp::m_nTextCodecIndex, 0);
    QCOMPARE(MyApp::toUnicode("\xe4\xb8\xad"), QString("中"));
    QCOMPARE(AppConfig::ReadSettings("Common", "TextCodec").toInt(), 1);
    MyApp::InitApp();
    QCOMPARE(MyApp::m_nTextCodecIndex, 1);
    findAction(m_window.get(), "GB18030")->trigger();
    QCOMPARE(MyApp::getTextCodec(), QByteArray("GB18030"));
}

void TstMainWindow::menuChecksFollowTheSettingsAtConstruction()
{
    QVERIFY(findAction(m_window.get(), "GB18030")->isChecked());
    QVERIFY(findAction(m_window.get(), "深色")->isChecked());
    m_window.reset();
    MyApp::m_nTextCodecIndex = 7; // a value from a hand-edited file
    MyApp::m_nSkinStyle = 1;
    MainWindow w;
    QVERIFY(!findAction(&w, "GB18030")->isChecked());
    QVERIFY(!findAction(&w, "UTF-8")->isChecked());
    QVERIFY(findAction(&w, "浅色")->isChecked());
}

void TstMainWindow::restoreDefaultsAsksAndReturnAnswersNo()
{
    findAction(m_window.get(), "浅色")->trigger();
    QString asked;
    LarkTest::onNextModal([&asked](QWidget *box) {
        for (QLabel *l : box->findChildren<QLabel *>())
            asked += l->text() + "|";
        QTest::keyClick(box, Qt::Key_Return);
    });
    findAction(m_window.get(), "恢复默认设置")->trigger();
    QVERIFY2(asked.contains("确认恢复默认设置吗?"), qPrintable(asked));
    QVERIFY(asked.contains("询问"));
    QCOMPARE(MyApp::m_nSkinStyle, 1);
    QCOMPARE(AppConfig::ReadSettings("Common", "Skin").toInt(), 1);
}

void TstMainWindow::restoreDefaultsResetsWhenConfirmed()
{
    findAction(m_window.get(), "浅色")->trigger();
    LarkTest::onNextModal([](QWidget *box) {
        QPushButton *ok = nullptr;
        for (QPushButton *b : box->findChildren<QPushButton *>()) {
            if (b->text() == "确定")
                ok = b;
        }
        QVERIFY(ok);
        QTest::mouseClick(ok, Qt::LeftButton);
    });
    findAction(m_window.get(), "恢复默认设置")->trigger();
    QCOMPARE(MyApp::m_nSkinStyle, 0);
    QCOMPARE(AppConfig::ReadSettings("Common", "Skin").toInt(), 0);
    QTRY_VERIFY(QtMessageTip::Instance()->isVisible());
    QCOMPARE(QtMessageTip::Instance()->text(), QString("配置已恢复！"));
    // the toast sits in the middle of the main window
    const QPoint centre = QtMessageTip::Instance()->geometry().center();
    QVERIFY(qAbs(centre.x() - m_window->geometry().center().x()) <= 2);
}

void TstMainWindow::closeButtonAndExitEntryQuit_data()
{
    QTest::addColumn<bool>("viaTitleBar");
    QTest::newRow("title bar close button") << true;
    QTest::newRow("exit entry") << false;
}

void TstMainWindow::closeButtonAndExitEntryQuit()
{
    QFETCH(bool, viaTitleBar);
    MainWindow *w = m_window.get();
    QSignalSpy aboutToQuit(qApp, SIGNAL(aboutToQuit()));
    QTimer::singleShot(0, [&]() {
        if (viaTitleBar)
            QTest::mouseClick(w->titleBar()->findChild<QToolButton *>("btnClose"), Qt::LeftButton);
        else
            findAction(w, "退出")->trigger();
    });
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(2); });
    // the application's own loop, as in main: quit ends it with 0 and leaves the
    // application ready for the next loop (a bare QEventLoop would not reset that)
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(aboutToQuit.count(), 1);
    QVERIFY(w->isVisible()); // no close confirmation, no hiding: the process just ends
}

void TstMainWindow::updateEntryOpensTheUpdateDialog()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QtUpdateDialog::setUpdateServer("127.0.0.1", server.serverPort());
    QPointer<QWidget> opened;
    bool isUpdateDialog = false;
    bool asked = false;
    LarkTest::onNextModal([&](QWidget *dialog) {
        opened = dialog;
        isUpdateDialog = qobject_cast<QtUpdateDialog *>(dialog) && dialog->parentWidget() == m_window.get();
        // the dialog asks the server on its own, shortly after it opens
        asked = QTest::qWaitFor([&] { return server.hasPendingConnections(); }, 3000);
        dialog->close();
    });
    findAction(m_window.get(), "检查版本更新")->trigger();
    QVERIFY(isUpdateDialog);
    QVERIFY(asked);
    QTRY_VERIFY(!opened); // closing deletes it
}

LARK_TEST_MAIN(TstMainWindow)
#include "tst_mainwindow.moc"
