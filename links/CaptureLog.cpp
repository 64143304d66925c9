#include "CaptureLog.h"

#include <QTextCodec>

namespace {
const char s_timeFormat[] = "yyyy-MM-dd HH:mm:ss.zzz";

// the escaped form of a chunk that is ASCII only, without going through a codec
// (every codec used here reads ASCII as itself); false when it is not ASCII
bool escapedAscii(const QByteArray &bytes, QByteArray *out)
{
    static const char hex[] = "0123456789ABCDEF";
    // written through a pointer into room for the worst case: appending byte by byte
    // costs more than all the rest of a capture
    out->resize(bytes.size() * 4);
    char *o = out->data();
    for (char ch : bytes) {
        const uchar c = uchar(ch);
        if (c >= 0x80)
            return false;
        if (c >= 0x20 && c != 0x7F && c != '\\') {
            *o++ = ch;
            continue;
        }
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
    out->resize(int(o - out->data()));
    return true;
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
    QByteArray line = entry.sent ? "TX " : "RX ";
    line += entry.time.toString(s_timeFormat).toLatin1();
    line += " +" + QString::asprintf("%lld.%03lld", entry.sinceStartMs / 1000, entry.sinceStartMs % 1000).toLatin1();
    QByteArray ascii;
    if (codec && escapedAscii(entry.bytes, &ascii))
        return line + " T " + ascii + '\n';
    if (codec) {
        const QString text = codec->toUnicode(entry.bytes);
        if (codec->fromUnicode(text) == entry.bytes)
            return line + " T " + escaped(text) + '\n';
    }
    // "H " then "XX" per byte separated by spaces, written in place for the same
    // reason as the text
    static const char hex[] = "0123456789ABCDEF";
    const int head = line.size();
    line.resize(head + 2 + qMax(0, entry.bytes.size() * 3 - 1) + 2);
    char *o = line.data() + head;
    *o++ = ' ';
    *o++ = 'H';
    for (int i = 0; i < entry.bytes.size(); ++i) {
        const uchar c = uchar(entry.bytes.at(i));
        *o++ = ' ';
        *o++ = hex[c >> 4];
        *o++ = hex[c & 15];
    }
    *o++ = '\n';
    line.resize(int(o - line.data()));
    return line;
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
