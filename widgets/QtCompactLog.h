#ifndef QTCOMPACTLOG_H
#define QTCOMPACTLOG_H

#include <QByteArray>
#include <QString>
#include <QVector>

// Text that only grows until it is cleared, kept small for sessions of many hours: it
// is held as UTF-8, and every full block of it is compressed. Received text is
// repetitive (log lines, hex digits), so a day at 115200 baud fits in tens of MB
// where a laid-out text view would need gigabytes.
class QtCompactLog
{
public:
    // bytes of UTF-8 gathered before they are compressed as one block
    static constexpr int DefaultBlockBytes = 1 << 20;

    explicit QtCompactLog(int blockBytes = DefaultBlockBytes);

    void append(const QString &text);
    // the whole text, in order
    QString text() const;
    void clear();

    bool isEmpty() const { return m_nLength == 0; }
    // characters (UTF-16 units) appended since the last clear
    qint64 length() const { return m_nLength; }
    // memory held for the text, compressed blocks and open tail
    qint64 storedBytes() const;

private:
    void seal();

    int m_nBlockBytes;
    qint64 m_nLength;
    qint64 m_nStored;
    QVector<QByteArray> m_blocks;
    QByteArray m_open;
    QString m_strHighSurrogate;
};

#endif // QTCOMPACTLOG_H
