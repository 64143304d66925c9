#include "LarkPtyPair.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

LarkPtyPair::LarkPtyPair() = default;

LarkPtyPair::~LarkPtyPair()
{
    stop();
}

bool LarkPtyPair::start(int timeoutMs)
{
    m_socat.setProcessChannelMode(QProcess::SeparateChannels);
    m_socat.start("socat", {"-d", "-d", "pty,raw,echo=0", "pty,raw,echo=0"});
    if (!m_socat.waitForStarted(timeoutMs))
        return false;
    QByteArray err;
    QElapsedTimer t;
    t.start();
    QStringList paths;
    while (paths.size() < 2 && t.elapsed() < timeoutMs) {
        m_socat.waitForReadyRead(100);
        err += m_socat.readAllStandardError();
        paths.clear();
        QRegularExpression re("PTY is (/dev/pts/\\d+)");
        auto it = re.globalMatch(QString::fromLatin1(err));
        while (it.hasNext())
            paths << it.next().captured(1);
    }
    // socat announces both ends before it starts the transfer loop
    if (paths.size() < 2 || !err.contains("starting data transfer loop")) {
        while (!err.contains("starting data transfer loop") && t.elapsed() < timeoutMs) {
            m_socat.waitForReadyRead(100);
            err += m_socat.readAllStandardError();
        }
    }
    if (paths.size() < 2)
        return false;
    m_programPath = paths.at(0);
    m_boardPath = paths.at(1);
    m_boardFd = ::open(m_boardPath.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (m_boardFd < 0)
        return false;
    termios tio;
    if (tcgetattr(m_boardFd, &tio) == 0) {
        cfmakeraw(&tio);
        tcsetattr(m_boardFd, TCSANOW, &tio);
    }
    return true;
}

void LarkPtyPair::stop()
{
    if (m_boardFd >= 0) {
        ::close(m_boardFd);
        m_boardFd = -1;
    }
    if (m_socat.state() != QProcess::NotRunning) {
        m_socat.terminate();
        if (!m_socat.waitForFinished(2000)) {
            m_socat.kill();
            m_socat.waitForFinished(2000);
        }
    }
}

QString LarkPtyPair::programShortName() const
{
    QString s = m_programPath;
    return s.remove(0, 5); // strip "/dev/"
}

bool LarkPtyPair::boardWrite(const QByteArray &data)
{
    qint64 done = 0;
    QElapsedTimer t;
    t.start();
    while (done < data.size() && t.elapsed() < 10000) {
        const ssize_t n = ::write(m_boardFd, data.constData() + done, size_t(data.size() - done));
        if (n > 0) {
            done += n;
        } else if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK) {
            return false;
        } else {
            // the pty buffer is full: let the program read it
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
    }
    return done == data.size();
}

QByteArray LarkPtyPair::boardRead()
{
    QByteArray out;
    char buf[4096];
    for (;;) {
        const ssize_t n = ::read(m_boardFd, buf, sizeof buf);
        if (n <= 0)
            break;
        out.append(buf, int(n));
    }
    return out;
}

QByteArray LarkPtyPair::boardReadAtLeast(int n, int timeoutMs)
{
    QByteArray out = boardRead();
    QElapsedTimer t;
    t.start();
    while (out.size() < n && t.elapsed() < timeoutMs) {
        QTest::qWait(5);
        out += boardRead();
    }
    return out;
}
