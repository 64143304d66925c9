#include "LarkTest.h"
#include "NetworkToolWidget.h"
#include "NumberTool.h"
#include "QtMessageTip.h"
#include "QtSendBoxWidget.h"
#include "StatusLabel.h"
#include "TcpServer.h"

#include <QtNetwork>
#include <QtTest>
#include <QtWidgets>
#include <memory>
#include <vector>

namespace {

using Peer = std::unique_ptr<QTcpSocket>;

// The page with a spy on its notices, driven through its own buttons, and loopback
// peers for each mode: QTcpSocket clients of its server, `board` (a QTcpServer) for
// its client mode; UDP peers are plain QUdpSockets of the tests.
struct Rig {
    NetworkToolWidget page;
    QSignalSpy notify{&page, SIGNAL(signalNotify(QString,int))};
    QTcpServer board;

    template <class T>
    T *child(const char *name)
    {
        if (T *w = page.findChild<T *>(name))
            return w;
        qFatal("page has no %s", name);
    }
    QString button() { return child<QPushButton>("btnOpen")->text(); }
    bool lampOn() { return child<StatusLabel>("statusLabel")->isWork(); }
    bool modeFree() { return child<QComboBox>("cbxNetType")->isEnabled(); }
    QPushButton *sendButton()
    {
        for (QPushButton *b : page.sendBox()->findChildren<QPushButton *>()) {
            if (b->text() == "发送数据")
                return b;
        }
        qFatal("send box has no send button");
    }
    QStringList notices() const
    {
        QStringList out;
        for (const auto &args : notify)
            out << args.at(0).toString();
        return out;
    }
    QStringList clients()
    {
        QComboBox *box = child<QComboBox>("cbxClients");
        QStringList items;
        for (int i = 0; i < box->count(); ++i)
            items << box->itemText(i);
        return items;
    }
    void setMode(int mode, const QString &port)
    {
        child<QComboBox>("cbxNetType")->setCurrentIndex(mode);
        child<QComboBox>("cbxAddress")->setCurrentText("127.0.0.1");
        child<QLineEdit>("edtPort")->setText(port);
    }
    void press() { QTest::mouseClick(child<QPushButton>("btnOpen"), Qt::LeftButton); }
    void open(int mode, const QString &port) { setMode(mode, port); press(); }
    quint16 startServer() { open(0, "0"); return page.tcpServer()->serverPort(); }
    quint16 startUdp() { open(2, "0"); return page.udpSocket()->localPort(); }
    // the send box's signal, as its send button emits it
    void send(const QByteArray &data) { QMetaObject::invokeMethod(page.sendBox(), "signalSendData", Q_ARG(QByteArray, data)); }

    std::vector<Peer> connectClients(quint16 port, int n)
    {
        std::vector<Peer> peers;
        const int before = page.tcpServer()->counts();
        for (int i = 0; i < n; ++i) {
            peers.emplace_back(new QTcpSocket);
            peers.back()->connectToHost(QHostAddress::LocalHost, port);
        }
        const bool all = QTest::qWaitFor([&] { return page.tcpServer()->counts() == before + n; }, 20000);
        return all ? std::move(peers) : std::vector<Peer>();
    }
    // the name the page gives a client of its server
    QString nameOf(const QTcpSocket &peer)
    {
        for (QTcpSocket *c : page.tcpServer()->findChildren<QTcpSocket *>()) {
            if (c->peerPort() == peer.localPort())
                return TcpServer::clientName("127.0.0.1", c->socketDescriptor());
        }
        return QString();
    }
    // presses "断开" and answers the box with its OK or cancel button; the box's
    // "title: question" lands in the result, which stays empty if nothing asks
    std::shared_ptr<QString> pressDisconnect(bool ok, int timeoutMs = 5000)
    {
        auto asked = std::make_shared<QString>();
        LarkTest::onNextModal([asked, ok](QWidget *box) {
            QLabel *title = box->findChild<QLabel *>("winTitle");
            QLabel *text = box->findChild<QLabel *>("labMsgText");
            QPushButton *answer = box->findChild<QPushButton *>(ok ? "btnMsgOk" : "btnMsgCancel");
            if (title && text)
                *asked = title->text() + ": " + text->text();
            if (answer)
                QTest::mouseClick(answer, Qt::LeftButton);
            else
                box->close();
        }, timeoutMs);
        QTest::mouseClick(child<QPushButton>("btnDisconnect"), Qt::LeftButton);
        return asked;
    }
};

} // namespace

class TstNetworkToolWidget : public QObject
{
    Q_OBJECT
    std::unique_ptr<Rig> rig;

private slots:
    // set up by the serial page in the program
    void initTestCase() { NumberTool::m_newLine = QByteArray("\r\n"); }
    void init() { rig.reset(new Rig); }
    void cleanup() { rig.reset(); }

    void eachModeOpensAndClosesWithItsNotices_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("idle");
        QTest::addColumn<QString>("running");
        QTest::addColumn<QStringList>("opened");
        QTest::addColumn<QStringList>("closed");
        QTest::newRow("TCP Server") << 0 << "启动监听" << "停止监听" << QStringList{"TCP服务监听[端口:0]已启动!!"}
                                    << QStringList{"TCP服务监听[端口:0]已关闭!!"};
        // the user's close gives the socket's own report, then the button's
        QTest::newRow("TCP Client") << 1 << "建立连接" << "断开连接"
                                    << QStringList{"正在与服务器建立连接....", "[TCP Client]与服务器连接成功！！！"}
                                    << QStringList{"[TCP Client]与服务器已断开连接~~~", "[ TCP Client ] 已断开连接！"};
        QTest::newRow("UDP") << 2 << "打开" << "关闭" << QStringList{"UDP服务监听[端口:0]已启动!!"} << QStringList();
    }

    void eachModeOpensAndClosesWithItsNotices()
    {
        QFETCH(int, mode);
        QFETCH(QString, idle);
        QFETCH(QString, running);
        QFETCH(QStringList, opened);
        QFETCH(QStringList, closed);
        QVERIFY(rig->board.listen(QHostAddress::LocalHost, 0));
        // through another mode first, so that every row is a real change of mode
        rig->child<QComboBox>("cbxNetType")->setCurrentIndex(mode == 1 ? 2 : 1);
        rig->setMode(mode, mode == 1 ? QString::number(rig->board.serverPort()) : "0");
        QCOMPARE(rig->button(), idle);
        QCOMPARE(!rig->child<QWidget>("widgetClients")->isHidden(), mode == 0);
        QCOMPARE(!rig->child<QWidget>("widgetUdpDest")->isHidden(), mode == 2);

        rig->press();
        QTRY_COMPARE(rig->notices(), opened);
        QCOMPARE(rig->button(), running);
        QVERIFY(rig->lampOn() && rig->sendButton()->isEnabled());
        // only the client mode leaves the mode free while running
        QCOMPARE(rig->modeFree(), mode == 1);

        rig->notify.clear();
        rig->press();
        QCOMPARE(rig->notices(), closed);
        QCOMPARE(rig->button(), idle);
        QVERIFY(!rig->lampOn() && !rig->sendButton()->isEnabled() && rig->modeFree());
    }

    void serverTagsEachClientSendsToAllOrOneAndListensAgainAfterStopping()
    {
        auto peers = rig->connectClients(rig->startServer(), 3);
        QCOMPARE(int(peers.size()), 3);
        QStringList names;
        for (auto &p : peers)
            names << rig->nameOf(*p);
        QStringList listed = rig->clients();
        QCOMPARE(listed.takeFirst(), QString("All Clients"));
        QCOMPARE(QSet<QString>(listed.begin(), listed.end()), QSet<QString>(names.begin(), names.end()));

        QSignalSpy refresh(&rig->page, SIGNAL(signalRefresCounts(int)));
        peers[0]->write("first\r\n");
        QTRY_COMPARE(rig->page.recvCount(), quint64(7));
        peers[1]->write("<b>second</b>");
        QTRY_COMPARE(rig->page.recvText(),
                     QString("[Tcp client %1] first\n[Tcp client %2] <b>second</b>").arg(names[0], names[1]));
        QCOMPARE(refresh.last().at(0).toInt(), 2);

        // through the send box with the page's send settings, to all clients
        rig->page.show();
        QTest::mouseClick(rig->child<QRadioButton>("rbtnSendHex"), Qt::LeftButton);
        QTest::mouseClick(rig->child<QCheckBox>("chkSendNewLine"), Qt::LeftButton);
        rig->page.sendBox()->findChild<QTextEdit *>()->setPlainText("41 42");
        QTest::mouseClick(rig->sendButton(), Qt::LeftButton);
        for (auto &p : peers) {
            QTRY_COMPARE(p->bytesAvailable(), qint64(4));
            QCOMPARE(p->readAll(), QByteArray("AB\r\n"));
        }
        // the client box at the moment of sending picks the one client
        QComboBox *box = rig->child<QComboBox>("cbxClients");
        box->setCurrentIndex(box->findText(names[2]));
        rig->send("two");
        box->setCurrentIndex(box->findText(names[0]));
        rig->send("zero");
        QTRY_COMPARE(peers[2]->bytesAvailable(), qint64(3));
        QTRY_COMPARE(peers[0]->bytesAvailable(), qint64(4));
        QCOMPARE(peers[1]->bytesAvailable(), qint64(0));
        QCOMPARE(rig->page.getCounts(), (QStringList{"发送字节: 11", "接收字节: 20"}));

        peers[1]->disconnectFromHost();
        QTRY_VERIFY(!rig->clients().contains(names[1]));
        QCOMPARE(rig->clients().size(), 3);

        // stopping drops the clients that are left; the same server listens again
        rig->press();
        QCOMPARE(rig->clients(), QStringList{"All Clients"});
        QTRY_COMPARE(peers[0]->state(), QAbstractSocket::UnconnectedState);
        rig->press();
        auto again = rig->connectClients(rig->page.tcpServer()->serverPort(), 1);
        QCOMPARE(rig->clients().size(), 2);

        QTest::mouseClick(rig->child<QToolButton>("btnFold"), Qt::LeftButton);
        QVERIFY(rig->child<QWidget>("widgetNetConfig")->isHidden());
    }

    void disconnectAsksThenDropsAllOrTheSelectedClient()
    {
        rig->startServer();
        // with no clients nothing is asked (a box would be answered and seen here);
        // the wait lets that watcher give up before the next box comes
        QCOMPARE(*rig->pressDisconnect(false, 100), QString());
        QTest::qWait(200);

        auto peers = rig->connectClients(rig->page.tcpServer()->serverPort(), 3);
        QCOMPARE(int(peers.size()), 3);
        QCOMPARE(*rig->pressDisconnect(false), QString("询问: 是否确认断开所有连接?"));
        QCOMPARE(rig->page.tcpServer()->counts(), 3);

        QComboBox *box = rig->child<QComboBox>("cbxClients");
        const QString chosen = rig->nameOf(*peers[1]);
        box->setCurrentIndex(box->findText(chosen));
        QCOMPARE(*rig->pressDisconnect(true), QString("询问: 是否确认断开当前客户端?"));
        QTRY_COMPARE(peers[1]->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(!rig->clients().contains(chosen));
        QCOMPARE(rig->page.tcpServer()->counts(), 2);

        box->setCurrentIndex(0);
        QCOMPARE(*rig->pressDisconnect(true), QString("询问: 是否确认断开所有连接?"));
        QCOMPARE(rig->clients(), QStringList{"All Clients"});
        QTRY_COMPARE(peers[0]->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(rig->page.tcpServer()->isListening());
    }

    void clientRetriesARefusedConnectionThenTalksToItsServer()
    {
        QVERIFY(rig->board.listen(QHostAddress::LocalHost, 0));
        const quint16 port = rig->board.serverPort();
        rig->board.close();
        // refused without a word; the button still offers to connect
        rig->open(NetworkToolWidget::TcpClientMode, QString::number(port));
        QTRY_COMPARE(rig->page.tcpSocket()->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(rig->notices(), QStringList{"正在与服务器建立连接...."});
        QCOMPARE(rig->button(), QString("建立连接"));

        if (!rig->board.listen(QHostAddress::LocalHost, port))
            QSKIP("the freed port was taken by someone else");
        rig->press();
        QTRY_VERIFY(rig->board.hasPendingConnections() && rig->button() == "断开连接");
        Peer peer(rig->board.nextPendingConnection());
        peer->write("board\r\n");
        QTRY_COMPARE(rig->page.recvText(), QString("[Tcp client  来自服务端消息 ] board"));
        rig->send("pc");
        QTRY_COMPARE(peer->bytesAvailable(), qint64(2));
        QCOMPARE(peer->readAll(), QByteArray("pc"));

        // the server's close gives the socket's report alone
        rig->notify.clear();
        peer->disconnectFromHost();
        QTRY_COMPARE(rig->notices(), QStringList{"[TCP Client]与服务器已断开连接~~~"});
        QCOMPARE(rig->button(), QString("建立连接"));
        QVERIFY(!rig->page.tcpSocket()->isOpen());
    }

    void udpTagsEachSenderHexRunsOnStoppedDataIsOnlyCountedAndSaved()
    {
        const quint16 port = rig->startUdp();
        QUdpSocket a, b;
        QVERIFY(a.bind(QHostAddress(QHostAddress::LocalHost), 0));
        QVERIFY(b.bind(QHostAddress(QHostAddress::LocalHost), 0));
        a.writeDatagram("from a\r\n", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.recvCount(), quint64(8));
        b.writeDatagram("from b", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.recvText(), QString("[Tcp client  UDP from 127.0.0.1:%1 ] from a\n"
                                                   "[Tcp client  UDP from 127.0.0.1:%2 ] from b")
                                               .arg(a.localPort()).arg(b.localPort()));
        // in HEX the senders run together, untagged, CR LF kept
        rig->page.clearRecv();
        rig->child<QRadioButton>("rbtnRecvHex")->setChecked(true);
        a.writeDatagram("A\r\n", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.recvCount(), quint64(17));
        b.writeDatagram("B", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.recvText(), QString("41 0D 0A 42 "));

        rig->child<QCheckBox>("chkStopShow")->setChecked(true);
        a.writeDatagram("hidden", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.getCounts(), (QStringList{"发送字节: 0", "接收字节: 24"}));

        // what the view holds, saved through the real dialog as bytes
        QTemporaryDir dir;
        rig->notify.clear();
        LarkTest::answerNextFileDialog(dir.filePath("capture"), "*.bin");
        QTest::mouseClick(rig->child<QPushButton>("btnSaveFile"), Qt::LeftButton);
        QCOMPARE(rig->notices(), QStringList{"文件保存完成!"});
        QFile file(dir.filePath("capture.bin"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("A\r\nB"));
    }

    void udpSendGoesToTheDestinationOrTipsAndIsCountedEither_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("tip");
        QTest::newRow("sent") << "127.0.0.1" << "target" << "";
        QTest::newRow("empty address") << "" << "target" << "UDP目的地址配置错误！";
        QTest::newRow("zero port") << "127.0.0.1" << "0" << "UDP目的端口配置错误！";
        QTest::newRow("port no number") << "127.0.0.1" << "abc" << "UDP目的端口配置错误！";
    }

    void udpSendGoesToTheDestinationOrTipsAndIsCountedEither()
    {
        QFETCH(QString, address);
        QFETCH(QString, port);
        QFETCH(QString, tip);
        QUdpSocket target;
        QVERIFY(target.bind(QHostAddress(QHostAddress::LocalHost), 0));
        rig->startUdp();
        rig->child<QLineEdit>("edtDestAddress")->setText(address);
        rig->child<QLineEdit>("edtDestPort")->setText(port == "target" ? QString::number(target.localPort()) : port);
        // a mark, so that a tip of an earlier case is not taken for this one's
        QtMessageTip::Instance()->ShowMessage("-", QPoint());
        rig->send("ping");
        QCOMPARE(rig->page.sendCount(), quint64(4));
        if (tip.isEmpty()) {
            QTRY_VERIFY(target.hasPendingDatagrams());
            QCOMPARE(target.receiveDatagram().data(), QByteArray("ping"));
        }
        QCOMPARE(QtMessageTip::Instance()->text(), tip.isEmpty() ? QString("-") : tip);
    }

    void portTextDecidesWhereTheServerOrUdpOpens_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("notice");
        // text that is no port gives 0, and the system picks a free one
        QTest::newRow("server, letters") << 0 << "port" << "TCP服务监听[端口:0]已启动!!";
        QTest::newRow("server, too big") << 0 << "70000" << "TCP服务监听[端口:0]已启动!!";
        QTest::newRow("udp, empty") << 2 << "" << "UDP服务监听[端口:0]已启动!!";
        QTest::newRow("server, in use") << 0 << "taken" << "TCP服务监听[端口:%1]失败，请确认该端口是否可用!!";
        QTest::newRow("udp, in use") << 2 << "taken" << "UDP服务监听[端口:%1]失败，请确认该端口是否可用!!";
    }

    void portTextDecidesWhereTheServerOrUdpOpens()
    {
        QFETCH(int, mode);
        QFETCH(QString, port);
        QFETCH(QString, notice);
        QTcpServer tcpHolder;
        QUdpSocket udpHolder;
        QVERIFY(tcpHolder.listen(QHostAddress::Any, 0));
        QVERIFY(udpHolder.bind(QHostAddress::Any, 0, QAbstractSocket::DontShareAddress));
        const bool opened = port != "taken";
        if (!opened)
            notice = notice.arg(port = QString::number(mode == 0 ? tcpHolder.serverPort() : udpHolder.localPort()));
        rig->open(mode, port);
        QCOMPARE(rig->notices(), QStringList{notice});
        QCOMPARE(rig->notify.last().at(1).toInt(), opened ? 0 : 255);
        QCOMPARE((mode == 0 ? rig->page.tcpServer()->serverPort() : rig->page.udpSocket()->localPort()) != 0, opened);
        QCOMPARE(rig->lampOn(), opened);
        QCOMPARE(rig->modeFree(), !opened);
    }

    void aBurstOfTwoHundredClientsIsListedAndUnlisted()
    {
        auto peers = rig->connectClients(rig->startServer(), 200);
        const QStringList items = rig->clients();
        QCOMPARE(QSet<QString>(items.begin(), items.end()).size(), 201);
        for (auto &p : peers)
            p->disconnectFromHost();
        QTRY_COMPARE(rig->clients(), QStringList{"All Clients"});
    }

    void aFloodIsCountedWholeWhileTheViewStaysBounded()
    {
        rig->page.resize(900, 600);
        rig->page.show();
        auto peers = rig->connectClients(rig->startServer(), 1);
        QCOMPARE(int(peers.size()), 1);
        QByteArray data;
        for (int i = 0; data.size() < 4 * 1024 * 1024; ++i)
            data += "line " + QByteArray::number(i).rightJustified(8, '0') + " abcdefghijklmnopqrstuvwxyz\r\n";
        peers[0]->write(data);
        QTRY_COMPARE_WITH_TIMEOUT(rig->page.recvCount(), quint64(data.size()), 120000);

        // nothing lost: without tags and breaks the text is the data without CR LF
        const QString all = rig->page.recvText();
        QString bare = all;
        bare.remove(QString("[Tcp client %1] ").arg(rig->nameOf(*peers[0]))).remove('\n');
        QVERIFY(bare.toLatin1() == data.replace("\r\n", ""));
        // the view holds only the end; a save takes everything
        QTRY_VERIFY(all.endsWith(rig->page.recvView()->toPlainText()));
        QVERIFY(rig->page.recvView()->toPlainText().size() <= NetworkToolWidget::RecvViewMaxChars);
        QTemporaryDir dir;
        rig->page.saveDataToFile(dir.filePath("all.txt"));
        QCOMPARE(QFileInfo(dir.filePath("all.txt")).size(), qint64(all.size()));
        // and the page still answers
        rig->send("still here");
        QTRY_COMPARE(peers[0]->bytesAvailable(), qint64(10));
    }
};

LARK_TEST_MAIN(TstNetworkToolWidget)
#include "tst_networktoolwidget.moc"
