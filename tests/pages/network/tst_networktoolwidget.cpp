#include "LarkTapSpy.h"
#include "LinkTap.h"
#include "NetworkPageRig.h"
#include "NumberTool.h"
#include "QtMessageTip.h"
#include "TcpServer.h"

namespace {

using Peer = std::unique_ptr<QTcpSocket>;

// a mode, the port typed, the notices of each press
struct ModeRow {
    int mode;
    QString port;
    QStringList opened, closed;
};

// The page driven through its own buttons; its peers are loopback QTcpSockets and
// QUdpSockets, and `board` serves its client mode.
struct Rig : NetworkPageRig {
    QTcpServer board;

    bool connected() { return page.tcpSocket()->state() == QAbstractSocket::ConnectedState; }
    QPushButton *sendButton() { return LarkTest::find<QPushButton>(page.sendBox(), "发送数据"); }
    QStringList notices() const
    {
        QStringList texts;
        for (const QList<QVariant> &args : notify)
            texts << args.at(0).toString();
        return texts;
    }
    QStringList clients() { return LarkTest::itemTexts(child<QComboBox>("cbxClients")); }
    quint16 startServer() { open(0, "0"); return page.tcpServer()->serverPort(); }
    std::vector<Peer> connectClients(int n)
    {
        std::vector<Peer> peers;
        const int before = page.tcpServer()->counts();
        for (int i = 0; i < n; ++i) {
            peers.emplace_back(new QTcpSocket);
            peers.back()->connectToHost(QHostAddress::LocalHost, page.tcpServer()->serverPort());
        }
        (void)QTest::qWaitFor([&] { return page.tcpServer()->counts() == before + n; }, 20000);
        return peers;
    }
    // the name the page gives a client of its server
    QString nameOf(const QTcpSocket &peer)
    {
        for (QTcpSocket *c : page.tcpServer()->findChildren<QTcpSocket *>())
            if (c->peerPort() == peer.localPort())
                return TcpServer::clientName("127.0.0.1", c->socketDescriptor());
        return QString();
    }
    // presses "断开" and answers the box with its OK or cancel button: the box's
    // "title: question", empty if nothing asks
    QString pressDisconnect(bool ok)
    {
        return LarkTest::modalText([this] { QTest::mouseClick(child<QPushButton>("btnDisconnect"), Qt::LeftButton); },
                                   ok ? "btnMsgOk" : "btnMsgCancel");
    }
};

} // namespace
Q_DECLARE_METATYPE(ModeRow)

class TstNetworkToolWidget : public QObject
{
    Q_OBJECT
    std::unique_ptr<Rig> rig;

private slots:
    void initTestCase() { NumberTool::m_newLine = QByteArray("\r\n"); }
    void init() { rig.reset(new Rig); }
    void cleanup() { rig.reset(); }

    void eachModeOpensAndClosesWithItsNotices_data()
    {
        QTest::addColumn<ModeRow>("row");
        // text that is no port gives 0, and the system picks a free one
        QTest::newRow("TCP Server") << ModeRow{0, "port", {"TCP服务监听[端口:0]已启动!!"}, {"TCP服务监听[端口:0]已关闭!!"}};
        // the user's close gives the socket's own report, then the button's
        QTest::newRow("TCP Client") << ModeRow{1, "board", {"正在与服务器建立连接....", "[TCP Client]与服务器连接成功！！！"},
                                               {"[TCP Client]与服务器已断开连接~~~", "[ TCP Client ] 已断开连接！"}};
        QTest::newRow("UDP") << ModeRow{2, "", {"UDP服务监听[端口:0]已启动!!"}, {}};
        // a port in use fails at each press
        QTest::newRow("server, in use") << ModeRow{0, "taken", {"TCP服务监听[端口:%1]失败，请确认该端口是否可用!!"}, {}};
        QTest::newRow("udp, in use") << ModeRow{2, "taken", {"UDP服务监听[端口:%1]失败，请确认该端口是否可用!!"}, {}};
    }

    void eachModeOpensAndClosesWithItsNotices()
    {
        QFETCH(ModeRow, row);
        auto [mode, port, opened, closed] = row;
        const bool ok = port != "taken";
        QTcpServer tcpHolder;
        QUdpSocket udpHolder;
        QVERIFY(tcpHolder.listen(QHostAddress::Any, 0));
        QVERIFY(udpHolder.bind(QHostAddress::Any, 0, QAbstractSocket::DontShareAddress));
        QVERIFY(rig->board.listen(QHostAddress::LocalHost, 0));
        if (port == "board")
            port = QString::number(rig->board.serverPort());
        if (port == "taken") {
            port = QString::number(mode == 0 ? tcpHolder.serverPort() : udpHolder.localPort());
            opened = closed = QStringList{opened[0].arg(port)};
        }
        // through another mode first, so that every row is a real change of mode
        rig->child<QComboBox>("cbxNetType")->setCurrentIndex(mode == 1 ? 2 : 1);
        rig->setMode(mode, port);
        rig->press();
        QTRY_COMPARE(rig->notices(), opened);
        QCOMPARE(rig->notify.last().at(1).toInt(), ok ? 0 : 255);
        if (mode != 1)
            QCOMPARE((mode == 0 ? rig->page.tcpServer()->serverPort() : rig->page.udpSocket()->localPort()) != 0, ok);

        rig->notify.clear();
        rig->press();
        QCOMPARE(rig->notices(), closed);
    }

    // far ends: the second of two clients of the server, chosen in the clients box; the
    // server the client reaches; the UDP destination
    void theTapSeesEachModeAndWritesWhereTheSendBoxWould_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("TCP Server, closed by the user") << 0;
        QTest::newRow("TCP Client, closed by the peer") << 1;
        QTest::newRow("UDP, closed by the user") << 2;
    }
    void theTapSeesEachModeAndWritesWhereTheSendBoxWould()
    {
        QFETCH(int, mode);
        LarkTapSpy tap(rig->page.linkTap());
        std::vector<Peer> peers;
        QUdpSocket udp;
        QString name;
        if (mode == 0) {
            name = QString("TCP Server 0.0.0.0:%1").arg(rig->startServer());
            peers = rig->connectClients(2);
            rig->child<QComboBox>("cbxClients")->setCurrentText(rig->nameOf(*peers[1]));
        } else if (mode == 1) {
            QVERIFY(rig->board.listen(QHostAddress::LocalHost));
            rig->open(1, QString::number(rig->board.serverPort()));
            QTRY_VERIFY(rig->board.hasPendingConnections() && rig->connected());
            peers.emplace_back(), peers.emplace_back(rig->board.nextPendingConnection());
            name = QString("TCP Client 127.0.0.1:%1").arg(rig->board.serverPort());
        } else {
            QVERIFY(udp.bind(QHostAddress(QHostAddress::LocalHost), 0));
            rig->child<QLineEdit>("edtDestPort")->setText(QString::number(udp.localPort()));
            name = QString("UDP 0.0.0.0:%1").arg(rig->startUdp());
        }
        (void)(mode == 2 ? udp.writeDatagram("junk", QHostAddress::LocalHost, rig->page.udpSocket()->localPort()) : peers[1]->write("junk"));
        QTRY_COMPARE(tap.received(), QByteArray("junk"));
        QCOMPARE(rig->page.linkTap()->write("ping") + rig->page.sendCount(), quint64(8));
        QTRY_VERIFY(mode == 2 ? udp.hasPendingDatagrams() : peers[1]->bytesAvailable() == 4);
        QCOMPARE((mode == 2 ? udp.receiveDatagram().data() : peers[1]->readAll()) + tap.sent(), QByteArray("pingping"));
        QVERIFY(mode != 0 || peers[0]->bytesAvailable() == 0);
        (void)(mode == 1 ? peers[1]->disconnectFromHost() : rig->press());
        QTRY_COMPARE(tap.life(), "open " + name + " closed x1");
    }

    void aBurstOfClientsIsTaggedSentToAllOrOneAskedAndDropped()
    {
        rig->startServer();
        // with no clients "断开" asks nothing (a box would be answered and seen here)
        QCOMPARE(rig->pressDisconnect(false), QString());
        auto peers = rig->connectClients(200);
        QStringList names;
        for (auto &p : peers)
            names << rig->nameOf(*p);
        QStringList listed = rig->clients();
        QCOMPARE(listed.takeFirst(), QString("All Clients"));
        QCOMPARE(listed.size(), 200);
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

        // clients that leave are unlisted
        for (int i = 3; i < 200; ++i)
            peers[i]->disconnectFromHost();
        QTRY_COMPARE(rig->clients().size(), 4);
        // "断开" asks first: cancelled, nothing happens; then it drops the chosen client
        QCOMPARE(rig->pressDisconnect(false), QString("询问: 是否确认断开当前客户端?"));
        QCOMPARE(rig->page.tcpServer()->counts(), 3);
        box->setCurrentIndex(box->findText(names[2]));
        QCOMPARE(rig->pressDisconnect(true), QString("询问: 是否确认断开当前客户端?"));
        QTRY_COMPARE(peers[2]->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(!rig->clients().contains(names[2]));
        box->setCurrentIndex(0);
        QCOMPARE(rig->pressDisconnect(true), QString("询问: 是否确认断开所有连接?"));
        QCOMPARE(rig->clients(), QStringList{"All Clients"});
        QTRY_COMPARE(peers[1]->state(), QAbstractSocket::UnconnectedState);

        // stopping drops the clients, and the same server listens again
        auto again = rig->connectClients(1);
        rig->press();
        QCOMPARE(rig->clients(), QStringList{"All Clients"});
        QTRY_COMPARE(again[0]->state(), QAbstractSocket::UnconnectedState);
        rig->press();
        rig->connectClients(1);
        QCOMPARE(rig->clients().size(), 2);
    }

    void clientRetriesARefusedConnectionThenTalksToItsServer()
    {
        QVERIFY(rig->board.listen(QHostAddress::LocalHost, 0));
        const quint16 port = rig->board.serverPort();
        rig->board.close();
        // refused without a word
        rig->open(NetworkToolWidget::TcpClientMode, QString::number(port));
        QTRY_COMPARE(rig->page.tcpSocket()->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(rig->notices(), QStringList{"正在与服务器建立连接...."});

        if (!rig->board.listen(QHostAddress::LocalHost, port))
            QSKIP("the freed port was taken by someone else");
        rig->press();
        QTRY_VERIFY(rig->board.hasPendingConnections() && rig->connected());
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
        QVERIFY(!rig->page.tcpSocket()->isOpen());
    }

    // text from each sender goes under its own tag; a send goes to the destination
    // fields, or a tip says which is wrong, and is counted either way; in HEX the senders
    // run together, untagged, CR LF kept; stopped, data is only counted; the real dialog
    // saves what the view holds as bytes
    void udpTagsEachSenderSendsToTheDestinationAndSavesHexAsBytes()
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
        const QString dest = QString::number(a.localPort());
        for (const QStringList &row : QList<QStringList>{{"127.0.0.1", dest, "-"}, {"", dest, "UDP目的地址配置错误！"},
                                                         {"127.0.0.1", "0", "UDP目的端口配置错误！"}}) {
            rig->child<QLineEdit>("edtDestAddress")->setText(row[0]);
            rig->child<QLineEdit>("edtDestPort")->setText(row[1]);
            QtMessageTip::Instance()->ShowMessage("-", QPoint()); // a mark: no tip since
            rig->send("ping");
            QCOMPARE(QtMessageTip::Instance()->text(), row[2]);
        }
        QTRY_VERIFY(a.hasPendingDatagrams());
        QCOMPARE(a.receiveDatagram().data(), QByteArray("ping"));
        QCOMPARE(rig->page.sendCount(), quint64(12));
        rig->page.clearRecv();
        QCOMPARE(rig->page.recvText(), QString());

        rig->child<QRadioButton>("rbtnRecvHex")->setChecked(true);
        a.writeDatagram("A\r\n", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.recvCount(), quint64(17));
        b.writeDatagram("B", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.recvText(), QString("41 0D 0A 42 "));
        rig->child<QCheckBox>("chkStopShow")->setChecked(true);
        a.writeDatagram("hidden", QHostAddress::LocalHost, port);
        QTRY_COMPARE(rig->page.getCounts(), (QStringList{"发送字节: 12", "接收字节: 24"}));
        QTemporaryDir dir;
        rig->notify.clear();
        LarkTest::answerNextFileDialog(dir.filePath("capture"), "*.bin");
        QTest::mouseClick(rig->child<QPushButton>("btnSaveFile"), Qt::LeftButton);
        QCOMPARE(rig->notices(), QStringList{"文件保存完成!"});
        QCOMPARE(LarkTest::fileBytes(dir.filePath("capture.bin")), QByteArray("A\r\nB"));
    }

    void aFloodIsCountedWholeWhileTheViewStaysBounded()
    {
        rig->page.resize(900, 600);
        rig->page.show();
        rig->startServer();
        auto peers = rig->connectClients(1);
        QByteArray data;
        for (int i = 0; data.size() < 4 * 1024 * 1024; ++i)
            data += "line " + QByteArray::number(i).rightJustified(8, '0') + " abcdefghijklmnopqrstuvwxyz\r\n";
        peers[0]->write(data);
        QTRY_COMPARE_WITH_TIMEOUT(rig->page.recvCount(), quint64(data.size()), 120000);

        // nothing lost: without tags and breaks the text is the data without CR LF
        const QString all = rig->page.recvText();
        const QString bare = QString(all).remove(QString("[Tcp client %1] ").arg(rig->nameOf(*peers[0]))).remove('\n');
        QVERIFY(bare.toLatin1() == data.replace("\r\n", ""));
        // the view holds only the end; a save takes everything
        QTRY_VERIFY(all.endsWith(rig->page.recvView()->toPlainText()));
        QVERIFY(rig->page.recvView()->toPlainText().size() <= NetworkToolWidget::RecvViewMaxChars);
        QTemporaryDir dir;
        rig->page.saveDataToFile(dir.filePath("all.txt"));
        QCOMPARE(QFileInfo(dir.filePath("all.txt")).size(), qint64(all.size()));
    }
};

LARK_TEST_MAIN(TstNetworkToolWidget)
#include "tst_networktoolwidget.moc"
