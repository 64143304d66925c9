#include "SocketReconnector.h"

#include <QTimer>
#include <private/qabstractsocket_p.h>

namespace {
// Where the socket was aimed: QAbstractSocket tells the port only once connected, and
// the page's attempt may never get there. Qt exports no type information for its
// private socket class, which the sanitizer's check of this cast would need.
__attribute__((no_sanitize("vptr"))) void aimOf(QAbstractSocket *socket, QString *host, quint16 *port)
{
    const auto *d = static_cast<const QAbstractSocketPrivate *>(QObjectPrivate::get(socket));
    *host = d->hostName;
    *port = d->port;
}
} // namespace

SocketReconnector::SocketReconnector(QObject *parent)
    : QObject(parent), m_timer(new QTimer(this))
{
    m_timer->setSingleShot(true);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(SltRetry()));
}

void SocketReconnector::attach(QAbstractSocket *socket)
{
    m_socket = socket;
    connect(socket, SIGNAL(stateChanged(QAbstractSocket::SocketState)), this,
            SLOT(SltStateChanged(QAbstractSocket::SocketState)));
    connect(socket, SIGNAL(errorOccurred(QAbstractSocket::SocketError)), this,
            SLOT(SltError(QAbstractSocket::SocketError)));
}

void SocketReconnector::setEnabled(bool on)
{
    m_enabled = on;
    if (!on)
        m_timer->stop();
}

bool SocketReconnector::isWaiting() const
{
    return m_timer->isActive();
}

int SocketReconnector::delayAfter(int failures)
{
    int delay = firstDelay;
    for (int i = 1; i < failures && delay < maxDelay; ++i)
        delay *= 2;
    return qMin(delay, maxDelay);
}

void SocketReconnector::SltStateChanged(QAbstractSocket::SocketState state)
{
    if (state == QAbstractSocket::HostLookupState || state == QAbstractSocket::ConnectingState) {
        aimOf(m_socket, &m_host, &m_port);
    } else if (state == QAbstractSocket::ConnectedState) {
        m_failures = 0;
        m_timer->stop();
    }
}

void SocketReconnector::SltError(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
    case QAbstractSocket::RemoteHostClosedError:
    case QAbstractSocket::HostNotFoundError:
    case QAbstractSocket::SocketTimeoutError:
    case QAbstractSocket::NetworkError:
        break;
    default:
        return;
    }
    if (!m_enabled || m_host.isEmpty() || m_port == 0)
        return;
    const int delay = delayAfter(++m_failures);
    m_timer->start(delay);
    emit reconnecting(m_host, m_port, delay);
}

void SocketReconnector::SltRetry()
{
    if (!m_enabled || !m_socket)
        return;
    // the user may have connected meanwhile
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        return;
    // a refused attempt leaves the device open, which connectToHost refuses
    if (m_socket->isOpen())
        m_socket->close();
    m_socket->connectToHost(m_host, m_port);
}
