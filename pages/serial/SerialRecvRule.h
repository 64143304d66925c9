#ifndef SERIALRECVRULE_H
#define SERIALRECVRULE_H

#include <QByteArray>
#include <QString>
#include <QTime>

// The serial page's receive rules, free of any widget: when a chunk is held back
// because it may end inside a multi-byte character, and how a chunk is shown.
class SerialRecvRule
{
public:
    // A chunk whose last byte is above 0x80 may stop inside a GB18030 or UTF-8
    // character. In text display it waits (up to the 50 ms tick) for its tail, but
    // only when nothing else waits already: a second such chunk is shown at once.
    static bool holdChunk(const QByteArray &chunk, bool asciiShown, const QByteArray &waiting);

    // hexadecimal digits with a blank after each byte, or the bytes decoded with the
    // text codec
    static QString displayText(const QByteArray &data, bool hexShown);

    // "[hh:mm:ss.zzz] ASCII >" or "[hh:mm:ss.zzz] HEX >"
    static QString logTag(const QTime &time, bool asciiShown);
};

#endif // SERIALRECVRULE_H
