#include "LarkTestCore.h"
#include "TcpClient.h"

#include <QHostAddress>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <memory>

// TcpClient as the outgoing end, against a plain QTcpServer of the test.
class TstTcpClient : public QObject
{
    Q_OBJECT

private slots:
    void everyReadIsTaggedWithTheName()
    {
        QTcpServer listener;
        QVERIFY(listener.listen(QHostAddress::LocalHost, 0));
        TcpClient client;
        client.setName("board 7");
        QSignalSpy read(&client, SIGNAL(signalReadMessage(QString,QByteArray)));
        client.connectToHost(QHostAddress::LocalHost, listener.serverPort());
        QVERIFY(listener.waitForNewConnection(5000));
        std::unique_ptr<QTcpSocket> peer(listener.nextPendingConnection());
        QTRY_COMPARE(client.state(), QAbstractSocket::ConnectedState);

        peer->write("ping\r\n");
        QTRY_VERIFY(!read.isEmpty());
        QByteArray all;
        for (const auto &args : read) {
            QCOMPARE(args.at(0).toString(), QString("board 7"));
            all += args.at(1).toByteArray();
        }
        QCOMPARE(all, QByteArray("ping\r\n"));
        // everything was taken, nothing waits in the socket
        QCOMPARE(client.bytesAvailable(), qint64(0));
    }

    void destroyingAConnectedClientClosesTheConnection()
    {
        QTcpServer listener;
        QVERIFY(listener.listen(QHostAddress::LocalHost, 0));
        auto *client = new TcpClient;
        client->connectToHost(QHostAddress::LocalHost, listener.serverPort());
        QVERIFY(listener.waitForNewConnection(5000));
        std::unique_ptr<QTcpSocket> peer(listener.nextPendingConnection());
        QTRY_COMPARE(client->state(), QAbstractSocket::ConnectedState);

        QSignalSpy gone(peer.get(), SIGNAL(disconnected()));
        delete client;
        QTRY_COMPARE(gone.count(), 1);
    }
};

LARK_TEST_GUILESS_MAIN(TstTcpClient)
#include "tst_tcpclient.moc"
