#include "CameraBoardFrame.h"
#include "CameraPageRig.h"
#include "LarkLineSettings.h"
#include "LarkPtyPair.h"
#include "LarkTapSpy.h"
#include "LinkTap.h"
#include "StatusLabel.h"

namespace {

// The page on one link and the test as the board on its other end: a client of the
// page's server, a server for its client, a UDP sender, or the far end of a pty pair.
struct Rig : CameraPageRig {
    Link link = Server;
    QTcpServer boardServer;
    std::unique_ptr<QTcpSocket> tcp;
    QUdpSocket udp;
    LarkPtyPair pty;

    QList<QVariant> lastNotice() { return notify.isEmpty() ? QList<QVariant>() : notify.last(); }
    bool connectBoard()
    {
        tcp.reset(new QTcpSocket);
        tcp->connectToHost(QHostAddress::LocalHost, page.tcpServer()->serverPort());
        return QTest::qWaitFor([&] { return page.tcpServer()->counts() == 1; }, 5000);
    }
    bool open(Link l, bool jpeg = false)
    {
        link = l;
        if ((l == Serial && !pty.start()) || (l == Client && !boardServer.listen(QHostAddress::LocalHost, 0)))
            return false;
        if (!start(l, l == Client ? QString::number(boardServer.serverPort()) : "0", jpeg, pty.programPath()))
            return false;
        if (l == Server)
            return connectBoard();
        if (l == Client && QTest::qWaitFor([&] { return boardServer.hasPendingConnections(); }, 5000))
            tcp.reset(boardServer.nextPendingConnection());
        return l == Client ? QTest::qWaitFor([&] { return button() == "断开连接"; }, 5000)
                           : l != Udp || page.udpSocket()->state() == QAbstractSocket::BoundState;
    }
    // the board writes; true once the page has counted every byte
    bool send(const QByteArray &data)
    {
        const qint64 want = page.recvBytes() + data.size();
        if (link == Serial)
            pty.boardWrite(data);
        else if (link == Udp)
            udp.writeDatagram(data, QHostAddress::LocalHost, page.udpSocket()->localPort());
        else
            tcp->write(data);
        return QTest::qWaitFor([&] { return page.recvBytes() >= want; }, 5000);
    }
    // an image frame as boards send it: the head in a chunk of its own, then the rest
    bool sendImage(const QByteArray &frame) { return send(frame.left(12)) && send(frame.mid(12)); }
    // n bytes the board received; UDP replies name no destination and never arrive,
    // so for UDP this is n question marks, as is the expectation (wire())
    QByteArray boardReads(int n)
    {
        if (link == Serial)
            return pty.boardReadAtLeast(n);
        if (link == Udp)
            return QByteArray(n, '?');
        return QTest::qWaitFor([&] { return tcp->bytesAvailable() >= n; }, 5000) ? tcp->read(n + 1) : tcp->readAll();
    }
    QByteArray wire(const QByteArray &frame) { return link == Udp ? QByteArray(frame.size(), '?') : frame; }
};

} // namespace

class TstCameraDebugWidget : public QObject
{
    Q_OBJECT
    std::unique_ptr<Rig> rig;

private slots:
    void init() { rig.reset(new Rig); }
    void cleanup() { rig.reset(); }

    void everyLinkEndToEnd_data()
    {
        QTest::addColumn<int>("link");
        QTest::addColumn<QString>("closed");
        QTest::newRow("tcp server") << int(Server) << "TCP服务监听[端口:0]已关闭!!";
        QTest::newRow("tcp client") << int(Client) << "TcpClient已断开连接!!";
        QTest::newRow("udp") << int(Udp) << "UDP服务监听[端口:0]已关闭!!";
        QTest::newRow("serial") << int(Serial) << "串口[/dev/%1]已关闭!!";
    }
    void everyLinkEndToEnd()
    {
        QFETCH(int, link);
        QFETCH(QString, closed);
        QVERIFY(rig->open(Link(link)));
        // the TCP client runs outside the lamp, the rate timer and the locks
        const bool locked = link != Client;
        QCOMPARE(rig->child<StatusLabel>("statusLabel")->isWork(), locked);
        QVERIFY(rig->links()->isEnabled() != locked && rig->child<QRadioButton>("JPEG数据")->isEnabled() != locked);

        // slot 1 is announced and answered, always with address 0
        const QByteArray ok = camFrame(0, QByteArray(1, 0));
        QVERIFY(rig->send(formatFrame(1, 4, 8, 4)));
        QCOMPARE(rig->lastNotice(), (QList<QVariant>{"设备[2]修改图像格式[RGB565]成功: 宽度: 8像素,高度：4像素.", 0}));
        QCOMPARE(rig->boardReads(13), rig->wire(ok));
        // drawn into the second image, mirrored and one row up: (0, 0) shows source pixel 16
        QVERIFY(rig->sendImage(camFrame(2, greyPixels(32), 1)));
        QCOMPARE(rig->boardReads(13), rig->wire(ok));
        const QImage image = rig->page.imageViewer()->pixmap(1).toImage();
        QVERIFY(image.size() == QSize(8, 4) && image.pixel(0, 0) == qRgb(136, 136, 136));
        // a spoilt frame into slot 0 (default 320 x 240): status 1, then drawn and status 0
        QVERIFY(rig->sendImage(camFrame(2, greyPixels(32), 0, -1, 1)));
        QCOMPARE(rig->boardReads(26), rig->wire(camFrame(0, QByteArray(1, 1)) + ok));
        QCOMPARE(rig->page.imageViewer()->pixmap(0).size(), QSize(320, 240));
        QCOMPARE(rig->page.frameCount(), quint32(2));

        // through the strip's row buttons: the second read row asks with its row id 2;
        // the first write row writes to device 1 with a two-byte address
        rig->field(18)->setText("1F");
        rig->child<QPushButton>("btnSendReg9")->click();
        QCOMPARE(rig->boardReads(15), rig->wire(camFrame(0x11, QByteArray::fromHex("02001f"))));
        rig->child<QLineEdit>("edtRegAddrLen")->setText("2");
        rig->page.findChild<QGroupBox *>("groupBoxSendCfg")->findChild<QComboBox *>()->setCurrentIndex(1);
        rig->field(0)->setText("1F2");
        rig->field(1)->setText("AB");
        rig->child<QPushButton>("btnSendReg0")->click();
        QCOMPARE(rig->boardReads(15), rig->wire(camFrame(0x10, QByteArray::fromHex("f201ab"), 1)));
        // the answer for row id 2 lands in the second read row
        QVERIFY(rig->send(readAnswer(0, 2, 0x5A, 1)));
        QCOMPARE(rig->field(19)->text(), QString("5A"));

        rig->press();
        QCOMPARE(rig->lastNotice().value(0).toString(), link == Serial ? closed.arg(rig->tty) : closed);
    }

    // each link's life and bytes through the tap; UDP writes name no destination
    void theTapSeesEveryLink_data()
    {
        QTest::addColumn<int>("link");
        QTest::newRow("tcp server, closed by the user") << int(Server);
        QTest::newRow("tcp client, closed by the peer") << int(Client);
        QTest::newRow("udp, closed by the user") << int(Udp);
        QTest::newRow("serial, closed by the port watcher") << int(Serial);
    }
    void theTapSeesEveryLink()
    {
        QFETCH(int, link);
        LarkTapSpy tap(rig->page.linkTap());
        QVERIFY(rig->open(Link(link)) && rig->send("junk"));
        QCOMPARE(tap.received(), QByteArray("junk"));
        QCOMPARE(rig->page.linkTap()->write("ping"), qint64(link == Udp ? -1 : 4));
        QCOMPARE(rig->boardReads(4) + tap.sent(), rig->wire("ping") + (link == Udp ? "" : "ping"));
        const QString names[] = {QString("TCP Server 0.0.0.0:%1").arg(rig->page.tcpServer()->serverPort()),
                                 QString("TCP Client 127.0.0.1:%1").arg(rig->boardServer.serverPort()),
                                 QString("UDP 0.0.0.0:%1").arg(rig->page.udpSocket()->localPort()), "/dev/" + rig->tty};
        if (link == Client)
            rig->tcp->disconnectFromHost();
        else
            link == Serial ? rig->page.SltSerialportChanged({}) : rig->press();
        QTRY_COMPARE(tap.life(), "open " + names[link] + " closed x1");
    }

    void portsComeAndGo()
    {
        QCOMPARE(rig->links()->itemText(0), QString("Tcp Server"));
        // no tty in the item: nothing is tried
        rig->page.SltSerialportChanged({"COM3", "ttyLarkNoSuchPort"});
        QCOMPARE(rig->links()->itemText(0), QString("TCP Server"));
        rig->links()->setCurrentIndex(3);
        rig->press();
        QCOMPARE(rig->lastNotice(), (QList<QVariant>{"串口[串口    COM3]打开失败!!!", 255}));
        rig->links()->setCurrentIndex(4);
        rig->press();
        QCOMPARE(rig->lastNotice(), (QList<QVariant>{"串口[/dev/ttyLarkNoSuchPort]打开失败!!!", 255}));
        // any change of the list closes an open port
        QVERIFY(rig->open(Serial));
        rig->page.SltSerialportChanged({rig->tty});
        QCOMPARE(rig->lastNotice(), (QList<QVariant>{"当前串口已拔出，请重新打开!", 255}));
        QVERIFY(!rig->page.serialPort()->isOpen() && rig->button() == "打开串口");
        // a running server keeps its place in the rebuilt list
        QVERIFY(rig->open(Server));
        rig->page.SltSerialportChanged({});
        QVERIFY(rig->links()->currentIndex() == 0 && rig->page.tcpServer()->isListening());
    }

    void aPeerLeavingMidFrameThenCountersAndTheWrappedRate()
    {
        QSignalSpy refresh(&rig->page, SIGNAL(signalRefresCounts(int)));
        QVERIFY(rig->open(Server));
        QVERIFY(refresh.wait(3000)); // the rate timer runs with the link
        // from here the rate is taken by hand: a tick between two checks would make
        // the counts depend on the machine's speed
        rig->page.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly)->stop();
        refresh.clear();
        const QByteArray frame = camFrame(2, greyPixels(320 * 240));
        QVERIFY(rig->send(frame.left(5000)));
        rig->tcp->disconnectFromHost();
        QTRY_COMPARE(rig->page.tcpServer()->counts(), 0);
        // the next board's head starts afresh
        QVERIFY(rig->connectBoard());
        for (int i = 0; i < 3; ++i)
            QVERIFY(rig->sendImage(frame));
        QCOMPARE(refresh.count(), 6);
        QCOMPARE(refresh.last().at(0).toInt(), 1);
        rig->page.SltCalculationRate();
        QCOMPARE(rig->page.getCounts(), (QStringList{"帧编号: 3", "接收速率: 0.00 Bytes", "接收帧率: 3 FPS"}));
        // after a clear the unsigned difference wraps for one tick
        rig->page.clearCounts();
        rig->page.SltCalculationRate();
        QCOMPARE(rig->page.getCounts(), (QStringList{"帧编号: 0", "接收速率: 0.00 Bytes", "接收帧率: 4.29497e+09 FPS"}));
        rig->page.SltCalculationRate();
        QCOMPARE(rig->page.getCounts().last(), QString("接收帧率: 0 FPS"));
    }

    // every option of the serial link's four boxes reaches the tty, as the kernel holds it
    void everySerialOptionReachesTheTty()
    {
        QVERIFY(rig->open(Serial));
        rig->press();
        QCOMPARE(LarkTest::sweepQextPage(&rig->page, rig->pty.programPath(), rig->page.serialPort(), [&] { rig->press(); }),
                 LarkTest::qextSerialSweep());
    }
};

LARK_TEST_MAIN(TstCameraDebugWidget)
#include "tst_cameradebugwidget.moc"
