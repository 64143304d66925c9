#include "QtCompactLog.h"

#include <QDir>
#include <QTemporaryFile>

#include <climits>

QtCompactLog::QtCompactLog(int blockBytes, qint64 memoryBytes)
    : m_nBlockBytes(qMax(1, blockBytes))
    , m_nMemoryBytes(memoryBytes)
    , m_nLength(0)
    , m_nStored(0)
{
}

QtCompactLog::~QtCompactLog() = default;

void QtCompactLog::append(const QString &text)
{
    if (text.isEmpty())
        return;
    m_nLength += text.size();
    // A character outside the basic plane may come in two appends; its first half alone
    // would not survive the conversion to UTF-8, so it waits for the second.
    const QString whole = m_strHighSurrogate.isEmpty() ? text : m_strHighSurrogate + text;
    m_strHighSurrogate.clear();
    int take = whole.size();
    if (whole.at(take - 1).isHighSurrogate()) {
        m_strHighSurrogate = whole.right(1);
        --take;
    }
    const QByteArray utf8 = QStringView(whole).left(take).toUtf8();
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
    m_open.resize(0);
    m_nStored += block.size();
    // Blocks go to memory until the bound, then to the file; where the file cannot be
    // made or written, the rest stays in memory after it. Either way the text keeps
    // its order: memory blocks, the file's, memory blocks after the file.
    if (!m_bSpillFailed && (m_spillFile || m_nStored > m_nMemoryBytes) && spill(block)) {
        m_nStored -= block.size();
        return;
    }
    (m_spillFile || m_bSpillFailed ? m_lateBlocks : m_blocks).append(block);
}

bool QtCompactLog::spill(const QByteArray &block)
{
    if (!m_spillFile) {
        // an unusable TMPDIR reads as an empty path, which would put the file in /
        const QString dir = QDir::tempPath();
        m_spillFile.reset(new QTemporaryFile(dir + "/larkTools-log-XXXXXX"));
        if (dir.isEmpty() || !m_spillFile->open()) {
            m_spillFile.reset();
            m_bSpillFailed = true;
            return false;
        }
    }
    if (m_spillFile->write(block) != block.size() || !m_spillFile->flush()) {
        // a full disk: the part that went is cut off again
        m_spillFile->resize(m_nSpilled);
        m_spillFile->seek(m_nSpilled);
        m_bSpillFailed = true;
        return false;
    }
    m_spilledSizes.append(block.size());
    m_nSpilled += block.size();
    return true;
}

QString QtCompactLog::text() const
{
    QByteArray all;
    all.reserve(int(qMin<qint64>(m_nLength * 3, INT_MAX / 2)));
    for (const QByteArray &block : m_blocks)
        all.append(qUncompress(block));
    if (m_spillFile && m_spillFile->flush() && m_spillFile->seek(0)) {
        for (int size : m_spilledSizes)
            all.append(qUncompress(m_spillFile->read(size)));
        m_spillFile->seek(m_nSpilled);
    }
    for (const QByteArray &block : m_lateBlocks)
        all.append(qUncompress(block));
    all.append(m_open);
    // with the size: the QByteArray overload stops at the first NUL, and boards send NULs
    return QString::fromUtf8(all.constData(), all.size()) + m_strHighSurrogate;
}

void QtCompactLog::clear()
{
    m_blocks.clear();
    m_lateBlocks.clear();
    m_bSpillFailed = false;
    m_spillFile.reset();
    m_spilledSizes.clear();
    m_nSpilled = 0;
    m_open.resize(0);
    m_strHighSurrogate.clear();
    m_nLength = 0;
    m_nStored = 0;
}

qint64 QtCompactLog::storedBytes() const
{
    return m_nStored + m_open.capacity() + qint64(m_blocks.size() + m_lateBlocks.size()) * qint64(sizeof(QByteArray));
}
