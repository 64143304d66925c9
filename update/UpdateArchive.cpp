#include "UpdateArchive.h"

#include "UpdateProtocol.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include <private/qzipreader_p.h>

UpdateArchive::UpdateArchive(const QString &zipPath)
    : m_reader(new QZipReader(zipPath))
    , m_rawNames(UpdateProtocol::rawZipEntryNames(zipPath))
{
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

bool UpdateArchive::unpack(const QString &targetDir, const Progress &progress) const
{
    if (!isReadable())
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
            // looked up by the stored name; the tidied one may not match it
            QByteArray data = m_reader->fileData(rawName);
            if (data.isEmpty() && entry.size > 0)
                data = m_reader->fileData(entry.filePath);
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
