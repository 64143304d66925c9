#ifndef SIMENDPOINT_H
#define SIMENDPOINT_H

#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QString>

class QSocketNotifier;
class QTcpServer;
class QTcpSocket;
class QTimer;
class QUdpSocket;

// The simulator's side of a link: a pseudo-terminal it creates, a TCP server, a TCP
// client or a UDP socket. Bytes written while no peer is there are dropped, as a
// board's UART drops them into an unplugged cable, so a page that connects late
// starts on fresh data instead of a stale backlog.
class SimEndpoint : public QObject
{
    Q_OBJECT
public:
    enum Kind { Pty, TcpServer, TcpClient, Udp };
    struct Config {
        Kind kind = Pty;
        QString path;  // pty: the symbolic link to make, may be empty
        QString host;  // tcp client and udp: where to
        quint16 port = 0;
    };

    // "pty", "pty:PATH", "tcp-server:PORT", "tcp-client:HOST:PORT", "udp:HOST:PORT"
    static bool parse(const QString &token, Config &config, QString *error);
    // "HOST:PORT" of the option forms
    static bool parseHostPort(const QString &text, Config &config, QString *error);

    explicit SimEndpoint(const Config &config, QObject *parent = nullptr);
    ~SimEndpoint() override;

    bool open(QString *error);
    void close();
    // queued and written as fast as the peer takes it; dropped without a peer
    void write(const QByteArray &data);
    bool hasPeer() const { return m_hasPeer; }
    // bytes handed to write() and not yet taken by the operating system
    qint64 pending() const;
    // one line that tells the user what to type into the page
    QString description() const;
    // "/dev/pts/N" of a pty, the port actually listened on, ...
    QString ptyName() const { return m_ptyName; }
    quint16 localPort() const;
    // how long to wait, after the last write, before ending the program
    int lingerMs() const;

signals:
    void received(const QByteArray &data);
    void peerChanged(bool present);

private slots:
    void readPty();
    void writePty();
    void checkPtyPeer();
    void newTcpClient();
    void readTcp();
    void tcpGone();
    void connectTcp();
    void tcpUp();
    void readUdp();

private:
    void setPeer(bool present);

    Config m_config;
    bool m_hasPeer = false;
    // pty
    int m_master = -1;
    QString m_ptyName;
    bool m_madeLink = false;
    QByteArray m_ptyOut;
    QSocketNotifier *m_readNotifier = nullptr;
    QSocketNotifier *m_writeNotifier = nullptr;
    QTimer *m_peerTimer = nullptr;
    // tcp / udp
    QTcpServer *m_server = nullptr;
    QList<QTcpSocket *> m_clients;
    QTcpSocket *m_socket = nullptr;
    QUdpSocket *m_udp = nullptr;
    QHostAddress m_udpPeer;
    quint16 m_udpPeerPort = 0;
};

#endif // SIMENDPOINT_H
