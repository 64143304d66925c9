#include "UpdateProtocol.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

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
    const QByteArray data = file.readAll();
    const auto u16 = [&data](int pos) { return int(qFromLittleEndian<quint16>(data.constData() + pos)); };
    const auto u32 = [&data](int pos) { return qFromLittleEndian<quint32>(data.constData() + pos); };

    // the end-of-central-directory record sits in the last 22 + 65535 bytes
    int eocd = -1;
    for (int pos = data.size() - 22; pos >= 0 && pos >= data.size() - 22 - 0xffff; --pos) {
        if (u32(pos) == 0x06054b50) {
            eocd = pos;
            break;
        }
    }
    if (eocd < 0)
        return QStringList();

    const int count = u16(eocd + 10);
    qint64 pos = u32(eocd + 16);
    QStringList names;
    for (int i = 0; i < count; ++i) {
        if (pos < 0 || pos + 46 > data.size() || u32(int(pos)) != 0x02014b50)
            return QStringList();
        const int p = int(pos);
        const int nameLen = u16(p + 28);
        const int extraLen = u16(p + 30);
        const int commentLen = u16(p + 32);
        if (p + 46 + nameLen > data.size())
            return QStringList();
        const QByteArray raw = data.mid(p + 46, nameLen);
        // bit 11: the name is UTF-8
        names << ((u16(p + 8) & 0x0800) ? QString::fromUtf8(raw) : QString::fromLocal8Bit(raw));
        pos += 46 + nameLen + extraLen + commentLen;
    }
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
