#include "LarkPtyPair.h"
#include "LarkTestCore.h"
#include "QtIODevice.h"
#include "QtSerialPort.h"

#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

// QtSerialPort over a socat pty pair, the test playing the board on the other end.
class TstQtSerialPort : public QObject
{
    Q_OBJECT
    LarkPtyPair *m_pty = nullptr;

private slots:
    void init()
    {
        m_pty = new LarkPtyPair;
        QVERIFY(m_pty->start());
    }
    void cleanup() { delete m_pty; }

    // a second open applies the new settings; the pty driver forces eight data bits
    // and no parity, so only speed and stop bits can be read back from the line
    void reopenSetsTheLine_data()
    {
        QTest::addColumn<int>("baud");
        QTest::addColumn<int>("dataBits");
        QTest::addColumn<int>("stopBits");
        QTest::addColumn<speed_t>("speed");
        QTest::addColumn<bool>("twoStop");
        QTest::newRow("115200 7 bits") << 115200 << 7 << 0 << speed_t(B115200) << false;
        // 1 means one and a half, which Linux lines cannot do: it is not two
        QTest::newRow("stop index 1 is not two") << 19200 << 8 << 1 << speed_t(B19200) << false;
        QTest::newRow("stop value 2 is two") << 57600 << 5 << 2 << speed_t(B57600) << true;
    }

    void reopenSetsTheLine()
    {
        QFETCH(int, baud);
        QFETCH(int, dataBits);
        QFETCH(int, stopBits);
        QFETCH(speed_t, speed);
        QFETCH(bool, twoStop);
        QtSerialPort port;
        port.open(m_pty->programPath(), 9600, 8, 0, 0);
        port.open(m_pty->programPath(), baud, dataBits, stopBits, 0);
        QVERIFY2(port.isOpen(), qPrintable(port.errorString()));

        termios tio;
        const int fd = ::open(m_pty->programPath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        QVERIFY(fd >= 0 && tcgetattr(fd, &tio) == 0);
        ::close(fd);
        QCOMPARE(cfgetospeed(&tio), speed);
        QCOMPARE(bool(tio.c_cflag & CSTOPB), twoStop);
    }

    void bytesTravelBothWaysUntilThePeerVanishes()
    {
        QtIODevice dev;
        dev.open("/dev/null", 115200, 8, 0, 0);
        QVERIFY(!dev.isOpen() && dev.errorString() == "Unknow device");
        QtSerialPort port;
        port.writeBytes("ignored"); // not open: only a console warning
        QSignalSpy spy(&port, SIGNAL(bytesRead(QByteArray)));
        port.open(m_pty->programPath(), 115200, 8, 0, 0);
        QCOMPARE(port.portName(), m_pty->programShortName());
        QByteArray all;
        for (int i = 0; i < 256; ++i)
            all.append(char(i));
        port.writeBytes(all);
        QCOMPARE(m_pty->boardReadAtLeast(all.size()), all);
        QVERIFY(m_pty->boardWrite(all));
        auto received = [&] {
            QByteArray b;
            for (const auto &args : qAsConst(spy))
                b += args.at(0).toByteArray();
            return b;
        };
        QTRY_COMPARE(received(), all);
        // the PID page writes its stop command and closes straight after
        port.writeBytes("last words");
        port.close();
        QCOMPARE(m_pty->boardReadAtLeast(10), QByteArray("last words"));
        port.open(m_pty->programPath(), 115200, 8, 0, 0);
        m_pty->stop();
        QTest::qWait(50);
        for (int i = 0; i < 20; ++i)
            port.writeBytes(QByteArray(64, 'x')); // no crash, at most warnings
        QCoreApplication::processEvents();
        // a new open closes the port first, also when the new one cannot be opened
        port.open("/dev/lark-no-such-port", 115200, 8, 0, 0);
        QVERIFY(!port.isOpen() && !port.errorString().isEmpty());
        QCOMPARE(port.portName(), QString("lark-no-such-port"));
    }
};

LARK_TEST_GUILESS_MAIN(TstQtSerialPort)
#include "tst_qtserialport.moc"
