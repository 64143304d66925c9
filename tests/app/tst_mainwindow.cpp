#include "AutomationWindow.h"
#include "HexEditWidget.h"
#include "LarkTest.h"
#include "MainWindow.h"
#include "MyApp.h"
#include "NetworkToolWidget.h"
#include "PlotWindow.h"
#include "ScriptRuntime.h"

#include "QHexEdit.h"
#include "QtCountLabel.h"
#include "QtStatusBar.h"
#include "QtStyleDialog.h"
#include "QtTabBar.h"
#include <QtNetwork>
#include <QtWidgets>
#include <QtTest>

class TstMainWindow : public QObject
{
    Q_OBJECT
    std::unique_ptr<MainWindow> m_window;

    QAction *action(const QString &text) const
    {
        const auto all = m_window->findChildren<QAction *>();
        return *std::find_if(all.begin(), all.end(), [&](QAction *a) { return a->text() == text; });
    }
    QStringList shownCounts() const { return m_window->statusBar()->countLabel()->counts(); }
    QtWidgetBase *page(int i) const { return static_cast<QtWidgetBase *>(m_window->stackedWidget()->widget(i)); }

private slots:
    void init()
    {
        cleanup();
        MyApp::InitApp();
        m_window.reset(new MainWindow);
        QVERIFY(LarkTest::showExposed(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        LarkTest::cleanAppDirs();
        MyApp::m_nTextCodecIndex = 1;
        MyApp::m_nSkinStyle = 0;
    }

    void countsFollowTheShownPage_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < 5; ++i)
            QTest::addRow("tab %d", i) << i;
    }

    void countsFollowTheShownPage()
    {
        QFETCH(int, index);
        QtStatusBar *bar = m_window->statusBar();
        bar->setLabelCounts({"stale"});
        QTest::mouseClick(m_window->tabBar()->findChildren<QToolButton *>().at(index), Qt::LeftButton);
        const QStringList counts = page(index)->getCounts();
        QCOMPARE(shownCounts(), counts);

        // counts of a page that is not shown change nothing
        bar->setLabelCounts({"a", "b"});
        emit page((index + 2) % 5)->signalRefresCounts((index + 2) % 5);
        QCOMPARE(shownCounts(), (QStringList{"a", "b"}));
        if (counts.isEmpty())
            return;
        emit page(index)->signalRefresCounts(index);
        QCOMPARE(shownCounts(), counts);
        bar->setLabelCounts({"stale"});
        QTest::mouseClick(bar->clearButton(), Qt::LeftButton);
        QCOMPARE(shownCounts(), page(index)->getCounts());
    }

    void editorCountsReachTheWindowOnlyWhileItIsShown()
    {
        auto *editor = qobject_cast<HexEditWidget *>(page(4));
        QTemporaryFile file;
        QVERIFY(editor && file.open() && file.write("0123456789") == 10 && file.flush());
        m_window->statusBar()->setLabelCounts({"serial"});
        editor->loadFile(file.fileName());
        QCOMPARE(shownCounts(), QStringList{"serial"});
        QTest::mouseClick(m_window->tabBar()->findChildren<QToolButton *>().at(4), Qt::LeftButton);
        QCOMPARE(shownCounts(), (QStringList{"Address: 0", "Size: 10"}));
        editor->hexEdit()->setFocus();
        QTest::keyClicks(editor->hexEdit(), "ab");
        QCOMPARE(shownCounts(), (QStringList{"Address: 1", "Size: 10"}));
    }

    void skinChoiceIsKeptAcrossARestartAndCodecChoiceIsNot()
    {
        action("浅色")->trigger();
        action("UTF-8")->trigger();
        QCOMPARE(MyApp::toUnicode("\xe4\xb8\xad"), QString("中")); // at once

        m_window.reset();
        MyApp::m_nSkinStyle = 0;
        MyApp::InitApp(); // the next start
        QCOMPARE(MyApp::m_nSkinStyle, 1);
        QCOMPARE(MyApp::m_nTextCodecIndex, 1);
        MyApp::m_nTextCodecIndex = 7; // a value from a hand-edited file checks neither
        m_window.reset(new MainWindow);
        QVERIFY(!action("GB18030")->isChecked() && !action("UTF-8")->isChecked() && action("浅色")->isChecked());
    }

    void restoreDefaultsResetsOnlyWhenConfirmed_data()
    {
        QTest::addColumn<bool>("confirm");
        QTest::newRow("return answers no") << false;
        QTest::newRow("confirmed") << true;
    }

    void restoreDefaultsResetsOnlyWhenConfirmed()
    {
        QFETCH(bool, confirm);
        action("浅色")->trigger();
        QFile other(QCoreApplication::applicationDirPath() + "/conf/ser_send_data.txt");
        QVERIFY(other.open(QIODevice::WriteOnly));
        LarkTest::onNextModal([confirm](QWidget *box) {
            confirm ? LarkTest::click(box, "确定") : QTest::keyClick(box, Qt::Key_Return);
        });
        action("恢复默认设置")->trigger();
        QCOMPARE(MyApp::m_nSkinStyle, confirm ? 0 : 1);
        QVERIFY(other.exists()); // only config.ini goes
    }

    // no menu holds the entry: only the dispatch knows it
    void theReceiveViewEntryOpensItsStyleDialogOnTheWindow()
    {
        QPointer<QWidget> opened;
        QString seen;
        LarkTest::onNextModal([&](QWidget *dialog) {
            opened = dialog;
            if (auto *style = qobject_cast<QtStyleDialog *>(dialog))
                seen = dialog->parentWidget() == m_window.get() ? style->title() : QString();
            dialog->close();
        });
        QAction entry("接收区设置");
        m_window->SltActionTrigger(&entry);
        QCOMPARE(seen, QString("接收区设置"));
        QTRY_VERIFY(!opened); // closing deletes it
    }

    // the 工具 windows work on the link of the page shown: the board's lines reach the
    // plot, and a reply rule answers through the page, counted as the page's own
    void toolWindowsWorkOnTheShownPagesLink()
    {
        QUdpSocket board;
        QVERIFY(board.bind(QHostAddress(QHostAddress::LocalHost), 0));
        QTest::mouseClick(m_window->tabBar()->findChildren<QToolButton *>().at(2), Qt::LeftButton);
        auto *network = qobject_cast<NetworkToolWidget *>(page(2));
        network->findChild<QComboBox *>("cbxNetType")->setCurrentIndex(2);
        network->findChild<QLineEdit *>("edtPort")->setText("0");
        network->findChild<QLineEdit *>("edtDestAddress")->setText("127.0.0.1");
        network->findChild<QLineEdit *>("edtDestPort")->setText(QString::number(board.localPort()));
        network->findChild<QPushButton *>("btnOpen")->click();
        QVERIFY(network->linkTap()->isOpen());
        action("波形绘图…")->trigger();
        action("自动应答与脚本…")->trigger();
        PlotWindow *plot = PlotWindow::shownFor(network->linkTap());
        auto *automation = m_window->findChild<AutomationWindow *>();
        QVERIFY(plot && automation && automation->tap() == network->linkTap());
        automation->setRules({ReplyRule(ReplyRule::MatchText, "ping", ReplyRule::ReplyText, "pong\\r\\n")});
        for (QCheckBox *box : automation->findChildren<QCheckBox *>())
            box->setChecked(box->isChecked() || box->text() == "启用自动应答");
        board.writeDatagram("t:1\nt:2\nping\n", QHostAddress::LocalHost, network->udpSocket()->localPort());
        QTRY_VERIFY(board.hasPendingDatagrams());
        QCOMPARE(board.receiveDatagram().data(), QByteArray("pong\r\n"));
        QTRY_COMPARE(plot->store().rows(), 2);
        QCOMPARE(page(2)->getCounts().at(0), QString("发送字节: 6"));
        plot->close();
    }

    // the plot window is opened by the script's first value, its values in order
    void aScriptsPlotValuesOpenThePagesPlotWindow()
    {
        QTest::mouseClick(m_window->tabBar()->findChildren<QToolButton *>().at(2), Qt::LeftButton);
        action("自动应答与脚本…")->trigger();
        auto *automation = m_window->findChild<AutomationWindow *>();
        QVERIFY(automation->runtime()->start("for (var i = 1; i <= 5; ++i) plot('t', i);", "t.js"));
        PlotWindow *plot = nullptr;
        QTRY_VERIFY((plot = PlotWindow::shownFor(page(2)->linkTap())) && plot->store().rows() == 5);
        for (int row = 0; row < 5; ++row)
            QCOMPARE(plot->store().value(0, row), row + 1.0);
        plot->close();
    }
};

LARK_TEST_MAIN(TstMainWindow)
#include "tst_mainwindow.moc"
