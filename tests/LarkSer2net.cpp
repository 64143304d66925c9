#include "LarkSer2net.h"

#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

bool LarkSer2net::isInstalled()
{
    return !QStandardPaths::findExecutable("ser2net").isEmpty();
}

bool LarkSer2net::start(const QString &device)
{
    if (m_port == 0) {
        QTcpServer probe;
        if (!probe.listen(QHostAddress::LocalHost))
            return false;
        m_port = probe.serverPort();
    }
    QFile conf(m_dir.filePath("ser2net.yaml"));
    if (!conf.open(QIODevice::WriteOnly))
        return false;
    conf.write(QString("connection: &remote\n"
                       "  accepter: telnet(rfc2217),tcp,localhost,%1\n"
                       "  connector: serialdev,%2,9600n81,local\n"
                       "  options:\n    kickolduser: true\n")
                   .arg(m_port).arg(device).toUtf8());
    conf.close();
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.start("ser2net", {"-n", "-d", "-c", conf.fileName(), "-P", m_dir.filePath("pid")});
    if (!m_process.waitForStarted())
        return false;
    return QTest::qWaitFor([this] {
        QTcpSocket s;
        s.connectToHost("127.0.0.1", m_port);
        return s.waitForConnected(200);
    }, 10000);
}

void LarkSer2net::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(3000)) {
        m_process.kill();
        m_process.waitForFinished(3000);
    }
}
