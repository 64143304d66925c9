#include "LarkPtyPair.h"
#include "LarkTapSpy.h"
#include "LarkSer2net.h"
#include "LarkTestCore.h"
#include "PtyLine.h"
#include "QextSerialPort.h"
#include "QtSerialPort.h"

#include <QtTest>

// A real ser2net with a telnet(rfc2217) accepter in front of one end of a socat pty
// pair; the test plays the board on the other end.
class tst_Rfc2217Port : public QObject
{
    Q_OBJECT
    LarkPtyPair m_pty;
    LarkSer2net m_ser2net;
    quint16 m_port = 0;

    QString serverBaud() { return ptyLine(m_pty.programPath()); }

private slots:
    void initTestCase()
    {
        if (!LarkSer2net::isInstalled())
            QSKIP("ser2net is not installed");
        QVERIFY(m_pty.start() && m_ser2net.start(m_pty.programPath()));
        m_port = m_ser2net.port();
    }
    void cleanupTestCase() { m_ser2net.stop(); }

    void bytesCrossBothWaysAndTheBaudReachesTheServersPort_data()
    {
        QTest::addColumn<int>("baud");
        QTest::addColumn<QString>("name");
        QTest::newRow("typed in a serial page's box") << 115200 << QString("/dev/rfc2217://127.0.0.1:%1");
        QTest::newRow("bare name, fast line") << 921600 << QString("rfc2217://localhost:%1");
    }
    void bytesCrossBothWaysAndTheBaudReachesTheServersPort()
    {
        QFETCH(int, baud);
        QFETCH(QString, name);
        QextSerialPort port(name.arg(m_port));
        port.setBaudRate(baud);
        QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
        QTRY_COMPARE(serverBaud(), QString::number(baud));
        // every byte value, 0xFF (telnet's escape) among them, both ways
        QByteArray all;
        for (int i = 0; i < 2048; ++i)
            all.append(char(i & 0xFF));
        QCOMPARE(port.write(all), qint64(all.size()));
        QCOMPARE(m_pty.boardReadAtLeast(all.size()), all);
        QVERIFY(m_pty.boardWrite(all));
        QByteArray got;
        QTRY_VERIFY((got += port.readAll()).size() >= all.size());
        QCOMPARE(got, all);
        // a change while open goes to the server at once
        port.setBaudRate(57600);
        QTRY_COMPARE(serverBaud(), QString("57600"));
        QVERIFY(port.setDtr(false));
    }

    void aRefusedConnectionFailsTheOpenWithAReason()
    {
        // port 1 on loopback: nothing listens there without root
        for (const QString &name : {QString("rfc2217://127.0.0.1:1"), QString("rfc2217://nohostport")}) {
            QextSerialPort port(name);
            QVERIFY(!port.open(QIODevice::ReadWrite) && !port.errorString().isEmpty() && !port.isOpen());
        }
    }

    void thePidPagesPortOpensARemoteNameToo()
    {
        QtSerialPort port;
        QSignalSpy read(&port, SIGNAL(bytesRead(QByteArray)));
        port.open(QString("/dev/rfc2217://127.0.0.1:%1").arg(m_port), 230400, 8, 0, 0);
        QVERIFY(port.isOpen());
        QTRY_COMPARE(serverBaud(), QString("230400"));
        port.writeBytes("\xff\x01");
        QCOMPARE(m_pty.boardReadAtLeast(2), QByteArray("\xff\x01"));
        QVERIFY(m_pty.boardWrite("\xff\x02"));
        QTRY_COMPARE(LarkTapSpy::joined(read), QByteArray("\xff\x02"));
        port.close();
        QVERIFY(!port.isOpen());
    }
};

LARK_TEST_GUILESS_MAIN(tst_Rfc2217Port)
#include "tst_rfc2217port.moc"
