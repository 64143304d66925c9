#include "LarkPtyPair.h"
#include "LarkTapSpy.h"
#include "LarkTestCore.h"
#include "PtyLine.h"
#include "QtSerialPort.h"

#include <QtTest>
#include <QSerialPort>

// QtSerialPort over a socat pty pair, the test playing the board on the other end.
class TstQtSerialPort : public QObject
{
    Q_OBJECT
    LarkPtyPair m_pty;

private slots:
    void init() { QVERIFY(m_pty.start()); }
    void cleanup() { m_pty.stop(); }

    void bytesTravelBothWaysUntilThePeerVanishes()
    {
        QtSerialPort port;
        port.writeBytes("ignored"); // not open: only a console warning
        QSignalSpy spy(&port, SIGNAL(bytesRead(QByteArray)));
        // each open applies its settings; stop index 1 means one and a half, not two
        port.open(m_pty.programPath(), 19200, 8, 1, 0);
        QCOMPARE(ptyLine(m_pty.programPath()), QString("19200"));
        port.open(m_pty.programPath(), 57600, 7, 2, 0);
        QCOMPARE(ptyLine(m_pty.programPath()), QString("57600 cstopb"));
        port.open(m_pty.programPath(), 115200, 8, 0, 0);
        QCOMPARE(port.portName(), m_pty.programShortName());
        QByteArray all;
        for (int i = 0; i < 256; ++i)
            all.append(char(i));
        port.writeBytes(all);
        QCOMPARE(m_pty.boardReadAtLeast(all.size()), all);
        QVERIFY(m_pty.boardWrite(all));
        QTRY_COMPARE(LarkTapSpy::joined(spy), all);
        // the PID page writes its stop command and closes straight after
        port.writeBytes("last words");
        port.close();
        QCOMPARE(m_pty.boardReadAtLeast(10), QByteArray("last words"));
        port.open(m_pty.programPath(), 115200, 8, 0, 0);
        m_pty.stop();
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
        port->open(m_pty.programPath(), 115200, 8, 0, 0);
        port->writeBytes("bye");
        const QPointer<QSerialPort> serial = port->findChild<QSerialPort *>();
        QVERIFY(serial);
        delete port;
        QVERIFY(serial.isNull());
    }
};

LARK_TEST_GUILESS_MAIN(TstQtSerialPort)
#include "tst_qtserialport.moc"
