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
    void readsAreTaggedWithTheNameAndDestructionCloses()
    {
        QTcpServer listener;
        QVERIFY(listener.listen(QHostAddress::LocalHost, 0));
        auto *client = new TcpClient;
        client->setName("board 7");
        QSignalSpy read(client, SIGNAL(signalReadMessage(QString,QByteArray)));
        client->connectToHost(QHostAddress::LocalHost, listener.serverPort());
        QVERIFY(listener.waitForNewConnection(5000));
        std::unique_ptr<QTcpSocket> peer(listener.nextPendingConnection());

        peer->write("ping\r\n");
        auto received = [&] {
            QByteArray b;
            for (const auto &args : qAsConst(read))
                b += args.at(0) == "board 7" ? args.at(1).toByteArray() : "?";
            return b;
        };
        QTRY_COMPARE(received(), QByteArray("ping\r\n"));
        QCOMPARE(client->bytesAvailable(), qint64(0)); // everything was taken

        QSignalSpy gone(peer.get(), SIGNAL(disconnected()));
        delete client;
        QTRY_COMPARE(gone.count(), 1);
    }
};

LARK_TEST_GUILESS_MAIN(TstTcpClient)
#include "tst_tcpclient.moc"
