#ifndef UPDATEARCHIVE_H
#define UPDATEARCHIVE_H

#include "UpdateZipIndex.h"

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
//
// Nothing is written until the whole archive has been judged sound for the folder:
// its directory holds together, it has at most MaximumEntries entries, they unpack to
// at most MaximumUnpackedBytes and to no more than the folder's disk has free, and
// every entry inflates to exactly its stated size and CRC. An archive that fails any
// of these leaves the folder as it was, with the reason in errorString().
class UpdateArchive
{
public:
    // a release holds a few dozen files of a few megabytes; these leave room for
    // growth and none for an archive made to exhaust the disk or the window
    static constexpr int MaximumEntries = 10000;
    static constexpr qint64 MaximumUnpackedBytes = qint64(1) << 30;

    // index counts from 0 in archive order; name is the stored name of a skipped entry
    // and the tidied one of an unpacked entry
    using Progress = std::function<void(int index, const QString &name, bool skipped)>;

    explicit UpdateArchive(const QString &zipPath);
    ~UpdateArchive();

    bool isReadable() const;
    int count() const;
    // Why the archive must not be unpacked into targetDir, for the user; empty when
    // it may be.
    QString refusal(const QString &targetDir) const;
    // unpacks every entry into targetDir, calling progress after each one; false when
    // the archive cannot be read or is refused (nothing is written then)
    bool unpack(const QString &targetDir, const Progress &progress) const;
    // why the last unpack wrote nothing
    QString errorString() const { return m_error; }

    // writes a running executable's new version beside it and renames it over the
    // old one; false when the file is not busy or the new one cannot be written
    static bool replaceRunningProgram(const QString &path, const QByteArray &data, QFile::Permissions permissions);

private:
    std::unique_ptr<QZipReader> m_reader;
    QStringList m_rawNames;
    QFile m_file;
    UpdateZipIndex m_index;
    bool m_bIndexed = false;
    mutable QString m_error;
};

#endif // UPDATEARCHIVE_H
