#include "SimEndpoint.h"

#include <QFile>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUdpSocket>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace {
// how often a pty is looked at for a page that opened or closed its end
constexpr int PeerPollMs = 50;
// a TCP client retries this often until the page listens
constexpr int RetryMs = 300;
// bytes a slow TCP peer may owe before frames are dropped for it
constexpr qint64 TcpBacklog = 8 << 20;
}

bool SimEndpoint::parseHostPort(const QString &text, Config &config, QString *error)
{
    const int colon = text.lastIndexOf(':');
    bool ok = false;
    const uint port = colon > 0 ? text.mid(colon + 1).toUInt(&ok) : 0;
    if (!ok || port == 0 || port > 65535) {
        *error = QString("expected HOST:PORT, got '%1'").arg(text);
        return false;
    }
    config.host = text.left(colon);
    config.port = quint16(port);
    return true;
}

bool SimEndpoint::parse(const QString &token, Config &config, QString *error)
{
    const QString kind = token.section(':', 0, 0);
    const QString rest = token.section(':', 1);
    if (kind == "pty") {
        config.kind = Pty;
        config.path = rest;
        return true;
    }
    if (kind == "tcp-server") {
        bool ok = false;
        const uint port = rest.toUInt(&ok);
        if (!ok || port > 65535) {
            *error = QString("expected tcp-server:PORT, got '%1'").arg(token);
            return false;
        }
        config.kind = TcpServer;
        config.port = quint16(port);
        return true;
    }
    if (kind == "tcp-client" || kind == "udp") {
        config.kind = kind == "udp" ? Udp : TcpClient;
        return parseHostPort(rest, config, error);
    }
    *error = QString("unknown endpoint '%1' (pty[:PATH], tcp-server:PORT, tcp-client:HOST:PORT, udp:HOST:PORT)").arg(token);
    return false;
}

SimEndpoint::SimEndpoint(const Config &config, QObject *parent)
    : QObject(parent)
    , m_config(config)
{
}

SimEndpoint::~SimEndpoint()
{
    close();
}

bool SimEndpoint::open(QString *error)
{
    switch (m_config.kind) {
    case Pty: {
        int slave = -1;
        char name[256] = {};
        if (::openpty(&m_master, &slave, name, nullptr, nullptr) != 0) {
            *error = QString("cannot create a pseudo-terminal: %1").arg(strerror(errno));
            return false;
        }
        // raw both ways, kept by the pair after this end is closed; with no slave
        // open the master reports a hang-up, which is how a page is seen to come
        termios tio;
        if (::tcgetattr(slave, &tio) == 0) {
            ::cfmakeraw(&tio);
            ::tcsetattr(slave, TCSANOW, &tio);
        }
        ::close(slave);
        ::fcntl(m_master, F_SETFL, ::fcntl(m_master, F_GETFL) | O_NONBLOCK);
        m_ptyName = QString::fromLocal8Bit(name);
        if (!m_config.path.isEmpty()) {
            QFile::remove(m_config.path);
            if (!QFile::link(m_ptyName, m_config.path)) {
                *error = QString("cannot make the link %1").arg(m_config.path);
                close();
                return false;
            }
            m_madeLink = true;
        }
        m_readNotifier = new QSocketNotifier(m_master, QSocketNotifier::Read, this);
        m_readNotifier->setEnabled(false);
        connect(m_readNotifier, SIGNAL(activated(int)), this, SLOT(readPty()));
        m_writeNotifier = new QSocketNotifier(m_master, QSocketNotifier::Write, this);
        m_writeNotifier->setEnabled(false);
        connect(m_writeNotifier, SIGNAL(activated(int)), this, SLOT(writePty()));
        m_peerTimer = new QTimer(this);
        connect(m_peerTimer, SIGNAL(timeout()), this, SLOT(checkPtyPeer()));
        m_peerTimer->start(PeerPollMs);
        return true;
    }
    case TcpServer:
        m_server = new QTcpServer(this);
        connect(m_server, SIGNAL(newConnection()), this, SLOT(newTcpClient()));
        if (!m_server->listen(QHostAddress::Any, m_config.port)) {
            *error = QString("cannot listen on port %1: %2").arg(m_config.port).arg(m_server->errorString());
            return false;
        }
        return true;
    case TcpClient:
        m_socket = new QTcpSocket(this);
        connect(m_socket, SIGNAL(readyRead()), this, SLOT(readTcp()));
        connect(m_socket, SIGNAL(connected()), this, SLOT(tcpUp()));
        connect(m_socket, SIGNAL(disconnected()), this, SLOT(tcpGone()));
        connect(m_socket, SIGNAL(errorOccurred(QAbstractSocket::SocketError)), this, SLOT(tcpGone()));
        connectTcp();
        return true;
    case Udp:
        m_udp = new QUdpSocket(this);
        if (!m_udp->bind(QHostAddress(QHostAddress::Any), quint16(0))) {
            *error = QString("cannot bind a UDP socket: %1").arg(m_udp->errorString());
            return false;
        }
        m_udpPeer = QHostAddress(m_config.host == "localhost" ? QString("127.0.0.1") : m_config.host);
        if (m_udpPeer.isNull()) {
            *error = QString("not an IP address: %1").arg(m_config.host);
            return false;
        }
        m_udpPeerPort = m_config.port;
        connect(m_udp, SIGNAL(readyRead()), this, SLOT(readUdp()));
        setPeer(true);
        return true;
    }
    return false;
}

void SimEndpoint::close()
{
    if (m_master >= 0) {
        delete m_readNotifier;
        delete m_writeNotifier;
        m_readNotifier = m_writeNotifier = nullptr;
        ::close(m_master);
        m_master = -1;
    }
    if (m_madeLink) {
        QFile::remove(m_config.path);
        m_madeLink = false;
    }
    if (m_server)
        m_server->close();
    // a graceful close: what the peer has not read yet still reaches it
    for (QTcpSocket *c : qAsConst(m_clients)) {
        c->disconnectFromHost();
        if (c->state() != QAbstractSocket::UnconnectedState)
            c->waitForDisconnected(1000);
    }
    m_clients.clear();
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->disconnectFromHost();
        if (m_socket->state() != QAbstractSocket::UnconnectedState)
            m_socket->waitForDisconnected(1000);
    }
}

int SimEndpoint::lingerMs() const
{
    // a pty hands the last bytes over only while its master is open: the page gets
    // a moment to read them before the pair goes away
    return m_config.kind == Pty ? 1000 : 0;
}

QString SimEndpoint::description() const
{
    switch (m_config.kind) {
    case Pty:
        return m_config.path.isEmpty() ? QString("pty %1").arg(m_ptyName)
                                       : QString("pty %1 (link %2)").arg(m_ptyName, m_config.path);
    case TcpServer:
        return QString("tcp server on port %1").arg(localPort());
    case TcpClient:
        return QString("tcp client to %1:%2").arg(m_config.host).arg(m_config.port);
    case Udp:
        return QString("udp on port %1 sending to %2:%3").arg(localPort()).arg(m_config.host).arg(m_config.port);
    }
    return QString();
}

quint16 SimEndpoint::localPort() const
{
    if (m_server)
        return m_server->serverPort();
    if (m_udp)
        return m_udp->localPort();
    if (m_socket)
        return m_socket->localPort();
    return 0;
}

qint64 SimEndpoint::pending() const
{
    qint64 n = m_ptyOut.size();
    for (QTcpSocket *c : m_clients)
        n = qMax(n, c->bytesToWrite());
    if (m_socket)
        n += m_socket->bytesToWrite();
    return n;
}

void SimEndpoint::write(const QByteArray &data)
{
    if (!m_hasPeer || data.isEmpty())
        return;
    switch (m_config.kind) {
    case Pty:
        m_ptyOut.append(data);
        writePty();
        break;
    case TcpServer:
        for (QTcpSocket *c : qAsConst(m_clients))
            if (c->bytesToWrite() < TcpBacklog)
                c->write(data);
        break;
    case TcpClient:
        if (m_socket->bytesToWrite() < TcpBacklog)
            m_socket->write(data);
        break;
    case Udp:
        // one datagram at most 64 KiB; a bigger write goes out in pieces
        for (int at = 0; at < data.size(); at += 60000)
            m_udp->writeDatagram(data.mid(at, 60000), m_udpPeer, m_udpPeerPort);
        break;
    }
}

void SimEndpoint::setPeer(bool present)
{
    if (present == m_hasPeer)
        return;
    m_hasPeer = present;
    if (!present)
        m_ptyOut.clear();
    emit peerChanged(present);
}

void SimEndpoint::checkPtyPeer()
{
    pollfd p{m_master, POLLIN, 0};
    if (::poll(&p, 1, 0) < 0)
        return;
    const bool present = !(p.revents & POLLHUP);
    if (m_readNotifier)
        m_readNotifier->setEnabled(present);
    setPeer(present);
    if (present)
        writePty();
}

void SimEndpoint::readPty()
{
    char buf[65536];
    const ssize_t n = ::read(m_master, buf, sizeof buf);
    if (n > 0) {
        emit received(QByteArray(buf, int(n)));
    } else if (n < 0 && errno != EAGAIN && errno != EINTR) {
        // EIO: the page closed its end; wait until it comes back
        m_readNotifier->setEnabled(false);
        setPeer(false);
    }
}

void SimEndpoint::writePty()
{
    while (!m_ptyOut.isEmpty()) {
        const ssize_t n = ::write(m_master, m_ptyOut.constData(), size_t(m_ptyOut.size()));
        if (n > 0) {
            m_ptyOut.remove(0, int(n));
        } else if (n < 0 && errno == EINTR) {
            continue;
        } else {
            if (n < 0 && errno != EAGAIN)
                m_ptyOut.clear();
            break;
        }
    }
    if (m_writeNotifier)
        m_writeNotifier->setEnabled(!m_ptyOut.isEmpty() && m_hasPeer);
}

void SimEndpoint::newTcpClient()
{
    while (QTcpSocket *c = m_server->nextPendingConnection()) {
        c->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_clients << c;
        connect(c, SIGNAL(readyRead()), this, SLOT(readTcp()));
        connect(c, SIGNAL(disconnected()), this, SLOT(tcpGone()));
    }
    setPeer(!m_clients.isEmpty());
}

void SimEndpoint::readTcp()
{
    if (auto *s = qobject_cast<QTcpSocket *>(sender()))
        emit received(s->readAll());
}

void SimEndpoint::tcpGone()
{
    auto *s = qobject_cast<QTcpSocket *>(sender());
    if (s && m_clients.removeAll(s)) {
        s->deleteLater();
        setPeer(!m_clients.isEmpty());
        return;
    }
    if (s == m_socket && m_socket->state() != QAbstractSocket::ConnectedState) {
        setPeer(false);
        QTimer::singleShot(RetryMs, this, SLOT(connectTcp()));
    }
}

void SimEndpoint::tcpUp()
{
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    setPeer(true);
}

void SimEndpoint::connectTcp()
{
    if (!m_socket || m_socket->state() != QAbstractSocket::UnconnectedState)
        return;
    m_socket->connectToHost(m_config.host, m_config.port);
}

void SimEndpoint::readUdp()
{
    while (m_udp->hasPendingDatagrams()) {
        QByteArray datagram(int(m_udp->pendingDatagramSize()), 0);
        m_udp->readDatagram(datagram.data(), datagram.size());
        emit received(datagram);
    }
}
