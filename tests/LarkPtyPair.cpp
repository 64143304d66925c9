#include "LarkPtyPair.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

bool LarkPtyPair::start()
{
    m_socat.start("socat", {"-d", "-d", "pty,raw,echo=0", "pty,raw,echo=0"});
    if (!m_socat.waitForStarted(5000))
        return false;
    // socat names both ends, then starts its transfer loop
    QByteArray err;
    QElapsedTimer t;
    t.start();
    while (!err.contains("starting data transfer loop") && t.elapsed() < 5000) {
        m_socat.waitForReadyRead(100);
        err += m_socat.readAllStandardError();
    }
    auto it = QRegularExpression("PTY is (/dev/pts/\\d+)").globalMatch(QString::fromLatin1(err));
    m_programPath = it.hasNext() ? it.next().captured(1) : QString();
    m_boardPath = it.hasNext() ? it.next().captured(1) : QString();
    if (m_boardPath.isEmpty())
        return false;
    m_boardFd = ::open(m_boardPath.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    termios tio;
    if (m_boardFd >= 0 && tcgetattr(m_boardFd, &tio) == 0) {
        cfmakeraw(&tio);
        tcsetattr(m_boardFd, TCSANOW, &tio);
    }
    return m_boardFd >= 0;
}

void LarkPtyPair::stop()
{
    if (m_boardFd >= 0)
        ::close(m_boardFd);
    m_boardFd = -1;
    if (m_socat.state() != QProcess::NotRunning) {
        m_socat.kill();
        m_socat.waitForFinished(2000);
    }
}

bool LarkPtyPair::boardWrite(const QByteArray &data)
{
    qint64 done = 0;
    QElapsedTimer t;
    t.start();
    while (done < data.size() && t.elapsed() < 10000) {
        const ssize_t n = ::write(m_boardFd, data.constData() + done, size_t(data.size() - done));
        if (n > 0)
            done += n;
        else if (n < 0 && errno != EAGAIN)
            return false;
        else // the pty buffer is full: let the program read it
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return done == data.size();
}

QByteArray LarkPtyPair::boardReadAtLeast(int n)
{
    QByteArray out;
    char buf[4096];
    QElapsedTimer t;
    t.start();
    for (;;) {
        const ssize_t got = ::read(m_boardFd, buf, sizeof buf);
        if (got > 0)
            out.append(buf, int(got));
        else if (out.size() < n && t.elapsed() < 5000)
            QTest::qWait(5);
        else
            return out;
    }
}
