#include "../comm/PtyLine.h"
#include "LarkPtyPair.h"
#include "LarkSer2net.h"
#include "LarkTest.h"
#include "LinkTap.h"
#include "LinkTools.h"
#include "CameraDebugWidget.h"
#include "RemoteReopener.h"
#include "SerialSettings.h"
#include "CaptureWriter.h"
#include "MainWindow.h"
#include "MyApp.h"
#include "NetworkToolWidget.h"
#include "PidDebugWidget.h"
#include "QSerialPorCheck.h"
#include "SerialportWidget.h"

#include <QtNetwork>
#include <QtWidgets>
#include <QtTest>

#include <unistd.h>

// The wiring the entries add on the serial pages: control lines and flow control on
// the page's own port, opened on a socat pty through the page's reopen hook.
class tst_LinkTools : public QObject
{
    Q_OBJECT
    std::unique_ptr<MainWindow> m_window;
    QWidget *page(int i) const { return m_window->stackedWidget()->widget(i); }
    LinkTap *tap(int i) const { return static_cast<QtWidgetBase *>(page(i))->linkTap(); }
    bool reopen(int i, const QString &path)
    {
        if (auto *s = qobject_cast<SerialportWidget *>(page(i)))
            return s->reopenPort(path);
        if (auto *c = qobject_cast<CameraDebugWidget *>(page(i)))
            return m_window->linkTools()->addRemotePort(i, path) && c->reopenPort(path);
        return qobject_cast<PidDebugWidget *>(page(i))->reopenPort(path);
    }

private slots:
    void init()
    {
        MyApp::InitApp();
        m_window.reset(new MainWindow);
    }
    void cleanup()
    {
        m_window.reset();
        LarkTest::cleanAppDirs();
    }

    void modemLinesFailingOnAPseudoTerminalKeepThePortAndFlowControlAppliesAtOnceAndOnTheNextOpen_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("serial page") << 0;
        QTest::newRow("PID page") << 3;
    }

    void modemLinesFailingOnAPseudoTerminalKeepThePortAndFlowControlAppliesAtOnceAndOnTheNextOpen()
    {
        QFETCH(int, index);
        LarkPtyPair pty;
        QVERIFY(pty.start());
        // chosen while closed: the open applies it
        m_window->linkTools()->setFlowControl(index, 1);
        QVERIFY(reopen(index, pty.programPath()) && sttyOf(pty.programPath()).contains(" crtscts"));
        // changed while open: at once
        m_window->linkTools()->setFlowControl(index, 2);
        const QString now = sttyOf(pty.programPath());
        QVERIFY(now.contains("-crtscts") && now.contains(" ixon") && now.contains(" ixoff"));
        m_window->linkTools()->setControlLine(index, true, false);
        m_window->linkTools()->setControlLine(index, false, true);
        // the port is still open and carries bytes
        QVERIFY(pty.boardWrite("still here") && tap(index)->isOpen());
    }

    void autoReconnectIsRememberedAndBringsTheNetworkClientToALateServer()
    {
        m_window->linkTools()->setAutoReconnect(2, true);
        // the option lives in a file of its own and comes back with the window
        QVERIFY(QSettings(LinkTools::settingsFile(), QSettings::IniFormat).value("AutoReconnect/2").toBool());
        m_window.reset();
        m_window.reset(new MainWindow);
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        const quint16 port = probe.serverPort();
        probe.close();
        QTcpSocket *client = qobject_cast<NetworkToolWidget *>(page(2))->tcpSocket();
        client->connectToHost("127.0.0.1", port);
        QTRY_COMPARE(client->state(), QAbstractSocket::UnconnectedState);
        QTcpServer late;
        QVERIFY(late.listen(QHostAddress::LocalHost, port));
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), QAbstractSocket::ConnectedState, 5000);
    }

    void theFileChosenForACaptureGetsTheExtensionOfItsKind()
    {
        QTemporaryDir dir;
        for (const QString &filter : {QString("原始数据 (*.bin)"), QString("十六进制记录 (*.log)")}) {
            LarkTest::answerNextFileDialog(dir.filePath("session"), filter);
            QMetaObject::invokeMethod(m_window->linkTools(), "SltStartCapture");
            CaptureWriter *writer = m_window->linkTools()->capture(0);
            QVERIFY(writer->isRunning());
            QCOMPARE(writer->currentPath(), dir.filePath(filter.startsWith("原始") ? "session.bin" : "session.log"));
            writer->SltReceived("\x01");
            writer->stop();
            QVERIFY(LarkTest::readFile(writer->currentPath()).endsWith(filter.startsWith("原始") ? "\x01" : " H 01\n"));
        }
    }

    void aRemotePortWhoseServerWentAwayComesBackOnlyWithAutoReconnect_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("reconnect");
        for (int index : {0, 1, 3})
            for (bool on : {true, false})
                QTest::addRow("page %d, 自动重连 %s", index, on ? "on" : "off") << index << on;
    }

    void aRemotePortWhoseServerWentAwayComesBackOnlyWithAutoReconnect()
    {
        QFETCH(int, index);
        QFETCH(bool, reconnect);
        LarkPtyPair pty;
        LarkSer2net server;
        if (!LarkSer2net::isInstalled())
            QSKIP("ser2net is not installed");
        QVERIFY(pty.start() && server.start(pty.programPath()));
        // only the page's own reaction to the ended session may close the port here: the
        // watcher closes it on any pty another test makes
        m_window->findChild<QSerialPorCheck *>()->findChild<QTimer *>()->stop();
        m_window->linkTools()->setAutoReconnect(index, reconnect);
        QVERIFY(reopen(index, "/dev/" + server.name()));
        QSignalSpy notices(page(index), SIGNAL(signalNotify(QString, int)));
        server.stop();
        QTRY_VERIFY(!notices.isEmpty());
        QCOMPARE(notices.at(0), QVariantList({SerialSettings::pulledText(), 255}));
        QVERIFY(!tap(index)->isOpen());
        QCoreApplication::processEvents(); // the tools decide once the close is done
        QCOMPARE(m_window->linkTools()->remoteReopener(index)->isWaiting(), reconnect);
        QVERIFY(server.start(pty.programPath()));
        if (reconnect) {
            QSignalSpy got(tap(index), SIGNAL(received(QByteArray)));
            QTRY_VERIFY_WITH_TIMEOUT((pty.boardWrite("back"), !got.isEmpty()), 15000);
        }
    }

    void aPtyLinkRemovedAndMadeAgainIsReopenedOnlyWithAutoReconnect_data()
    {
        QTest::addColumn<bool>("reconnect");
        QTest::newRow("自动重连 on") << true;
        QTest::newRow("自动重连 off") << false;
    }

    // a link in /dev to a socat pty, which the port watcher lists: it closes the open port
    // when the link goes and again when it comes back
    void aPtyLinkRemovedAndMadeAgainIsReopenedOnlyWithAutoReconnect()
    {
        QFETCH(bool, reconnect);
        if (getuid() != 0)
            QSKIP("links in /dev need root");
        QTemporaryDir dir;
        const QString name = QString("ttyLARKRE%1").arg(QCoreApplication::applicationPid());
        QProcess socat;
        auto makeLink = [&] {
            socat.start("socat", {"pty,raw,echo=0,link=/dev/" + name, "pty,raw,echo=0,link=" + dir.filePath("board")});
            return socat.waitForStarted() && QTest::qWaitFor([&] { return QFile::exists(dir.filePath("board")); });
        };
        auto *serial = qobject_cast<SerialportWidget *>(page(0));
        auto *box = serial->findChild<QComboBox *>("cbxPort");
        m_window->linkTools()->setAutoReconnect(0, reconnect);
        QVERIFY(makeLink() && serial->reopenPort("/dev/" + name));
        socat.terminate();
        QVERIFY(socat.waitForFinished());
        QTRY_VERIFY(!tap(0)->isOpen());
        QVERIFY(makeLink());
        // listed again: the watcher has seen it back, two ticks at most
        QTRY_VERIFY(box->findText(name) >= 0);
        QTRY_COMPARE_WITH_TIMEOUT(tap(0)->isOpen(), reconnect, 2000);
        QSignalSpy got(tap(0), SIGNAL(received(QByteArray)));
        QFile board(dir.filePath("board"));
        QVERIFY(board.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QTRY_VERIFY((board.write("again"), got.isEmpty() != reconnect));
        socat.terminate();
        socat.waitForFinished();
    }
};

LARK_TEST_MAIN(tst_LinkTools)
#include "tst_linktools.moc"
