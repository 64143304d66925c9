#ifndef BOARDWRITER_H
#define BOARDWRITER_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QtGlobal>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

// the board: writes data, paced when bytesPerSecond > 0; a page that stops reading
// must not hold the writer for ever, so it waits for room at most 100 ms at a time
inline void boardWriter(const QString &path, QByteArray data, int bytesPerSecond, int slice, std::atomic<bool> *stop)
{
    const int fd = ::open(path.toLocal8Bit().constData(), O_WRONLY | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return;
    QElapsedTimer t;
    t.start();
    qint64 done = 0;
    while (done < data.size() && !stop->load()) {
        if (bytesPerSecond > 0) {
            const qint64 due = t.elapsed() * bytesPerSecond / 1000;
            if (done >= due) {
                usleep(500);
                continue;
            }
        }
        const int n = int(qMin<qint64>(slice, data.size() - done));
        const ssize_t w = ::write(fd, data.constData() + done, size_t(n));
        if (w > 0) {
            done += w;
        } else if (w < 0 && errno == EAGAIN) {
            pollfd p{fd, POLLOUT, 0};
            ::poll(&p, 1, 100);
        } else if (w < 0 && errno != EINTR) {
            break;
        }
    }
    ::close(fd);
}

#endif // BOARDWRITER_H
