#include "CaptureLog.h"

#include <QTextCodec>

#include <cstring>

namespace {
const char s_timeFormat[] = "yyyy-MM-dd HH:mm:ss.zzz";

// what escapedAscii does with each byte value
enum ByteKind : unsigned char { Plain, Escape, NotAscii };
struct ByteKinds {
    unsigned char kind[256];
    constexpr ByteKinds() : kind()
    {
        for (int c = 0; c < 256; ++c)
            kind[c] = c >= 0x80 ? NotAscii : (c < 0x20 || c == 0x7F || c == '\\') ? Escape : Plain;
    }
};
constexpr ByteKinds s_byteKinds;

// " XX" for each byte value, padded to four characters
struct HexTriples {
    char text[256][4];
    constexpr HexTriples() : text()
    {
        const char hex[] = "0123456789ABCDEF";
        for (int c = 0; c < 256; ++c) {
            text[c][0] = ' ';
            text[c][1] = hex[c >> 4];
            text[c][2] = hex[c & 15];
            text[c][3] = ' ';
        }
    }
};
constexpr HexTriples s_hexTriples;

// Writes the escaped form of a chunk that is ASCII only to `o`, which has room for
// four characters per byte, without going through a codec (every codec used here
// reads ASCII as itself); the end of what it wrote, or null when the chunk is not
// ASCII. Runs of plain bytes are copied whole: byte by byte appending cost more than
// all the rest of a capture.
char *escapedAscii(const QByteArray &bytes, char *o)
{
    static const char hex[] = "0123456789ABCDEF";
    const uchar *p = reinterpret_cast<const uchar *>(bytes.constData());
    const uchar *const end = p + bytes.size();
    while (p < end) {
        const uchar *run = p;
        while (p < end && s_byteKinds.kind[*p] == Plain)
            ++p;
        std::memcpy(o, run, size_t(p - run));
        o += p - run;
        if (p == end)
            break;
        const uchar c = *p++;
        if (s_byteKinds.kind[c] == NotAscii)
            return nullptr;
        *o++ = '\\';
        if (c == '\\')
            *o++ = '\\';
        else if (c == '\r')
            *o++ = 'r';
        else if (c == '\n')
            *o++ = 'n';
        else if (c == '\t')
            *o++ = 't';
        else {
            *o++ = 'x';
            *o++ = hex[c >> 4];
            *o++ = hex[c & 15];
        }
    }
    return o;
}

// the decimal digits of n >= 0 at o; the end
char *decimal(qint64 n, char *o)
{
    char digits[20];
    int k = 0;
    do {
        digits[k++] = char('0' + n % 10);
        n /= 10;
    } while (n > 0);
    while (k > 0)
        *o++ = digits[--k];
    return o;
}

QByteArray escaped(const QString &text)
{
    QString out;
    out.reserve(text.size() + 8);
    for (QChar c : text) {
        const ushort u = c.unicode();
        if (u == '\\')
            out += QLatin1String("\\\\");
        else if (u == '\r')
            out += QLatin1String("\\r");
        else if (u == '\n')
            out += QLatin1String("\\n");
        else if (u == '\t')
            out += QLatin1String("\\t");
        else if (u < 0x20 || u == 0x7F)
            out += QString::asprintf("\\x%02X", u);
        else
            out += c;
    }
    return out.toUtf8();
}

bool unescaped(const QString &text, QString *out)
{
    out->clear();
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != '\\') {
            *out += c;
            continue;
        }
        if (++i >= text.size())
            return false;
        switch (text.at(i).unicode()) {
        case '\\': *out += '\\'; break;
        case 'r': *out += '\r'; break;
        case 'n': *out += '\n'; break;
        case 't': *out += '\t'; break;
        case 'x': {
            bool ok = false;
            const QString hex = text.mid(i + 1, 2);
            const ushort v = hex.toUShort(&ok, 16);
            if (!ok || hex.size() != 2)
                return false;
            *out += QChar(v);
            i += 2;
            break;
        }
        default: return false;
        }
    }
    return true;
}
} // namespace

QByteArray CaptureLog::formatLine(const Entry &entry, QTextCodec *codec)
{
    QByteArray line;
    appendLine(&line, entry.sent, entry.time.toString(s_timeFormat).toLatin1(), entry.sinceStartMs, entry.bytes, codec);
    return line;
}

void CaptureLog::appendLine(QByteArray *out, bool sent, const QByteArray &timeText, qint64 sinceStartMs,
                            const QByteArray &bytes, QTextCodec *codec)
{
    // everything is written through a pointer into room for the longest form (four
    // characters per byte in text, three in hexadecimal), then cut to what was used
    const int at = out->size();
    const int room = 3 + timeText.size() + 2 + 24 + 3 + 4 * bytes.size() + 1;
    out->resize(at + room);
    char *const head = out->data() + at;
    char *o = head;
    std::memcpy(o, sent ? "TX " : "RX ", 3);
    o += 3;
    std::memcpy(o, timeText.constData(), size_t(timeText.size()));
    o += timeText.size();
    *o++ = ' ';
    *o++ = '+';
    if (sinceStartMs >= 0) {
        o = decimal(sinceStartMs / 1000, o);
        const int ms = int(sinceStartMs % 1000);
        *o++ = '.';
        *o++ = char('0' + ms / 100);
        *o++ = char('0' + ms / 10 % 10);
        *o++ = char('0' + ms % 10);
    } else {
        // what printf makes of a negative count, whatever that is worth
        const QByteArray s = QString::asprintf("%lld.%03lld", sinceStartMs / 1000, sinceStartMs % 1000).toLatin1();
        std::memcpy(o, s.constData(), size_t(qMin(s.size(), 24)));
        o += qMin(s.size(), 24);
    }
    if (codec) {
        std::memcpy(o, " T ", 3);
        if (char *end = escapedAscii(bytes, o + 3)) {
            *end++ = '\n';
            out->resize(at + int(end - head));
            return;
        }
        const QString text = codec->toUnicode(bytes);
        if (codec->fromUnicode(text) == bytes) {
            out->resize(at + int(o - head) + 3);
            *out += escaped(text);
            *out += '\n';
            return;
        }
    }
    // "H " then "XX" per byte separated by spaces; each byte's " XX" is copied as four
    // characters, the fourth overwritten by the next (the room has four per byte)
    *o++ = ' ';
    *o++ = 'H';
    for (const char ch : bytes) {
        std::memcpy(o, s_hexTriples.text[uchar(ch)], 4);
        o += 3;
    }
    *o++ = '\n';
    out->resize(at + int(o - head));
}

bool CaptureLog::parseLine(const QByteArray &rawLine, QTextCodec *codec, Entry *entry)
{
    QByteArray line = rawLine;
    if (line.endsWith('\n'))
        line.chop(1);
    // "RX " date " " time " +" seconds " " kind " " payload
    const QList<QByteArray> head = line.left(64).split(' ');
    if (head.size() < 5 || (head.at(0) != "RX" && head.at(0) != "TX") || !head.at(3).startsWith('+'))
        return false;
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(head.at(1) + ' ' + head.at(2)), s_timeFormat);
    const QList<QByteArray> secs = head.at(3).mid(1).split('.');
    bool okS = false, okMs = false;
    const qint64 s = secs.value(0).toLongLong(&okS);
    const qint64 ms = secs.value(1).toLongLong(&okMs);
    const QByteArray kind = head.at(4);
    if (!time.isValid() || !okS || !okMs || secs.size() != 2 || (kind != "T" && kind != "H"))
        return false;
    const int payloadAt = head.at(0).size() + head.at(1).size() + head.at(2).size() + head.at(3).size()
                          + kind.size() + 5;
    const QByteArray payload = line.mid(payloadAt);
    Entry e;
    e.sent = head.at(0) == "TX";
    e.time = time;
    e.sinceStartMs = s * 1000 + ms;
    if (kind == "H") {
        for (const QByteArray &hex : payload.split(' ')) {
            if (hex.isEmpty())
                continue;
            bool ok = false;
            const uint v = hex.toUInt(&ok, 16);
            if (!ok || hex.size() != 2)
                return false;
            e.bytes.append(char(v));
        }
    } else {
        QString text;
        if (!codec || !unescaped(QString::fromUtf8(payload), &text))
            return false;
        e.bytes = codec->fromUnicode(text);
    }
    *entry = e;
    return true;
}
