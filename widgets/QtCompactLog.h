#ifndef QTCOMPACTLOG_H
#define QTCOMPACTLOG_H

#include <QByteArray>
#include <QString>
#include <QVector>

#include <memory>

class QTemporaryFile;

// Text that only grows until it is cleared, kept small for sessions of many hours: it
// is held as UTF-8, and every full block of it is compressed. Received text is
// repetitive (log lines, hex digits), so a day at 115200 baud fits in tens of MB
// where a laid-out text view would need gigabytes. Random bytes shown as hex compress
// far less, so once the compressed blocks held in memory reach a bound, further blocks
// go to a temporary file: memory stays bounded however long the session, and the text
// comes back the same. Where no such file can be written they stay in memory.
class QtCompactLog
{
public:
    // bytes of UTF-8 gathered before they are compressed as one block
    static constexpr int DefaultBlockBytes = 1 << 20;

    // compressed bytes held in memory before further blocks go to the file
    static constexpr qint64 DefaultMemoryBytes = 64 << 20;

    explicit QtCompactLog(int blockBytes = DefaultBlockBytes, qint64 memoryBytes = DefaultMemoryBytes);
    ~QtCompactLog();
    QtCompactLog(const QtCompactLog &) = delete;
    QtCompactLog &operator=(const QtCompactLog &) = delete;

    void append(const QString &text);
    // the whole text, in order
    QString text() const;
    void clear();

    bool isEmpty() const { return m_nLength == 0; }
    // characters (UTF-16 units) appended since the last clear
    qint64 length() const { return m_nLength; }
    // memory held for the text, compressed blocks and open tail
    qint64 storedBytes() const;
    // compressed bytes in the temporary file
    qint64 spilledBytes() const { return m_nSpilled; }

private:
    void seal();
    bool spill(const QByteArray &block);

    int m_nBlockBytes;
    qint64 m_nMemoryBytes;
    qint64 m_nSpilled = 0;
    // blocks after the ones in memory, in order, by their compressed sizes
    std::unique_ptr<QTemporaryFile> m_spillFile;
    QVector<int> m_spilledSizes;
    QVector<QByteArray> m_lateBlocks;
    bool m_bSpillFailed = false;
    qint64 m_nLength;
    qint64 m_nStored;
    QVector<QByteArray> m_blocks;
    QByteArray m_open;
    QString m_strHighSurrogate;
};

#endif // QTCOMPACTLOG_H
