#ifndef TCPSERVER_H
#define TCPSERVER_H

#include <QByteArray>
#include <QHostAddress>
#include <QMap>
#include <QString>
#include <QTcpServer>

class TcpClient;

// A listening socket with a table of its connected clients, each known by
// "address descriptor" (for example "192.168.1.20 27"). The server is the parent of
// every client; a client leaves the table when its socket reports disconnected,
// whether the peer went or the client was aborted here.
class TcpServer : public QTcpServer
{
    Q_OBJECT
public:
    explicit TcpServer(QObject *parent = nullptr);
    ~TcpServer() override;

    // QTcpServer::listen with a deeper accept queue: Qt asks the kernel for 50, and a
    // burst of clients beyond that is left half-open by the kernel until they speak
    bool listen(const QHostAddress &address = QHostAddress::Any, quint16 port = 0);

    int counts();
    // an empty name disconnects every client; an unknown name is ignored
    void disconnectClient(const QString &name);
    // stops listening and drops every client; the object can listen again afterwards
    void CloseListen();

    // the name a peer gets: IPv4 peers of the dual-stack listener show as plain IPv4
    static QString clientName(const QString &peerAddress, qintptr descriptor);

signals:
    void signalReadMessage(QString name, QByteArray data);
    void signalClientConnected(QString name);
    void signalClientDisconnected(QString name);

public slots:
    void SltSendMsgToAllClient(QByteArray data);
    void SltSendMsgToClient(QString name, QByteArray data);
    void SltClientDisconnected();

protected:
    void incomingConnection(qintptr handle) override;

private:
    QMap<QString, TcpClient *> m_clients;
};

#endif // TCPSERVER_H
