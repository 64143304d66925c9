#include "LarkTestCore.h"
#include "SocketReconnector.h"

#include <QtNetwork>
#include <QtTest>

class tst_SocketReconnector : public QObject
{
    Q_OBJECT
    static quint16 freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        return probe.serverPort();
    }

private slots:
    void aClientReachesAServerThatStartsLateAndAfterItRestartsUnlessClosedOrOff()
    {
        const quint16 port = freePort();
        QTcpSocket client;
        SocketReconnector reconnector;
        reconnector.attach(&client);
        reconnector.setEnabled(true);
        QSignalSpy tries(&reconnector, SIGNAL(reconnecting(QString, quint16, int)));
        client.connectToHost("127.0.0.1", port);
        // refused twice: 0.5 s then 1 s
        QTRY_COMPARE_WITH_TIMEOUT(tries.size(), 2, 5000);
        QCOMPARE(tries.at(1).at(2).toInt(), 1000);
        QCOMPARE(SocketReconnector::delayAfter(5), 8000);
        QCOMPARE(SocketReconnector::delayAfter(9), 10000);
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, port));
        QTRY_COMPARE_WITH_TIMEOUT(client.state(), QAbstractSocket::ConnectedState, 5000);

        // the server ends the session: back once it is there again, starting at 0.5 s
        QTRY_VERIFY(server.hasPendingConnections());
        delete server.nextPendingConnection();
        tries.clear();
        QTRY_VERIFY(tries.size() >= 1);
        QCOMPARE(tries.at(0).at(2).toInt(), 500);
        QTRY_COMPARE_WITH_TIMEOUT(client.state(), QAbstractSocket::ConnectedState, 5000);

        // closed by the user, or switched off, it does not try
        tries.clear();
        client.close();
        QVERIFY(!reconnector.isWaiting());
        reconnector.setEnabled(false);
        client.connectToHost("127.0.0.1", freePort());
        QTRY_COMPARE(client.state(), QAbstractSocket::UnconnectedState);
        QVERIFY(!reconnector.isWaiting() && tries.isEmpty());
    }
};

LARK_TEST_GUILESS_MAIN(tst_SocketReconnector)
#include "tst_socketreconnector.moc"
