#ifndef LARKSER2NET_H
#define LARKSER2NET_H

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

// A real ser2net, a telnet(rfc2217) accepter on a loopback port in front of device: a
// remote serial port. Started again after stop() on the same port, it is a server that
// went away and came back; its sessions end with it.
class LarkSer2net
{
public:
    ~LarkSer2net() { stop(); }
    static bool isInstalled() { return !QStandardPaths::findExecutable("ser2net").isEmpty(); }
    quint16 port() const { return m_port; }
    QString name() const { return QString("rfc2217://127.0.0.1:%1").arg(m_port); }

    // true once it accepts connections
    bool start(const QString &device)
    {
        QTcpServer probe;
        if (m_port == 0 && probe.listen(QHostAddress::LocalHost))
            m_port = probe.serverPort();
        probe.close();
        QFile conf(m_dir.filePath("ser2net.yaml"));
        if (m_port == 0 || !conf.open(QIODevice::WriteOnly))
            return false;
        conf.write(QString("connection: &remote\n  accepter: telnet(rfc2217),tcp,localhost,%1\n"
                           "  connector: serialdev,%2,9600n81,local\n  options:\n    kickolduser: true\n")
                       .arg(m_port).arg(device).toUtf8());
        conf.close();
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start("ser2net", {"-n", "-d", "-c", conf.fileName(), "-P", m_dir.filePath("pid")});
        return m_process.waitForStarted() && QTest::qWaitFor([this] {
            QTcpSocket s;
            s.connectToHost("127.0.0.1", m_port);
            return s.waitForConnected(200);
        }, 10000);
    }
    void stop()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(3000))
            m_process.kill();
        m_process.waitForFinished(3000);
    }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
};

#endif // LARKSER2NET_H
