#include "LarkPtyPair.h"
#include "LarkTestCore.h"
#include "PtyLine.h"
#include "QextSerialPort.h"

#include <QtTest>
#include <ctime>

// QextSerialPort opened on the program's end of a socat pty pair.
class TstQextSerialPort : public QObject
{
    Q_OBJECT
    LarkPtyPair m_pty;
    QextSerialPort *m_port = nullptr;

private slots:
    void init()
    {
        QVERIFY(m_pty.start());
        m_port = new QextSerialPort(m_pty.programPath(), QextSerialPort::EventDriven);
        QVERIFY(m_port->open(QIODevice::ReadWrite));
    }
    void cleanup() { delete m_port; m_pty.stop(); }

    void baudRatesOutsideTheTermiosTableAreRefused_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<bool>("accepted");
        for (int r : {50, 1800, 115200, 576000, 4000000})
            QTest::addRow("%d", r) << r << true;
        // the page's own list offers 128000 and 256000
        for (int r : {128000, 256000, 14400, 0, 4000001})
            QTest::addRow("%d refused", r) << r << false;
    }
    void baudRatesOutsideTheTermiosTableAreRefused()
    {
        QFETCH(int, rate);
        QFETCH(bool, accepted);
        m_port->setBaudRate(57600);
        if (!accepted)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("baud rate .* not supported"));
        m_port->setBaudRate(rate);
        // a refused rate keeps the one chosen before
        QCOMPARE(int(m_port->baudRate()), accepted ? rate : 57600);
    }

    // set while open, and carried into a later opening
    void settingsReachThePort()
    {
        m_port->setBaudRate(QextSerialPort::BAUD115200);
        m_port->setStopBits(QextSerialPort::STOP_2);
        QCOMPARE(ptyLine(m_pty.programPath()), QString("115200 cstopb"));
        m_port->close();
        m_port->setBaudRate(QextSerialPort::BAUD19200);
        m_port->setStopBits(QextSerialPort::STOP_1);
        QVERIFY(m_port->open(QIODevice::ReadWrite));
        QCOMPARE(ptyLine(m_pty.programPath()), QString("19200"));
    }

    void fiveDataBitsNeverGoWithTwoStopBits()
    {
        m_port->setDataBits(5);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("2 stop bits cannot be used with 5 data bits"));
        m_port->setStopBits(QextSerialPort::STOP_2);
        QCOMPARE(m_port->stopBits(), QextSerialPort::STOP_1);
        m_port->setDataBits(8);
        m_port->setStopBits(1); // the page passes the combo index: 1 is two stop bits
        QCOMPARE(m_port->stopBits(), QextSerialPort::STOP_2);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("5 data bits cannot be used with 2 stop bits"));
        m_port->setDataBits(5);
        QCOMPARE(m_port->dataBits(), QextSerialPort::DATA_8);
    }

    void aVanishedPeerIsDroppedAtTheFirstFailedRead() // bytes both ways: the serial page's tests
    {
        // the watcher compares this full path with short names; it must not be shortened
        QCOMPARE(m_port->portName(), m_pty.programPath());
        QVERIFY(m_pty.boardWrite("abc"));
        QTRY_COMPARE(m_port->bytesAvailable(), qint64(3)); // unread when the peer goes
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("QextSerialPort: .* has gone away"));
        m_pty.stop();
        // no notifier spinning on the dead descriptor, no crash on later reads and writes
        const clock_t before = clock();
        QTest::qWait(500);
        QVERIFY(double(clock() - before) / CLOCKS_PER_SEC < 0.25);
        m_port->readAll();
        m_port->write("x");
        m_port->close();
        m_port->setPortName("/dev/lark-no-such-port");
        QVERIFY(!m_port->open(QIODevice::ReadWrite));
    }
};

LARK_TEST_GUILESS_MAIN(TstQextSerialPort)
#include "tst_qextserialport.moc"
