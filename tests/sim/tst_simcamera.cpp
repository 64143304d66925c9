#include "SimProcess.h"
#include "pages/camera/CameraPageRig.h"

#include <QTextCodec>

// The camera page against larksim on each link: the test pattern arrives and is
// drawn the right way round, and a register written from the page reads back.
class TstSimCamera : public QObject
{
    Q_OBJECT

private slots:
    void patternAndRegisters_data()
    {
        QTest::addColumn<QString>("link");
        QTest::addColumn<QStringList>("extra");
        QTest::newRow("page tcp server") << "server" << QStringList();
        QTest::newRow("udp") << "udp" << QStringList();
        QTest::newRow("pty raw") << "pty" << QStringList{"--raw"};
        QTest::newRow("page tcp server, jpeg") << "server" << QStringList{"--jpeg"};
    }
    void patternAndRegisters()
    {
        QFETCH(QString, link);
        QFETCH(QStringList, extra);
        CameraPageRig rig;
        CameraDebugWidget &page = rig.page;
        SimProcess sim;
        const bool jpeg = extra.contains("--jpeg");
        QStringList args = QStringList{"camera", "--fps", "20", "--size", "160x120"} + extra;
        if (link == "server" || link == "udp") {
            QVERIFY(rig.start(link == "server" ? Server : Udp, "0", jpeg));
            const quint16 port = link == "server" ? page.tcpServer()->serverPort() : page.udpSocket()->localPort();
            QVERIFY(sim.start(args << (link == "server" ? "--tcp-client" : "--udp") << QString("127.0.0.1:%1").arg(port)));
        } else {
            QVERIFY(sim.start(args << "--pty" << "/dev/" + rig.tty));
            QVERIFY(!sim.ptyName().isEmpty() && rig.start(Serial, "0"));
        }

        // the format announced, then frames drawn: colour bars across the upper half,
        // left to right, from the first row to the last row of the half
        QTRY_VERIFY_WITH_TIMEOUT(page.frameCount() >= 3, 10000);
        const QImage image = page.imageViewer()->pixmap(0).toImage();
        QCOMPARE(image.size(), QSize(160, 120));
        const QList<QRgb> bars{qRgb(255, 255, 255), qRgb(255, 255, 0), qRgb(0, 255, 255), qRgb(0, 255, 0),
                               qRgb(255, 0, 255), qRgb(255, 0, 0), qRgb(0, 0, 255), qRgb(0, 0, 0)};
        const int tol = jpeg ? 80 : 12; // JPEG blurs the edge of the half
        auto near = [tol](QRgb a, QRgb b) {
            return qAbs(qRed(a) - qRed(b)) < tol && qAbs(qGreen(a) - qGreen(b)) < tol && qAbs(qBlue(a) - qBlue(b)) < tol;
        };
        for (int k = 0; k < 8; ++k)
            for (int y : {0, 30, 59})
                QVERIFY2(near(image.pixel(k * 20 + 10, y), bars[k]), qPrintable(QString("bar %1 row %2: %3").arg(k).arg(y).arg(image.pixel(k * 20 + 10, y), 0, 16)));
        // the lower half is a grey ramp with a red square
        const QRgb low = image.pixel(5, 119);
        QVERIFY(qAbs(qRed(low) - qGreen(low)) < 8 || qGreen(low) < 12);
        // the page's UDP replies name no destination, and a JPEG stream carries no
        // register answers: no register round trip
        if (link == "udp" || jpeg)
            return;

        // write 0x12 = 0x80 from the first write row, read it back into the second read row
        rig.field(0)->setText("12");
        rig.field(1)->setText("80");
        rig.child<QPushButton>("btnSendReg0")->click();
        QVERIFY(!sim.waitFor("write register 0x12 = 0x80").isNull());
        rig.field(18)->setText("12");
        rig.field(19)->setText("");
        rig.child<QPushButton>("btnSendReg9")->click();
        QVERIFY(!sim.waitFor("read register 0x12 (row 2) = 0x80").isNull());
        QTRY_COMPARE(rig.field(19)->text(), QString("80"));

        rig.press();
        QVERIFY(sim.stop());
        // the link it made is gone with it
        QVERIFY(!QFileInfo("/dev/" + rig.tty).isSymLink());
    }

    // the register table as the page exports it (GB18030, header line) is the
    // board's map: a register of the file reads back, one it lacks answers status 2
    void registerTableFile()
    {
        QTemporaryDir dir;
        const QString table = dir.filePath("regs.csv");
        QVERIFY(LarkTest::writeFile(table, QTextCodec::codecForName("GB18030")->fromUnicode("寄存器编号,寄存器地址,寄存器值,描述,\n1,30,5A,曝光,\n,,,,\n")));
        CameraPageRig rig;
        rig.start(Server, "0");
        SimProcess sim;
        QVERIFY(sim.start({"camera", "--fps", "0", "--regs", table, "--tcp-client",
                           QString("127.0.0.1:%1").arg(rig.page.tcpServer()->serverPort())}));
        QTRY_COMPARE(rig.page.tcpServer()->counts(), 1);
        rig.field(16)->setText("30");
        rig.child<QPushButton>("btnSendReg8")->click();
        QTRY_COMPARE(rig.field(17)->text(), QString("5A"));
        rig.field(16)->setText("12"); // in the default map, not in the file
        rig.child<QPushButton>("btnSendReg8")->click();
        QVERIFY(!sim.waitFor("read register 0x12 (row 1): no such register").isNull());
    }
};

LARK_TEST_MAIN(TstSimCamera)
#include "tst_simcamera.moc"
