#ifndef HEXFINDER_H
#define HEXFINDER_H

#include <QByteArray>
#include <QString>

#include <functional>

// Finding bytes in the editor's content: the pattern from what the user typed (hex
// bytes, or text in UTF-8 or GB18030), and the search itself over a reader of the
// content, in chunks, so a file far larger than memory is searched without holding it.
class HexFinder
{
public:
    enum Mode { Hex = 0, Utf8 = 1, Gb18030 = 2 };

    using Reader = std::function<bool(qint64 offset, char *buffer, qint64 length)>;

    // the bytes to look for; an empty array with *error set when the text is no pattern
    static QByteArray pattern(const QString &text, Mode mode, QString *error);

    // forwards: the first match starting at or after from; backwards: the last one
    // starting before from. With wrap, the search goes on from the other end up to
    // from. -1 when there is none (or the reader fails).
    static qint64 find(const QByteArray &pattern, qint64 size, const Reader &reader, qint64 from, bool backwards,
                       bool wrap);

    static qint64 m_nChunkSize;

private:
    // the first (or last) match whose start lies in [begin, end)
    static qint64 scan(const QByteArray &pattern, qint64 size, const Reader &reader, qint64 begin, qint64 end,
                       bool backwards);
};

#endif // HEXFINDER_H
