#include "LarkPtyPair.h"
#include "LarkTestCore.h"
#include "QextSerialPort.h"

#include <QSignalSpy>
#include <QtTest>

#include <ctime>

class TstQextSerialPort : public QObject
{
    Q_OBJECT
private slots:
    void baudRatesOutsideTheTermiosTableAreRefused_data();
    void baudRatesOutsideTheTermiosTableAreRefused();
    void fiveDataBitsNeverGoWithTwoStopBits();
    void portNameIsKeptAsGiven();
    void openingAMissingDeviceFails();
    void bytesTravelBothWaysThroughAPty();
    void aVanishingPeerIsNotFatal();
};

void TstQextSerialPort::baudRatesOutsideTheTermiosTableAreRefused_data()
{
    QTest::addColumn<int>("rate");
    QTest::addColumn<bool>("accepted");
    const int accepted[] = {50, 75, 110, 134, 150, 200, 300, 600, 1200, 1800, 2400, 4800,
                            9600, 19200, 38400, 57600, 115200, 230400, 460800, 500000, 576000,
                            921600, 1000000, 1152000, 1500000, 2000000, 2500000, 3000000,
                            3500000, 4000000};
    for (int r : accepted)
        QTest::addRow("%d", r) << r << true;
    // the page's own list offers 128000 and 256000; the port keeps its old rate
    for (int r : {128000, 256000, 14400, 0, -9600, 4000001})
        QTest::addRow("%d refused", r) << r << false;
}

void TstQextSerialPort::baudRatesOutsideTheTermiosTableAreRefused()
{
    QFETCH(int, rate);
    QFETCH(bool, accepted);
    LarkPtyPair pty;
    QVERIFY(pty.start());
    QextSerialPort port(QextSerialPort::EventDriven);
    QCOMPARE(int(port.baudRate()), 9600);
    port.setPortName(pty.programPath());
    QVERIFY(port.open(QIODevice::ReadWrite));
    if (!accepted)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("baud rate .* not supported"));
    port.setBaudRate(rate);
    QCOMPARE(int(port.baudRate()), accepted ? rate : 9600);
    // a refused rate also keeps a rate chosen before, not the default
    port.setBaudRate(115200);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("baud rate .* not supported"));
    port.setBaudRate(128000);
    QCOMPARE(int(port.baudRate()), 115200);
}

void TstQextSerialPort::fiveDataBitsNeverGoWithTwoStopBits()
{
    QextSerialPort port(QextSerialPort::EventDriven);
    port.setDataBits(5);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("2 stop bits cannot be used with 5 data bits"));
    port.setStopBits(QextSerialPort::STOP_2);
    QCOMPARE(port.stopBits(), QextSerialPort::STOP_1);

    port.setDataBits(8);
    port.setStopBits(1); // the page passes the combo index: 1 is two stop bits
    QCOMPARE(port.stopBits(), QextSerialPort::STOP_2);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("5 data bits cannot be used with 2 stop bits"));
    port.setDataBits(5);
    QCOMPARE(port.dataBits(), QextSerialPort::DATA_8);

    port.setParity(2);
    QCOMPARE(port.parity(), QextSerialPort::PAR_EVEN);
}

void TstQextSerialPort::portNameIsKeptAsGiven()
{
    QextSerialPort port(QextSerialPort::EventDriven);
    QCOMPARE(port.portName(), QString("/dev/ttyS0"));
    port.setPortName("/dev/pts/7");
    // the watcher compares this full path with short names; it must not be shortened
    QCOMPARE(port.portName(), QString("/dev/pts/7"));
}

void TstQextSerialPort::openingAMissingDeviceFails()
{
    QextSerialPort port(QextSerialPort::EventDriven);
    port.setPortName("/dev/");
    QVERIFY(!port.open(QIODevice::ReadWrite));
    QVERIFY(!port.isOpen());
    port.setPortName("/dev/lark-no-such-port");
    QVERIFY(!port.open(QIODevice::ReadWrite));
    QVERIFY(!port.isOpen());
}

void TstQextSerialPort::bytesTravelBothWaysThroughAPty()
{
    LarkPtyPair pty;
    QVERIFY(pty.start());
    QextSerialPort port(QextSerialPort::EventDriven);
    port.setPortName(pty.programPath());
    QVERIFY(port.open(QIODevice::ReadWrite));
    QVERIFY(port.isOpen());
    port.setBaudRate(115200);
    port.setDataBits(8);
    port.setStopBits(0);
    port.setParity(0);
    port.setTimeout(20);

    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(char(i));
    QSignalSpy ready(&port, SIGNAL(readyRead()));
    QVERIFY(pty.boardWrite(all));
    QByteArray got;
    QTRY_VERIFY((got += port.readAll(), got.size() >= all.size()));
    QCOMPARE(got, all);
    QVERIFY(ready.count() > 0);
    QCOMPARE(port.bytesAvailable(), qint64(0));

    QCOMPARE(port.write(all), qint64(all.size()));
    QCOMPARE(pty.boardReadAtLeast(all.size()), all);

    port.close();
    QVERIFY(!port.isOpen());
    QVERIFY(port.open(QIODevice::ReadWrite));
}

void TstQextSerialPort::aVanishingPeerIsNotFatal()
{
    LarkPtyPair pty;
    QVERIFY(pty.start());
    QextSerialPort port(QextSerialPort::EventDriven);
    port.setPortName(pty.programPath());
    QVERIFY(port.open(QIODevice::ReadWrite));
    QVERIFY(pty.boardWrite("abc"));
    QTRY_COMPARE(port.bytesAvailable(), qint64(3));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("QextSerialPort: .* has gone away"));
    pty.stop();
    // the dead descriptor is dropped at the first failed read: no notifier spinning
    // on it, no crash on later reads and writes
    const clock_t before = clock();
    QTest::qWait(500);
    QVERIFY(double(clock() - before) / CLOCKS_PER_SEC < 0.25);
    port.readAll();
    port.write("x");
    QCOMPARE(port.bytesAvailable(), qint64(0));
    port.close();
    QVERIFY(!port.isOpen());
}

LARK_TEST_GUILESS_MAIN(TstQextSerialPort)
#include "tst_qextserialport.moc"
