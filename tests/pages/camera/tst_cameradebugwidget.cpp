#include "CameraBoardFrame.h"
#include "CameraDebugWidget.h"
#include "ImageFormatConfig.h"
#include "ImageViewer.h"
#include "LarkPtyPair.h"
#include "LarkTest.h"
#include "QextSerialPort.h"
#include "QtMessageTip.h"
#include "StatusLabel.h"
#include "TcpServer.h"

#include <QtNetwork>
#include <QtTest>
#include <QtWidgets>
#include <unistd.h>

namespace {

enum Link { Server, Client, Udp, Serial };

// The page on one link, the test as the board on the other end: a TCP client of the
// page's server, a TCP server for its client, a UDP sender, or the far end of a pty
// pair that the page opens under a /dev/tty name.
struct Rig {
    CameraDebugWidget page;
    QSignalSpy notify{&page, SIGNAL(signalNotify(QString,int))};
    Link link = Server;
    QTcpServer boardServer;
    std::unique_ptr<QTcpSocket> tcp;
    QUdpSocket udp;
    LarkPtyPair pty;
    QString ttyName = QString("ttyLarkCam%1").arg(getpid());

    ~Rig() { QFile::remove("/dev/" + ttyName); }

    template <class T>
    T *child(const QString &name)
    {
        for (T *w : page.findChildren<T *>())
            if (w->objectName() == name || w->property("text").toString() == name)
                return w;
        return nullptr;
    }
    QComboBox *links() { return child<QComboBox>("cbxProtocol"); }
    QString button() { return child<QPushButton>("btnOpen")->text(); }
    QString lastNotice() { return notify.isEmpty() ? QString() : notify.last().at(0).toString(); }
    void press() { child<QPushButton>("btnOpen")->click(); }

    bool open(Link l, bool jpeg = false)
    {
        link = l;
        child<QRadioButton>(jpeg ? "JPEG数据" : "协议传输")->setChecked(true);
        child<QLineEdit>("edtPort")->setText("0");
        if (l == Serial) {
            if (!pty.start() || !QFile::link(pty.programPath(), "/dev/" + ttyName))
                return false;
            page.SltSerialportChanged({"ttyS99", ttyName});
            links()->setCurrentIndex(4);
        } else if (l == Client) {
            if (!boardServer.listen(QHostAddress::LocalHost, 0))
                return false;
            links()->setCurrentIndex(1);
            child<QComboBox>("cbxAddress")->setCurrentText("127.0.0.1");
            child<QLineEdit>("edtPort")->setText(QString::number(boardServer.serverPort()));
        } else {
            links()->setCurrentIndex(int(l));
        }
        press();
        if (l == Server) {
            tcp.reset(new QTcpSocket);
            tcp->connectToHost(QHostAddress::LocalHost, page.tcpServer()->serverPort());
            return QTest::qWaitFor([&] { return page.tcpServer()->counts() == 1; }, 5000);
        }
        if (l == Client) {
            if (!QTest::qWaitFor([&] { return boardServer.hasPendingConnections(); }, 5000))
                return false;
            tcp.reset(boardServer.nextPendingConnection());
            return QTest::qWaitFor([&] { return button() == "断开连接"; }, 5000);
        }
        return l == Udp ? page.udpSocket()->state() == QAbstractSocket::BoundState : page.serialPort()->isOpen();
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
    // what the board has received; UDP replies name no destination and never arrive
    QByteArray boardReads(int n)
    {
        if (link == Serial)
            return pty.boardReadAtLeast(n);
        if (link == Udp)
            return QByteArray(n, '?');
        if (!QTest::qWaitFor([&] { return tcp->bytesAvailable() >= n; }, 5000))
            return tcp->readAll();
        return tcp->read(n);
    }
    QByteArray expectWire(const QByteArray &frame) { return link == Udp ? QByteArray(frame.size(), '?') : frame; }
};

QRgb greyRgb(int k) { return qRgb(8 * (k + 1), 8 * (k + 1), 8 * (k + 1)); }

QByteArray jpegOf(QColor colour, int w, int h)
{
    QImage image(w, h, QImage::Format_RGB888);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", 95);
    return bytes;
}

} // namespace

class TstCameraDebugWidget : public QObject
{
    Q_OBJECT
    std::unique_ptr<Rig> rig;

    void links_data()
    {
        QTest::addColumn<int>("link");
        QTest::newRow("tcp server") << int(Server);
        QTest::newRow("tcp client") << int(Client);
        QTest::newRow("udp") << int(Udp);
        QTest::newRow("serial") << int(Serial);
    }

private slots:
    void init() { rig.reset(new Rig); }
    void cleanup() { rig.reset(); }

    void framesRepliesAndRegistersOnEveryLink_data() { links_data(); }
    void framesRepliesAndRegistersOnEveryLink()
    {
        QFETCH(int, link);
        QVERIFY(rig->open(Link(link)));
        const QByteArray ok = camFrame(0, QByteArray(1, 0));

        // slot 1 is announced and answered, always with address 0
        QVERIFY(rig->send(formatFrame(1, 4, 8, 4)));
        QCOMPARE(rig->lastNotice(), QString("设备[2]修改图像格式[RGB565]成功: 宽度: 8像素,高度：4像素."));
        QCOMPARE(rig->boardReads(13), rig->expectWire(ok));

        // drawn mirrored and one row up into the second image
        QVERIFY(rig->sendImage(camFrame(2, greyPixels(32), 1)));
        QCOMPARE(rig->boardReads(13), rig->expectWire(ok));
        const QImage image = rig->page.imageViewer()->pixmap(1).toImage();
        QCOMPARE(image.size(), QSize(8, 4));
        QCOMPARE(image.pixel(0, 0), greyRgb(16));
        QCOMPARE(image.pixel(7, 2), greyRgb(25));
        QCOMPARE(image.pixel(3, 1), greyRgb(2 * 8 + 8 - 3));
        QCOMPARE(image.pixel(0, 3), qRgb(0, 0, 0));
        QVERIFY(rig->page.imageViewer()->pixmap(0).isNull());

        // a spoilt frame: status 1, then drawn and status 0 as the check is off
        QVERIFY(rig->sendImage(camFrame(2, greyPixels(32), 0, -1, 1)));
        QCOMPARE(rig->boardReads(26), rig->expectWire(camFrame(0, QByteArray(1, 1)) + ok));
        QCOMPARE(rig->page.imageViewer()->pixmap(0).size(), QSize(320, 240));
        QCOMPARE(rig->page.frameCount(), quint32(2));

        // register requests: a read with its row id, then a write to device 1 with a
        // two-byte address
        rig->page.SltReadWriteRegister("1F", "", 5);
        QCOMPARE(rig->boardReads(15), rig->expectWire(camFrame(0x11, QByteArray::fromHex("05001f"))));
        rig->child<QLineEdit>("edtRegAddrLen")->setText("2");
        rig->page.findChild<QGroupBox *>("groupBoxSendCfg")->findChild<QComboBox *>()->setCurrentIndex(1);
        QMetaObject::invokeMethod(rig->page.formatConfig(), "signalReadWriteReg", Q_ARG(QString, "1F2"), Q_ARG(QString, "AB"), Q_ARG(int, 0));
        QCOMPARE(rig->boardReads(15), rig->expectWire(camFrame(0x10, QByteArray::fromHex("f201ab"), 1)));
    }

    void jpegStreamOnEveryLink_data() { links_data(); }
    void jpegStreamOnEveryLink()
    {
        QFETCH(int, link);
        QVERIFY(rig->open(Link(link), true));
        const QByteArray picture = jpegOf(QColor(0, 0, 255), 40, 30);
        // junk before the SOI is dropped; no reply in this mode
        QVERIFY(rig->send("junk" + picture.left(100)));
        QVERIFY(rig->send(picture.mid(100) + picture.left(7)));
        QTRY_COMPARE(rig->page.frameCount(), quint32(1));
        const QImage shown = rig->page.imageViewer()->pixmap(0).toImage();
        QCOMPARE(shown.size(), QSize(40, 30));
        QVERIFY(qBlue(shown.pixel(20, 15)) > 240 && qRed(shown.pixel(20, 15)) < 16);
        QCOMPARE(rig->page.getCounts().first(), QString("帧编号: 1"));
        if (link == Server || link == Client)
            QCOMPARE(rig->tcp->bytesAvailable(), qint64(0));
    }

    void openAndCloseTellTheUser_data()
    {
        QTest::addColumn<int>("link");
        QTest::addColumn<QString>("running");
        QTest::addColumn<QString>("closed");
        QTest::addColumn<QString>("idle");
        QTest::newRow("tcp server") << int(Server) << "关闭监听" << "TCP服务监听[端口:0]已关闭!!" << "启动监听";
        QTest::newRow("tcp client") << int(Client) << "断开连接" << "TcpClient已断开连接!!" << "开始连接";
        QTest::newRow("udp") << int(Udp) << "关闭监听" << "UDP服务监听[端口:0]已关闭!!" << "启动监听";
        QTest::newRow("serial") << int(Serial) << "关闭串口" << "串口[/dev/%1]已关闭!!" << "打开串口";
    }
    void openAndCloseTellTheUser()
    {
        QFETCH(int, link);
        QFETCH(QString, running);
        QFETCH(QString, closed);
        QFETCH(QString, idle);
        QVERIFY(rig->open(Link(link)));
        QCOMPARE(rig->button(), running);
        // the TCP client runs outside the lamp, the rate timer and the locks
        const bool locked = link != Client;
        QCOMPARE(rig->child<StatusLabel>("statusLabel")->isWork(), locked);
        QCOMPARE(rig->links()->isEnabled(), !locked);
        QCOMPARE(rig->child<QRadioButton>("JPEG数据")->isEnabled(), !locked);
        if (link == Server)
            QCOMPARE(rig->lastNotice(), QString("TCP服务监听[端口:0]已启动!!"));
        if (link == Serial)
            QCOMPARE(rig->lastNotice(), QString("串口[/dev/%1]打开成功!").arg(rig->ttyName));
        rig->press();
        QCOMPARE(rig->lastNotice(), link == Serial ? closed.arg(rig->ttyName) : closed);
        QCOMPARE(rig->button(), idle);
        QVERIFY(!rig->child<StatusLabel>("statusLabel")->isWork() && rig->links()->isEnabled());
    }

    void portsComeAndGo()
    {
        QCOMPARE(rig->links()->itemText(0), QString("Tcp Server"));
        // no tty in the item: nothing is tried
        rig->page.SltSerialportChanged({"COM3"});
        QCOMPARE(rig->links()->itemText(0), QString("TCP Server"));
        rig->links()->setCurrentIndex(3);
        QCOMPARE(rig->button(), QString("打开串口"));
        rig->press();
        QCOMPARE(rig->notify.last(), (QList<QVariant>{"串口[串口    COM3]打开失败!!!", 255}));
        rig->page.SltSerialportChanged({"ttyLarkNoSuchPort"});
        rig->links()->setCurrentIndex(3);
        rig->press();
        QCOMPARE(rig->notify.last(), (QList<QVariant>{"串口[/dev/ttyLarkNoSuchPort]打开失败!!!", 255}));

        // any change of the list closes an open port
        QVERIFY(rig->open(Serial));
        rig->page.SltSerialportChanged({rig->ttyName});
        QCOMPARE(rig->notify.last(), (QList<QVariant>{"当前串口已拔出，请重新打开!", 255}));
        QVERIFY(!rig->page.serialPort()->isOpen());
        QCOMPARE(rig->button(), QString("打开串口"));

        // a running server keeps its place in the rebuilt list
        QVERIFY(rig->open(Server));
        rig->page.SltSerialportChanged({});
        QCOMPARE(rig->links()->currentIndex(), 0);
        QVERIFY(rig->page.tcpServer()->isListening());
    }

    void countersAndTheRateAfterAClear()
    {
        QSignalSpy refresh(&rig->page, SIGNAL(signalRefresCounts(int)));
        QVERIFY(rig->open(Server));
        const QByteArray frame = camFrame(2, greyPixels(320 * 240));
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
        // the rate timer runs with the link
        refresh.clear();
        QVERIFY(refresh.wait(3000));
    }

    void aPeerLeavingMidFrame()
    {
        QVERIFY(rig->open(Server));
        const QByteArray frame = camFrame(2, greyPixels(320 * 240));
        QVERIFY(rig->send(frame.left(5000)));
        rig->tcp->disconnectFromHost();
        QTRY_COMPARE(rig->page.tcpServer()->counts(), 0);
        // the next board's head starts afresh
        rig->tcp.reset(new QTcpSocket);
        rig->tcp->connectToHost(QHostAddress::LocalHost, rig->page.tcpServer()->serverPort());
        QTRY_COMPARE(rig->page.tcpServer()->counts(), 1);
        QVERIFY(rig->sendImage(frame));
        QCOMPARE(rig->page.frameCount(), quint32(1));

        // the client's server goes mid-frame: the button says so, the buffer stays
        rig.reset(new Rig);
        QVERIFY(rig->open(Client));
        QVERIFY(rig->send(frame.left(5000)));
        rig->tcp->disconnectFromHost();
        QTRY_COMPARE(rig->button(), QString("开始连接"));
        QCOMPARE(rig->page.frameCount(), quint32(0));
    }

    void readAnswersAndTheAutoSendGate_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("toast");
        QTest::newRow("status 2") << readAnswer(2, 1, 0, 1) << "没有这个寄存器!";
        QTest::newRow("status 9") << readAnswer(9, 1, 0, 1) << "寄存器读取错误，错误代码[9]!";
        QTest::newRow("length") << readAnswer(0, 1, 0, 2) << "当前数据长度与配置不符合！";
    }
    void readAnswersAndTheAutoSendGate()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, toast);
        QCheckBox *autoSend = rig->child<QCheckBox>("自动发送");
        autoSend->click();
        QVERIFY(!autoSend->isChecked());
        QCOMPARE(QtMessageTip::Instance()->text(), QString("当前未打开设备！"));
        QVERIFY(rig->open(Serial));
        QVERIFY(rig->send(answer));
        QCOMPARE(QtMessageTip::Instance()->text(), toast);
        autoSend->click();
        QVERIFY(autoSend->isChecked());
        QMetaObject::invokeMethod(rig->page.formatConfig(), "autoSendFinished");
        QVERIFY(!autoSend->isChecked());
        QCOMPARE(QtMessageTip::Instance()->text(), QString("自动发送任务执行完成"));
        // a bad address length is refused before anything is sent
        rig->child<QLineEdit>("edtRegAddrLen")->setText("");
        rig->page.SltReadWriteRegister("1", "2", 0);
        QCOMPARE(QtMessageTip::Instance()->text(), QString("寄存器地址长度设置错误[1~4]"));
    }

    void viewerAreas()
    {
        ImageViewer viewer;
        viewer.resize(400, 300);
        QImage red(10, 10, QImage::Format_RGB888);
        red.fill(Qt::red);
        viewer.setPixmap(1, QPixmap::fromImage(red));
        viewer.setPixmap(0, QPixmap());
        // one area: slot 1 is kept but unseen; two areas: centred in the right half
        const QRgb cell = qRgb(0xe5, 0xe5, 0xe5);
        QCOMPARE(viewer.grab().toImage().pixel(300, 150), cell);
        viewer.setImageShowCount(2);
        const QImage two = viewer.grab().toImage();
        QCOMPARE(two.pixel(295, 145), qRgb(255, 0, 0));
        QCOMPARE(two.pixel(304, 154), qRgb(255, 0, 0));
        QCOMPARE(two.pixel(294, 145), cell);
        QCOMPARE(two.pixel(300, 175), qRgb(255, 255, 255));
        QCOMPARE(two.pixel(199, 10), qRgb(0x1e, 0x1e, 0x1e)); // the separator of the dark skin
        viewer.setImageShowCount(7);
        QCOMPARE(viewer.imageShowCount(), 2);
        // the page's "设备数:" box switches the page's viewer
        rig->page.findChild<QGroupBox *>()->parentWidget()->findChildren<QGroupBox *>()[1]->findChild<QComboBox *>()->setCurrentIndex(1);
        QCOMPARE(rig->page.imageViewer()->imageShowCount(), 2);
    }
};

LARK_TEST_MAIN(TstCameraDebugWidget)
#include "tst_cameradebugwidget.moc"
