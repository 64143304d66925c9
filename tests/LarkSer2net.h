#ifndef LARKSER2NET_H
#define LARKSER2NET_H

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// A real ser2net with a telnet(rfc2217) accepter on a loopback port in front of one
// device (the program's end of a socat pty pair): a remote serial port. It can be
// stopped and started again on the same port, as a server that goes away and comes
// back; its sessions end with it.
class LarkSer2net
{
public:
    ~LarkSer2net() { stop(); }

    static bool isInstalled();
    // serves device; the port is picked on the first start and kept after. True once
    // it accepts connections
    bool start(const QString &device);
    void stop();

    quint16 port() const { return m_port; }
    // the port's name as a port box takes it
    QString name() const { return QString("rfc2217://127.0.0.1:%1").arg(m_port); }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
};

#endif // LARKSER2NET_H
