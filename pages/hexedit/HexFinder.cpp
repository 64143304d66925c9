#include "HexFinder.h"

#include <QTextCodec>

qint64 HexFinder::m_nChunkSize = 1 << 20;

QByteArray HexFinder::pattern(const QString &text, Mode mode, QString *error)
{
    error->clear();
    if (text.isEmpty()) {
        *error = "请输入要查找的内容";
        return QByteArray();
    }
    if (mode == Utf8)
        return text.toUtf8();
    if (mode == Gb18030)
        return QTextCodec::codecForName("GB18030")->fromUnicode(text);
    // hex: pairs of digits, spaces anywhere between bytes
    QByteArray bytes;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts)) {
        QString digits = word;
        if (digits.startsWith("0x", Qt::CaseInsensitive))
            digits = digits.mid(2);
        bool ok = digits.size() % 2 == 0 && !digits.isEmpty();
        for (int i = 0; ok && i < digits.size(); i += 2) {
            const uint value = digits.midRef(i, 2).toUInt(&ok, 16);
            ok = ok && digits.at(i) != '+' && digits.at(i) != '-';
            bytes.append(char(value));
        }
        if (!ok) {
            *error = QString("无效的十六进制: %1").arg(word);
            return QByteArray();
        }
    }
    if (bytes.isEmpty())
        *error = "请输入要查找的内容";
    return bytes;
}

qint64 HexFinder::find(const QByteArray &pattern, qint64 size, const Reader &reader, qint64 from, bool backwards,
                       bool wrap)
{
    if (pattern.isEmpty() || pattern.size() > size)
        return -1;
    from = qBound<qint64>(0, from, size);
    qint64 at = backwards ? scan(pattern, size, reader, 0, from, true) : scan(pattern, size, reader, from, size, false);
    if (at < 0 && wrap)
        at = backwards ? scan(pattern, size, reader, from, size, true) : scan(pattern, size, reader, 0, from, false);
    return at;
}

qint64 HexFinder::scan(const QByteArray &pattern, qint64 size, const Reader &reader, qint64 begin, qint64 end,
                       bool backwards)
{
    // each chunk holds the starts [start, start + step) and the pattern's length - 1
    // bytes after them, so a match across the chunk border is seen whole
    const qint64 tail = pattern.size() - 1;
    end = qMin(end, size - tail);
    const qint64 step = qMax<qint64>(m_nChunkSize, 1);
    QByteArray chunk;
    for (qint64 i = 0; begin + i * step < end; ++i) {
        const qint64 start = backwards ? qMax(begin, end - (i + 1) * step) : begin + i * step;
        const qint64 starts = qMin(end, backwards ? end - i * step : start + step) - start;
        chunk.resize(int(starts + tail));
        if (!reader(start, chunk.data(), chunk.size()))
            return -1;
        const int at = backwards ? chunk.lastIndexOf(pattern, int(starts - 1)) : chunk.indexOf(pattern);
        if (at >= 0 && at < starts)
            return start + at;
    }
    return -1;
}
