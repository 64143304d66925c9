#include "LarkTestCore.h"
#include "TcpClient.h"
#include "TcpServer.h"

#include <QtTest>
#include <QTcpSocket>
#include <algorithm>
#include <memory>
#include <vector>

// A TcpServer on an ephemeral port of the dual-stack listener, with real QTcpSocket
// peers on loopback.
class TstTcpServer : public QObject
{
    Q_OBJECT
    std::unique_ptr<TcpServer> m_server;
    std::unique_ptr<QSignalSpy> m_left;
    std::vector<std::unique_ptr<QTcpSocket>> m_peers;

    // connects n peers and waits until the server has taken every one of them
    bool connectPeers(int n)
    {
        for (int i = 0; i < n; ++i) {
            m_peers.emplace_back(new QTcpSocket);
            m_peers.back()->connectToHost(QHostAddress::LocalHost, m_server->serverPort());
        }
        // the event loop must run for the server to accept: no blocking waits here
        auto connected = [](const std::unique_ptr<QTcpSocket> &p) { return p->state() == QAbstractSocket::ConnectedState; };
        return QTest::qWaitFor([&] { return m_server->counts() == int(m_peers.size()) && std::all_of(m_peers.begin(), m_peers.end(), connected); }, 20000);
    }

    // the server-side name of a peer, found by its local port
    QString nameOf(int peer) const
    {
        for (TcpClient *c : m_server->findChildren<TcpClient *>())
            if (c->peerPort() == m_peers[peer]->localPort())
                return c->name();
        return QString();
    }

private slots:
    void init()
    {
        m_server.reset(new TcpServer);
        QVERIFY(m_server->listen(QHostAddress::Any, 0));
        m_left.reset(new QSignalSpy(m_server.get(), SIGNAL(signalClientDisconnected(QString))));
    }

    void cleanup() { m_peers.clear(), m_left.reset(), m_server.reset(); } // the spy goes before its server

    void clientsAreAnnouncedAddressedAndDroppedAtCloseListen()
    {
        QSignalSpy connected(m_server.get(), SIGNAL(signalClientConnected(QString)));
        QSignalSpy read(m_server.get(), SIGNAL(signalReadMessage(QString,QByteArray)));
        QVERIFY(connectPeers(3));
        for (TcpClient *c : m_server->findChildren<TcpClient *>())
            QVERIFY(connected.contains({c->name()}));

        m_peers[1]->write("from one");
        QTRY_COMPARE(read.count(), 1);
        QCOMPARE(read.at(0), (QList<QVariant>{nameOf(1), QByteArray("from one")}));
        m_server->SltSendMsgToAllClient("all");
        for (auto &p : m_peers)
            QTRY_COMPARE(p->bytesAvailable(), qint64(3));
        m_server->SltSendMsgToClient(nameOf(1), "one");
        m_server->SltSendMsgToClient("no such client", "lost");
        // a round trip through another peer proves nothing else was queued for 0 and 2
        m_server->SltSendMsgToClient(nameOf(0), "x");
        QTRY_COMPARE(m_peers[0]->bytesAvailable() + m_peers[1]->bytesAvailable(), qint64(4 + 6));
        QCOMPARE(m_peers[0]->readAll(), QByteArray("allx"));
        QCOMPARE(m_peers[1]->readAll(), QByteArray("allone"));
        QCOMPARE(m_peers[2]->readAll(), QByteArray("all"));
        // CloseListen drops every client; the server can listen again
        m_server->CloseListen();
        QVERIFY(m_left->count() == 3 && m_server->counts() == 0 && !m_server->isListening());
        for (auto &p : m_peers)
            QTRY_COMPARE(p->state(), QAbstractSocket::UnconnectedState);
        m_peers.clear();
        QVERIFY(m_server->listen(QHostAddress::Any, 0) && connectPeers(1));
        m_peers[0]->write("again");
        QTRY_COMPARE(read.count(), 2);
    }

    // a burst of peers leaving, one leaving, then the server disconnecting one and all
    void peersLeavingOrDisconnectedLeaveTheTable()
    {
        QVERIFY(connectPeers(200));
        const QString gone = nameOf(0);
        for (size_t i = 4; i < m_peers.size(); ++i)
            m_peers[i]->disconnectFromHost();
        m_peers[0]->disconnectFromHost();
        QTRY_COMPARE(m_server->counts(), 3);
        QCOMPARE(m_left->count(), 197);
        QVERIFY(m_left->contains({gone}));
        m_server->SltSendMsgToClient(gone, "lost");
        m_server->SltSendMsgToAllClient("kept");
        QTRY_COMPARE(m_peers[1]->bytesAvailable(), qint64(4)); // "kept" alone
        m_server->disconnectClient("not a client");
        const QString middle = nameOf(2);
        m_server->disconnectClient(middle);
        QCOMPARE(m_server->counts(), 2);
        QCOMPARE(m_left->last(), QVariantList{middle});
        QTRY_COMPARE(m_peers[2]->state(), QAbstractSocket::UnconnectedState);
        m_server->disconnectClient(QString());
        QVERIFY(m_left->count() == 200 && m_server->counts() == 0 && m_server->isListening());
        QTRY_COMPARE(m_peers[3]->state(), QAbstractSocket::UnconnectedState);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTRY_COMPARE(m_server->findChildren<TcpClient *>().size(), 0);
    }
};

LARK_TEST_GUILESS_MAIN(TstTcpServer)
#include "tst_tcpserver.moc"
