#include "LarkPtyPair.h"
#include "LarkTestCore.h"
#include "QtIODevice.h"
#include "QtSerialPort.h"

#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

// Reads the line settings the program side of the pty currently carries.
static bool readTermios(const QString &path, termios *tio)
{
    const int fd = ::open(path.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return false;
    const bool ok = tcgetattr(fd, tio) == 0;
    ::close(fd);
    return ok;
}

class TstQtSerialPort : public QObject
{
    Q_OBJECT

private slots:
    void genericDeviceIsNeverOpenAndUnknown()
    {
        QtIODevice dev;
        dev.open("/dev/null", 115200, 8, 0, 0);
        dev.open("127.0.0.1", "8000");
        dev.writeBytes("x");
        QVERIFY(!dev.isOpen());
        QCOMPARE(dev.errorString(), QString("Unknow device"));
    }

    void closedPortReportsItsStateAndWritesNothing()
    {
        QtSerialPort port;
        QVERIFY(!port.isOpen());
        QCOMPARE(port.portName(), QString());
        port.writeBytes("ignored"); // only a console warning
        QVERIFY(!port.isOpen());
    }

    void failedOpenLeavesPortClosedWithAnErrorText()
    {
        QtSerialPort port;
        port.open("/dev/lark-no-such-port", 115200, 8, 0, 0);
        QVERIFY(!port.isOpen());
        QVERIFY(!port.errorString().isEmpty());
        QCOMPARE(port.portName(), QString("lark-no-such-port"));
    }

    // the pty driver forces eight data bits and no parity, so only speed and stop
    // bits can be read back from the line
    void lineSettingsReachTheDevice_data()
    {
        QTest::addColumn<int>("baud");
        QTest::addColumn<int>("dataBits");
        QTest::addColumn<int>("stopBits");
        QTest::addColumn<speed_t>("speed");
        QTest::addColumn<bool>("twoStop");

        QTest::newRow("115200 8N1") << 115200 << 8 << 0 << speed_t(B115200) << false;
        QTest::newRow("9600 7 bits") << 9600 << 7 << 0 << speed_t(B9600) << false;
        // 1 means one and a half, which Linux lines cannot do: it is not two
        QTest::newRow("stop index 1 is not two") << 19200 << 8 << 1 << speed_t(B19200) << false;
        QTest::newRow("stop value 2 is two") << 57600 << 5 << 2 << speed_t(B57600) << true;
    }

    void lineSettingsReachTheDevice()
    {
        QFETCH(int, baud);
        QFETCH(int, dataBits);
        QFETCH(int, stopBits);
        QFETCH(speed_t, speed);
        QFETCH(bool, twoStop);

        LarkPtyPair pty;
        QVERIFY(pty.start());
        QtSerialPort port;
        port.open(pty.programPath(), baud, dataBits, stopBits, 0);
        QVERIFY2(port.isOpen(), qPrintable(port.errorString()));

        termios tio;
        QVERIFY(readTermios(pty.programPath(), &tio));
        QCOMPARE(cfgetospeed(&tio), speed);
        QCOMPARE(bool(tio.c_cflag & CSTOPB), twoStop);
    }

    void bytesTravelBothWays()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        QtSerialPort port;
        QSignalSpy spy(&port, SIGNAL(bytesRead(QByteArray)));
        port.open(pty.programPath(), 115200, 8, 0, 0);
        QVERIFY(port.isOpen());
        QCOMPARE(port.portName(), pty.programShortName());

        QByteArray all;
        for (int i = 0; i < 256; ++i)
            all.append(char(i));
        port.writeBytes(all);
        QCOMPARE(pty.boardReadAtLeast(all.size()), all);

        QVERIFY(pty.boardWrite(all));
        QByteArray got;
        QTRY_VERIFY_WITH_TIMEOUT((got = [&] {
            QByteArray b;
            for (const auto &args : qAsConst(spy))
                b += args.at(0).toByteArray();
            return b;
        }()).size() >= all.size(), 5000);
        QCOMPARE(got, all);
    }

    void reopenAppliesNewSettingsAndKeepsWorking()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        QtSerialPort port;
        port.open(pty.programPath(), 9600, 8, 0, 0);
        QVERIFY(port.isOpen());
        port.open(pty.programPath(), 115200, 7, 0, 0);
        QVERIFY(port.isOpen());
        termios tio;
        QVERIFY(readTermios(pty.programPath(), &tio));
        QCOMPARE(cfgetospeed(&tio), speed_t(B115200));
        port.writeBytes("again");
        QCOMPARE(pty.boardReadAtLeast(5), QByteArray("again"));
        port.close();
        QVERIFY(!port.isOpen());
    }

    // the PID page writes its stop command and closes straight after
    void bytesWrittenJustBeforeCloseStillLeave()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        QtSerialPort port;
        port.open(pty.programPath(), 115200, 8, 0, 0);
        QVERIFY(port.isOpen());
        port.writeBytes("last words");
        port.close();
        QCOMPARE(pty.boardReadAtLeast(10), QByteArray("last words"));
    }

    void vanishedPeerDoesNotCrashWrites()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        QtSerialPort port;
        port.open(pty.programPath(), 115200, 8, 0, 0);
        QVERIFY(port.isOpen());
        pty.stop();
        QTest::qWait(50);
        for (int i = 0; i < 20; ++i)
            port.writeBytes(QByteArray(64, 'x'));
        QCoreApplication::processEvents();
        port.close();
        QVERIFY(!port.isOpen());
    }
};

LARK_TEST_GUILESS_MAIN(TstQtSerialPort)
#include "tst_qtserialport.moc"
