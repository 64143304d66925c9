#ifndef UPDATEARCHIVE_H
#define UPDATEARCHIVE_H

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QZipReader;

// A downloaded update zip, unpacked over the program's folder.
//
// Entries that would land outside the folder by their stored name (absolute, a ".."
// component, through a link that leads out) and symbolic-link entries are skipped, and
// so is every entry when the stored names cannot be matched to the reader's: the zip
// reader tidies leading "/" and "../" away, so only the stored names tell what the
// archive asked for. Files are overwritten in place (a shorter new file keeps the old
// file's tail, as updates have always done; a running executable, which Linux will
// not open for writing, is replaced by a rename) and take the permissions the archive
// gives them; folders are made as needed.
class UpdateArchive
{
public:
    // index counts from 0 in archive order; name is the stored name of a skipped entry
    // and the tidied one of an unpacked entry
    using Progress = std::function<void(int index, const QString &name, bool skipped)>;

    explicit UpdateArchive(const QString &zipPath);
    ~UpdateArchive();

    bool isReadable() const;
    int count() const;
    // unpacks every entry into targetDir, calling progress after each one; false when
    // the archive cannot be read (nothing is written then)
    bool unpack(const QString &targetDir, const Progress &progress) const;

    // writes a running executable's new version beside it and renames it over the
    // old one; false when the file is not busy or the new one cannot be written
    static bool replaceRunningProgram(const QString &path, const QByteArray &data, QFile::Permissions permissions);

private:
    std::unique_ptr<QZipReader> m_reader;
    QStringList m_rawNames;
};

#endif // UPDATEARCHIVE_H
