#ifndef CAPTURECLOCK_H
#define CAPTURECLOCK_H

#include <QByteArray>

// The local wall time of a capture log line, "yyyy-MM-dd HH:mm:ss.zzz", exactly as
// QDateTime::currentDateTime().toString() gives it.
//
// Going through QDateTime for every chunk asked the time zone rules and the
// formatter each time, a large part of what a text log cost. Local time can only
// jump at a whole second of the system clock, so the date and the time of day are
// worked out once per second and the milliseconds are written beside them.
class CaptureClock
{
public:
    // the text for `msecsSinceEpoch`; valid until the next call
    const QByteArray &text(qint64 msecsSinceEpoch);
    const QByteArray &now();

private:
    qint64 m_second = 0;
    bool m_cached = false;
    QByteArray m_text;
};

#endif // CAPTURECLOCK_H
