#ifndef NETLINKSET_H
#define NETLINKSET_H

#include <QByteArray>
#include <QString>

class QTcpSocket;
class QUdpSocket;
class TcpServer;

// The three network links a page owns side by side, picked by the index of its link
// box: 0 the TCP server, 1 the TCP client, 2 UDP. The camera page lists serial ports
// from index 3 on; they are the page's own business, so the set only names the kind.
class NetLinkSet
{
public:
    enum Kind { TcpServerLink = 0, TcpClientLink = 1, UdpLink = 2, SerialLink = 3 };

    NetLinkSet(TcpServer *server = nullptr, QTcpSocket *client = nullptr, QUdpSocket *udp = nullptr);

    // what is not one of the three, an empty box included, is the page's own
    static Kind kind(int index) { return index >= 0 && index < SerialLink ? Kind(index) : SerialLink; }

    // listening, open (also while still connecting), bound; never for SerialLink
    bool isRunning(Kind kind) const;
    // The link as a user knows it: "TCP Server 0.0.0.0:8000", "TCP Client
    // 127.0.0.1:6000", "UDP 0.0.0.0:8001". Ports are the ones really in use, so a
    // port given as 0 shows what the system chose. Empty for SerialLink.
    QString linkName(Kind kind) const;
    // The plain write of each link: every client of the server, the client socket, the
    // bound UDP socket with no destination of its own. Bytes taken, or -1.
    qint64 write(Kind kind, const QByteArray &data) const;

private:
    TcpServer *m_server;
    QTcpSocket *m_client;
    QUdpSocket *m_udp;
};

#endif // NETLINKSET_H
