#include "QtCompactLog.h"

#include <climits>

QtCompactLog::QtCompactLog(int blockBytes)
    : m_nBlockBytes(qMax(1, blockBytes))
    , m_nLength(0)
    , m_nStored(0)
{
}

void QtCompactLog::append(const QString &text)
{
    if (text.isEmpty())
        return;
    m_nLength += text.size();
    // A character outside the basic plane may come in two appends; its first half alone
    // would not survive the conversion to UTF-8, so it waits for the second.
    QString whole = m_strHighSurrogate + text;
    m_strHighSurrogate.clear();
    if (whole.at(whole.size() - 1).isHighSurrogate()) {
        m_strHighSurrogate = whole.right(1);
        whole.chop(1);
    }
    const QByteArray utf8 = whole.toUtf8();
    // the open block is reserved once at its full size, so that it never grows past it
    // and emptying it keeps its memory for the next
    if (m_open.capacity() < m_nBlockBytes)
        m_open.reserve(m_nBlockBytes);
    for (int pos = 0; pos < utf8.size();) {
        const int take = qMin(m_nBlockBytes - m_open.size(), utf8.size() - pos);
        m_open.append(utf8.constData() + pos, take);
        pos += take;
        if (m_open.size() == m_nBlockBytes)
            seal();
    }
}

// Blocks are cut at a byte count, so a character may straddle two of them: text()
// joins the bytes before it decodes them.
void QtCompactLog::seal()
{
    // level 1: a third to a tenth of the text already, and fast enough to run on
    // every read (some 40 ms for a megabyte received as hex)
    const QByteArray block = qCompress(m_open, 1);
    m_blocks.append(block);
    m_nStored += block.size();
    m_open.resize(0);
}

QString QtCompactLog::text() const
{
    QByteArray all;
    all.reserve(int(qMin<qint64>(m_nLength * 3, INT_MAX / 2)));
    for (const QByteArray &block : m_blocks)
        all.append(qUncompress(block));
    all.append(m_open);
    // with the size: the QByteArray overload stops at the first NUL, and boards send NULs
    return QString::fromUtf8(all.constData(), all.size()) + m_strHighSurrogate;
}

void QtCompactLog::clear()
{
    m_blocks.clear();
    m_open.resize(0);
    m_strHighSurrogate.clear();
    m_nLength = 0;
    m_nStored = 0;
}

qint64 QtCompactLog::storedBytes() const
{
    return m_nStored + m_open.capacity() + qint64(m_blocks.size()) * qint64(sizeof(QByteArray));
}
