#ifndef UPDATEPROTOCOL_H
#define UPDATEPROTOCOL_H

#include "LarkRelease.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// What the update dialog reads from the update server and from the archive it
// downloads, as plain functions: no widgets, no network, so they can be fed anything.
namespace UpdateProtocol {

// the program's own version, packed one number per byte; a release build stamps it
enum { CurrentVersionValue = LARK_VERSION_VALUE };

struct VersionReply {
    enum Kind {
        Empty,     // no body at all: nothing to say
        Invalid,   // not JSON
        NotObject, // JSON, but not an object
        Object
    };
    Kind kind = Empty;
    QString verNum;
    QString verInfo;
};

// "%1.%2.%3.%4" of the running program
QString currentVersionText();

// Dotted numbers packed one per byte, the last part lowest. Fewer than three parts
// give 0; parts above 255 spill into the next byte, and a fifth part shifts by 32,
// which the host takes modulo 32.
quint32 versionValue(const QString &version);

// The reply of the version check.
VersionReply parseVersionReply(const QByteArray &body);

// The text after "filename=" in a Content-Disposition value. Without "filename=" the
// value is taken from offset 8 on, as the server contract has always been read.
QString fileNameFromDisposition(const QString &disposition);

// The name a download is stored under: only the last path component of what the
// server said, so "../../x.zip" cannot place the file outside the download folder.
QString safeDownloadName(const QString &fileName);

// Entry names exactly as stored in a zip's central directory, in archive order; the
// zip reader tidies leading "/" and "../" away, and those are what must be refused.
// Empty when the file is not a readable zip.
QStringList rawZipEntryNames(const QString &zipPath);

// True for an entry name that would leave the folder it is unpacked into by its own
// text: absolute, a drive or a ".." component.
bool isUnsafeEntryName(const QString &name);

// True when base/relativePath, as far as it exists on disk, stays inside base even
// after following symbolic links (an existing link to outside makes it false).
bool staysInsideDir(const QString &base, const QString &relativePath);

} // namespace UpdateProtocol

#endif // UPDATEPROTOCOL_H
