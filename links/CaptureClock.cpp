#include "CaptureClock.h"

#include <QDateTime>

namespace {
const int s_headSize = 19; // "yyyy-MM-dd HH:mm:ss"
}

const QByteArray &CaptureClock::text(qint64 msecsSinceEpoch)
{
    // floor division: a clock before 1970 still has milliseconds 0 to 999
    qint64 second = msecsSinceEpoch / 1000;
    int ms = int(msecsSinceEpoch % 1000);
    if (ms < 0) {
        --second;
        ms += 1000;
    }
    if (!m_cached || second != m_second) {
        m_text = QDateTime::fromMSecsSinceEpoch(second * 1000).toString("yyyy-MM-dd HH:mm:ss.zzz").toLatin1();
        // a year beyond four digits changes the width: such a text is made whole each time
        m_cached = m_text.size() == s_headSize + 4;
        if (!m_cached) {
            m_text = QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch).toString("yyyy-MM-dd HH:mm:ss.zzz").toLatin1();
            return m_text;
        }
        m_second = second;
    }
    char *o = m_text.data() + s_headSize + 1;
    o[0] = char('0' + ms / 100);
    o[1] = char('0' + ms / 10 % 10);
    o[2] = char('0' + ms % 10);
    return m_text;
}

const QByteArray &CaptureClock::now()
{
    return text(QDateTime::currentMSecsSinceEpoch());
}
