#include "LarkPtyPair.h"
#include "LarkTestCore.h"
#include "QtSerialPort.h"

#include <QPointer>
#include <QSerialPort>
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

    // the line's speed and two-stop flag as the driver holds them; the pty driver forces
    // eight data bits and no parity, so these are all that can be read back
    QPair<speed_t, bool> line() const
    {
        termios tio{};
        const int fd = ::open(m_pty->programPath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        tcgetattr(fd, &tio); // a failed open leaves the zeros, which match no row
        ::close(fd);
        return {cfgetospeed(&tio), bool(tio.c_cflag & CSTOPB)};
    }

    void bytesTravelBothWaysUntilThePeerVanishes()
    {
        QtSerialPort port;
        port.writeBytes("ignored"); // not open: only a console warning
        QSignalSpy spy(&port, SIGNAL(bytesRead(QByteArray)));
        // each open applies its settings; stop index 1 means one and a half, not two
        port.open(m_pty->programPath(), 19200, 8, 1, 0);
        QCOMPARE(line(), qMakePair(speed_t(B19200), false));
        port.open(m_pty->programPath(), 57600, 7, 2, 0);
        QCOMPARE(line(), qMakePair(speed_t(B57600), true));
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
        for (int i = 0; i < 20; ++i)
            port.writeBytes(QByteArray(64, 'x')); // no crash, at most warnings
        QTest::qWait(50);
        // a new open closes the port first, also when the new one cannot be opened
        port.open("/dev/lark-no-such-port", 115200, 8, 0, 0);
        QVERIFY(!port.isOpen());
        QCOMPARE(port.portName(), QString("lark-no-such-port"));
    }

    // the QSerialPort and its write buffer go with the wrapper
    void thePortGoesWithTheWrapper()
    {
        auto *port = new QtSerialPort;
        port->open(m_pty->programPath(), 115200, 8, 0, 0);
        port->writeBytes("bye");
        const QPointer<QSerialPort> serial = port->findChild<QSerialPort *>();
        QVERIFY(serial);
        delete port;
        QVERIFY(serial.isNull());
    }
};

LARK_TEST_GUILESS_MAIN(TstQtSerialPort)
#include "tst_qtserialport.moc"
