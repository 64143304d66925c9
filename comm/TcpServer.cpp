#include "TcpServer.h"
#include "TcpClient.h"

#include <QHostAddress>

#include <sys/socket.h>

TcpServer::TcpServer(QObject *parent)
    : QTcpServer(parent)
{
}

TcpServer::~TcpServer()
{
    CloseListen();
}

bool TcpServer::listen(const QHostAddress &address, quint16 port)
{
    if (!QTcpServer::listen(address, port))
        return false;
    // listening again on a listening socket only changes its queue length; when it
    // fails the server simply keeps Qt's queue
    ::listen(int(socketDescriptor()), SOMAXCONN);
    return true;
}

int TcpServer::counts()
{
    return m_clients.size();
}

QString TcpServer::clientName(const QString &peerAddress, qintptr descriptor)
{
    QString address = peerAddress;
    address.remove("::ffff:");
    return QString("%1 %2").arg(address).arg(qint64(descriptor));
}

void TcpServer::incomingConnection(qintptr handle)
{
    // Clients are taken here at once rather than through the pending queue, so the
    // table is complete the moment signalClientConnected goes out.
    TcpClient *client = new TcpClient(this);
    connect(client, SIGNAL(signalReadMessage(QString,QByteArray)),
            this, SIGNAL(signalReadMessage(QString,QByteArray)));
    connect(client, SIGNAL(disconnected()), this, SLOT(SltClientDisconnected()));
    client->setSocketDescriptor(handle, QAbstractSocket::ConnectedState, QIODevice::ReadWrite);

    const QString name = clientName(client->peerAddress().toString(), handle);
    client->setName(name);
    m_clients.insert(name, client);
    emit signalClientConnected(name);
}

void TcpServer::SltClientDisconnected()
{
    TcpClient *client = qobject_cast<TcpClient *>(sender());
    if (client == nullptr)
        return;

    const QString name = client->name();
    // listeners may still look the client up by name while they handle the signal
    emit signalClientDisconnected(name);
    disconnect(client, nullptr, this, nullptr);
    // a newer client may already hold the name if the descriptor was reused
    if (m_clients.value(name) == client)
        m_clients.remove(name);
    client->deleteLater();
}

void TcpServer::disconnectClient(const QString &name)
{
    if (!name.isEmpty()) {
        TcpClient *client = m_clients.value(name, nullptr);
        if (client)
            client->abort();
        return;
    }
    // each abort removes its entry through SltClientDisconnected: walk a copy
    const QMap<QString, TcpClient *> clients = m_clients;
    for (TcpClient *client : clients)
        client->abort();
}

void TcpServer::CloseListen()
{
    if (isListening())
        close();
    const QMap<QString, TcpClient *> clients = m_clients;
    for (TcpClient *client : clients)
        client->abort();
}

void TcpServer::SltSendMsgToAllClient(QByteArray data)
{
    for (TcpClient *client : qAsConst(m_clients))
        client->write(data);
}

void TcpServer::SltSendMsgToClient(QString name, QByteArray data)
{
    TcpClient *client = m_clients.value(name, nullptr);
    if (client)
        client->write(data);
}
