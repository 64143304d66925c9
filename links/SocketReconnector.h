#ifndef SOCKETRECONNECTOR_H
#define SOCKETRECONNECTOR_H

#include <QAbstractSocket>
#include <QObject>

class QTimer;

// Keeps a page's TCP client trying while it is on: after a refused attempt or a
// session the server ended, it connects the same socket to the same host and port
// again, 0.5 s later, then 1, 2, 4, 8 and every 10 s until it succeeds. A close
// by the user (no error) ends the trying; so does turning it off.
//
// The page's own socket is used, so the page sees its usual connected() and
// disconnected() and keeps its texts and buttons right.
class SocketReconnector : public QObject
{
    Q_OBJECT
public:
    static constexpr int firstDelay = 500;
    static constexpr int maxDelay = 10000;

    explicit SocketReconnector(QObject *parent = nullptr);

    void attach(QAbstractSocket *socket);
    void setEnabled(bool on);
    bool isEnabled() const { return m_enabled; }
    bool isWaiting() const;
    // the wait before the attempt after `failures` failed ones
    static int delayAfter(int failures);

signals:
    void reconnecting(const QString &host, quint16 port, int delayMs);

private slots:
    void SltStateChanged(QAbstractSocket::SocketState state);
    void SltError(QAbstractSocket::SocketError error);
    void SltRetry();

private:
    QAbstractSocket *m_socket = nullptr;
    QTimer *m_timer;
    QString m_host;
    quint16 m_port = 0;
    int m_failures = 0;
    bool m_enabled = false;
};

#endif // SOCKETRECONNECTOR_H
