#include "UpdateProtocol.h"

#include "UpdateZipIndex.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace UpdateProtocol {

QString currentVersionText()
{
    return QString("%1.%2.%3.%4").arg(LARK_VERSION_1).arg(LARK_VERSION_2).arg(LARK_VERSION_3).arg(LARK_VERSION_4);
}

quint32 versionValue(const QString &version)
{
    const QStringList parts = version.split(".", Qt::KeepEmptyParts);
    const int n = parts.size();
    if (n < 3)
        return 0;
    quint32 value = 0;
    for (int i = 0; i < n; ++i) {
        // a 32-bit shift on x86 only looks at the low five bits of the count
        const int shift = (8 * (n - 1 - i)) & 31;
        value |= quint32(parts.at(i).toInt()) << shift;
    }
    return value;
}

VersionReply parseVersionReply(const QByteArray &body)
{
    VersionReply reply;
    if (body.isEmpty())
        return reply;
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        reply.kind = VersionReply::Invalid;
        return reply;
    }
    if (!doc.isObject()) {
        reply.kind = VersionReply::NotObject;
        return reply;
    }
    const QJsonObject obj = doc.object();
    reply.kind = VersionReply::Object;
    reply.verNum = obj.value("verNum").toString();
    reply.verInfo = obj.value("verInfo").toString();
    return reply;
}

QString fileNameFromDisposition(const QString &disposition)
{
    const int pos = disposition.indexOf("filename=");
    return disposition.mid(pos + 9);
}

QString safeDownloadName(const QString &fileName)
{
    QString name = fileName;
    const int slash = qMax(name.lastIndexOf('/'), name.lastIndexOf('\\'));
    if (slash >= 0)
        name = name.mid(slash + 1);
    if (name == "." || name == "..")
        name.clear();
    return name;
}

QStringList rawZipEntryNames(const QString &zipPath)
{
    QFile file(zipPath);
    if (!file.open(QIODevice::ReadOnly))
        return QStringList();
    UpdateZipIndex index;
    if (!index.read(file.readAll()))
        return QStringList();
    QStringList names;
    for (const UpdateZipIndex::Entry &entry : index.entries())
        names << entry.name;
    return names;
}

bool isUnsafeEntryName(const QString &name)
{
    QString path = name;
    path.replace('\\', '/');
    if (path.startsWith('/') || (path.size() >= 2 && path.at(1) == ':'))
        return true;
    const QStringList parts = path.split('/');
    return parts.contains("..");
}

static bool isInside(const QString &canonicalBase, const QString &path)
{
    return path == canonicalBase || path.startsWith(canonicalBase + "/");
}

bool staysInsideDir(const QString &base, const QString &relativePath)
{
    const QString canonicalBase = QFileInfo(base).canonicalFilePath();
    if (canonicalBase.isEmpty())
        return false;
    QString path = QDir::cleanPath(base);
    const QStringList parts = relativePath.split('/', Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        path += "/" + part;
        const QFileInfo info(path);
        if (info.isSymLink()) {
            // a link whose target is missing cannot be checked: it would be created
            // wherever it points
            const QString target = info.canonicalFilePath();
            if (target.isEmpty() || !isInside(canonicalBase, target))
                return false;
        } else if (!info.exists()) {
            break; // nothing below a missing component can be a link yet
        }
    }
    return true;
}

} // namespace UpdateProtocol
