#include "NetLinkSet.h"
#include "TcpServer.h"

#include <QTcpSocket>
#include <QUdpSocket>

NetLinkSet::NetLinkSet(TcpServer *server, QTcpSocket *client, QUdpSocket *udp)
    : m_server(server)
    , m_client(client)
    , m_udp(udp)
{
}

bool NetLinkSet::isRunning(Kind kind) const
{
    switch (kind) {
    case TcpServerLink:
        return m_server->isListening();
    case TcpClientLink:
        return m_client->isOpen();
    case UdpLink:
        return m_udp->state() == QAbstractSocket::BoundState;
    default:
        return false;
    }
}

QString NetLinkSet::linkName(Kind kind) const
{
    switch (kind) {
    case TcpServerLink:
        return QString("TCP Server 0.0.0.0:%1").arg(m_server->serverPort());
    case TcpClientLink:
        return QString("TCP Client %1:%2").arg(m_client->peerName()).arg(m_client->peerPort());
    case UdpLink:
        return QString("UDP 0.0.0.0:%1").arg(m_udp->localPort());
    default:
        return QString();
    }
}

qint64 NetLinkSet::write(Kind kind, const QByteArray &data) const
{
    switch (kind) {
    case TcpServerLink:
        if (!m_server->isListening())
            return -1;
        m_server->SltSendMsgToAllClient(data);
        return data.size();
    case TcpClientLink:
        return m_client->write(data);
    case UdpLink:
        return m_udp->write(data);
    default:
        return -1;
    }
}
