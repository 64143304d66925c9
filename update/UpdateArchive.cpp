#include "UpdateArchive.h"

#include "UpdateProtocol.h"

#include <QDir>
#include <QFile>
#include <QStorageInfo>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

#include <private/qzipreader_p.h>

UpdateArchive::UpdateArchive(const QString &zipPath)
    : m_reader(new QZipReader(zipPath))
    , m_file(zipPath)
{
    // mapped, not read: the archive is judged and unpacked straight from the page cache
    if (m_file.open(QIODevice::ReadOnly) && m_file.size() > 0 && m_file.size() < INT_MAX) {
        if (const uchar *bytes = m_file.map(0, m_file.size())) {
            m_bIndexed = m_index.read(QByteArray::fromRawData(reinterpret_cast<const char *>(bytes), int(m_file.size())));
            for (const UpdateZipIndex::Entry &entry : m_index.entries())
                m_rawNames << entry.name;
        }
    }
}

UpdateArchive::~UpdateArchive() = default;

bool UpdateArchive::isReadable() const
{
    return m_reader->exists() && m_reader->isReadable();
}

int UpdateArchive::count() const
{
    return isReadable() ? m_reader->count() : 0;
}

static QString megabytes(qint64 bytes)
{
    return QString::number(bytes / 1048576.0, 'f', 1);
}

QString UpdateArchive::refusal(const QString &targetDir) const
{
    if (!m_bIndexed)
        return QString("升级文件已损坏(%1)").arg(m_index.error().isEmpty() ? "无法读取" : m_index.error());
    const QVector<UpdateZipIndex::Entry> &entries = m_index.entries();
    if (entries.size() > MaximumEntries)
        return QString("升级文件条目过多(%1个，最多%2个)").arg(entries.size()).arg(MaximumEntries);
    qint64 total = 0;
    for (const UpdateZipIndex::Entry &entry : entries)
        total += entry.size;
    if (total > MaximumUnpackedBytes)
        return QString("升级文件解压后过大(%1MB，最多%2MB)").arg(megabytes(total), megabytes(MaximumUnpackedBytes));
    // counted whole although files are overwritten in place: a disk that fills up
    // half way through would leave a program that is neither version
    const qint64 available = QStorageInfo(targetDir).bytesAvailable();
    if (available >= 0 && total > available)
        return QString("磁盘空间不足(解压需%1MB，可用%2MB)").arg(megabytes(total), megabytes(available));
    // every entry inflated once before anything is written: a bad one at the end must
    // not find the first ones already over the old program
    QByteArray data;
    for (int k = 0; k < entries.size(); ++k) {
        if (!m_index.data(k, &data))
            return QString("升级文件已损坏(%1)").arg(entries.at(k).name);
    }
    return QString();
}

bool UpdateArchive::unpack(const QString &targetDir, const Progress &progress) const
{
    if (!isReadable())
        return false;
    m_error = refusal(targetDir);
    if (!m_error.isEmpty())
        return false;
    const QString base = targetDir + "/";
    const QVector<QZipReader::FileInfo> entries = m_reader->fileInfoList();
    for (int k = 0; k < entries.size(); ++k) {
        const QZipReader::FileInfo &entry = entries.at(k);
        const QString rawName = k < m_rawNames.size() ? m_rawNames.at(k) : entry.filePath;
        const bool unsafe = m_rawNames.size() != entries.size() || UpdateProtocol::isUnsafeEntryName(rawName)
                            || UpdateProtocol::isUnsafeEntryName(entry.filePath)
                            || !UpdateProtocol::staysInsideDir(targetDir, entry.filePath);
        if (unsafe || entry.isSymLink) {
            if (progress)
                progress(k, rawName, true);
            continue;
        }
        if (entry.isDir) {
            QDir().mkpath(base + entry.filePath);
        } else if (entry.isFile) {
            // by position, from the index judged above: the reader would look it up by
            // the tidied name and trust the stated size
            QByteArray data;
            m_index.data(k, &data);
            QFile file(base + entry.filePath);
            if (file.open(QIODevice::ReadWrite)) {
                file.write(data);
                file.setPermissions(entry.permissions);
                file.close();
            } else {
                replaceRunningProgram(base + entry.filePath, data, entry.permissions);
            }
        }
        if (progress)
            progress(k, entry.filePath, false);
    }
    return true;
}

bool UpdateArchive::replaceRunningProgram(const QString &path, const QByteArray &data, QFile::Permissions permissions)
{
    // Linux refuses to write an executable that is running (ETXTBSY), and this
    // program is running. The new file takes the name instead; the running one lives
    // on, unlinked, until it quits, and the restart starts the new one. Any other
    // file that cannot be opened is passed over, as always.
    const QByteArray target = QFile::encodeName(path);
    const int fd = ::open(target.constData(), O_RDWR);
    const bool busy = fd < 0 && errno == ETXTBSY;
    if (fd >= 0)
        ::close(fd);
    if (!busy)
        return false;

    QFile file(path + ".new");
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const bool written = file.write(data) == data.size() && file.setPermissions(permissions);
    file.close();
    if (written && ::rename(QFile::encodeName(file.fileName()).constData(), target.constData()) == 0)
        return true;
    file.remove();
    return false;
}
