#ifndef UPDATEZIP_H
#define UPDATEZIP_H

#include <QBuffer>
#include <QList>
#include <QPair>
#include <QStringList>

#include <private/qzipwriter_p.h>

// An update zip as a release is packed: the entries in order, a name ending in "/" a
// folder. Those named in executable get the owner's execute bit, which Qt 5's writer
// stores as a write one: it is set in the entry's central record, the last copy of
// its name, as zip tools do.
inline QByteArray updateZip(const QList<QPair<QString, QByteArray>> &entries, const QStringList &executable = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QZipWriter writer(&buffer);
    for (const auto &entry : entries)
        entry.first.endsWith('/') ? writer.addDirectory(entry.first.chopped(1)) : writer.addFile(entry.first, entry.second);
    writer.close();
    QByteArray zip = buffer.data();
    for (const QString &name : executable)
        zip.data()[zip.lastIndexOf(name.toUtf8()) - 6] |= 0x40;
    return zip;
}

#endif // UPDATEZIP_H
