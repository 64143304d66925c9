#include "LarkTestCore.h"
#include "TcpClient.h"
#include "TcpServer.h"

#include <QHostAddress>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>
#include <memory>
#include <vector>

// A TcpServer on an ephemeral loopback port with real QTcpSocket peers.
class TstTcpServer : public QObject
{
    Q_OBJECT

private:
    using Peer = std::unique_ptr<QTcpSocket>;

    // connects n peers and waits until the server has taken every one of them
    std::vector<Peer> connectPeers(TcpServer &server, int n)
    {
        std::vector<Peer> peers;
        const int before = server.counts();
        for (int i = 0; i < n; ++i) {
            peers.emplace_back(new QTcpSocket);
            peers.back()->connectToHost(QHostAddress::LocalHost, server.serverPort());
        }
        // the event loop must run for the server to accept, so no blocking waits here;
        // the callers compare the count themselves, a helper cannot fail a test
        const bool done = QTest::qWaitFor([&] {
            if (server.counts() != before + n)
                return false;
            for (auto &p : peers) {
                if (p->state() != QAbstractSocket::ConnectedState)
                    return false;
            }
            return true;
        }, 20000);
        Q_UNUSED(done)
        return peers;
    }

    // the server-side name of a peer, found by its local port
    static QString nameOf(TcpServer &server, const QTcpSocket &peer)
    {
        const auto clients = server.findChildren<TcpClient *>();
        for (TcpClient *c : clients) {
            if (c->peerPort() == peer.localPort())
                return c->name();
        }
        return QString();
    }

private slots:
    void clientNameStripsTheMappedPrefix_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<qintptr>("descriptor");
        QTest::addColumn<QString>("name");
        QTest::newRow("mapped ipv4") << "::ffff:10.0.0.5" << qintptr(31) << "10.0.0.5 31";
        QTest::newRow("plain ipv4") << "192.168.1.20" << qintptr(27) << "192.168.1.20 27";
        QTest::newRow("ipv6 loopback") << "::1" << qintptr(7) << "::1 7";
        QTest::newRow("ipv6 global") << "fe80::1" << qintptr(1024) << "fe80::1 1024";
    }

    void clientNameStripsTheMappedPrefix()
    {
        QFETCH(QString, address);
        QFETCH(qintptr, descriptor);
        QFETCH(QString, name);
        QCOMPARE(TcpServer::clientName(address, descriptor), name);
    }

    void clientsAreNamedByAddressAndDescriptor()
    {
        TcpServer server;
        QVERIFY(server.listen(QHostAddress::Any, 0));
        QSignalSpy connected(&server, SIGNAL(signalClientConnected(QString)));
        auto peers = connectPeers(server, 2);
        QCOMPARE(server.counts(), 2);

        QCOMPARE(connected.count(), 2);
        const QString first = connected.at(0).at(0).toString();
        const QString second = connected.at(1).at(0).toString();
        QVERIFY(first != second);
        const auto clients = server.findChildren<TcpClient *>();
        QCOMPARE(clients.size(), 2);
        for (TcpClient *c : clients) {
            // an IPv4 peer of the dual-stack listener shows as plain IPv4
            QCOMPARE(c->name(), QString("127.0.0.1 %1").arg(qint64(c->socketDescriptor())));
            QVERIFY(c->name() == first || c->name() == second);
        }
    }

    void messagesCarryTheSendersName()
    {
        TcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        auto peers = connectPeers(server, 2);
        QCOMPARE(server.counts(), 2);
        QSignalSpy read(&server, SIGNAL(signalReadMessage(QString,QByteArray)));

        peers[1]->write("from two");
        QTRY_COMPARE(read.count(), 1);
        QCOMPARE(read.at(0).at(0).toString(), nameOf(server, *peers[1]));
        QCOMPARE(read.at(0).at(1).toByteArray(), QByteArray("from two"));
    }

    void sendingReachesAllOrOnlyTheNamedClient()
    {
        TcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        auto peers = connectPeers(server, 3);
        QCOMPARE(server.counts(), 3);

        server.SltSendMsgToAllClient("all");
        for (auto &p : peers)
            QTRY_COMPARE(p->bytesAvailable(), qint64(3));
        for (auto &p : peers)
            QCOMPARE(p->readAll(), QByteArray("all"));

        server.SltSendMsgToClient(nameOf(server, *peers[1]), "one");
        QTRY_COMPARE(peers[1]->bytesAvailable(), qint64(3));
        QCOMPARE(peers[1]->readAll(), QByteArray("one"));
        // a round trip through another peer proves nothing else was queued for 0 and 2
        server.SltSendMsgToClient(nameOf(server, *peers[0]), "x");
        QTRY_COMPARE(peers[0]->bytesAvailable(), qint64(1));
        QCOMPARE(peers[0]->readAll(), QByteArray("x"));
        QCOMPARE(peers[2]->bytesAvailable(), qint64(0));
    }

    void sendingToANameThatHasGoneIsDropped()
    {
        TcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        auto peers = connectPeers(server, 2);
        QCOMPARE(server.counts(), 2);
        const QString gone = nameOf(server, *peers[0]);
        QSignalSpy left(&server, SIGNAL(signalClientDisconnected(QString)));

        peers[0]->disconnectFromHost();
        QTRY_COMPARE(left.count(), 1);
        QCOMPARE(left.at(0).at(0).toString(), gone);
        QCOMPARE(server.counts(), 1);

        server.SltSendMsgToClient(gone, "lost");
        server.SltSendMsgToClient("no such client", "lost");
        server.SltSendMsgToAllClient("kept");
        QTRY_COMPARE(peers[1]->bytesAvailable(), qint64(4));
        QCOMPARE(peers[1]->readAll(), QByteArray("kept"));
    }

    void disconnectClientDropsOneOrAll()
    {
        TcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        auto peers = connectPeers(server, 3);
        QCOMPARE(server.counts(), 3);
        QSignalSpy left(&server, SIGNAL(signalClientDisconnected(QString)));

        server.disconnectClient("not a client");
        QCOMPARE(server.counts(), 3);

        const QString middle = nameOf(server, *peers[1]);
        server.disconnectClient(middle);
        QCOMPARE(left.count(), 1);
        QCOMPARE(left.at(0).at(0).toString(), middle);
        QCOMPARE(server.counts(), 2);
        QTRY_COMPARE(peers[1]->state(), QAbstractSocket::UnconnectedState);

        server.disconnectClient(QString());
        QCOMPARE(left.count(), 3);
        QCOMPARE(server.counts(), 0);
        QTRY_COMPARE(peers[0]->state(), QAbstractSocket::UnconnectedState);
        QTRY_COMPARE(peers[2]->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(server.isListening());
    }

    void closeListenDropsEveryClientAndTheServerListensAgain()
    {
        TcpServer server;
        QVERIFY(server.listen(QHostAddress::Any, 0));
        auto peers = connectPeers(server, 3);
        QCOMPARE(server.counts(), 3);
        QSignalSpy left(&server, SIGNAL(signalClientDisconnected(QString)));

        server.CloseListen();
        QCOMPARE(left.count(), 3);
        QCOMPARE(server.counts(), 0);
        QVERIFY(!server.isListening());
        for (auto &p : peers)
            QTRY_COMPARE(p->state(), QAbstractSocket::UnconnectedState);

        QVERIFY(server.listen(QHostAddress::Any, 0));
        QSignalSpy read(&server, SIGNAL(signalReadMessage(QString,QByteArray)));
        auto again = connectPeers(server, 1);
        QCOMPARE(server.counts(), 1);
        again[0]->write("again");
        QTRY_COMPARE(read.count(), 1);
        QCOMPARE(read.at(0).at(1).toByteArray(), QByteArray("again"));
    }

    void aBurstOfClientsComingAndGoingLeavesAnEmptyTable()
    {
        TcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        QSignalSpy connected(&server, SIGNAL(signalClientConnected(QString)));
        QSignalSpy left(&server, SIGNAL(signalClientDisconnected(QString)));
        auto peers = connectPeers(server, 200);
        QCOMPARE(server.counts(), 200);
        QCOMPARE(connected.count(), 200);
        for (auto &p : peers)
            p->disconnectFromHost();
        QTRY_COMPARE(server.counts(), 0);
        QCOMPARE(left.count(), 200);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTRY_COMPARE(server.findChildren<TcpClient *>().size(), 0);
    }
};

LARK_TEST_GUILESS_MAIN(TstTcpServer)
#include "tst_tcpserver.moc"
