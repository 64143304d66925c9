// What the update dialog reads from the server: the version reply, the version text
// in it, the Content-Disposition header, the downloaded archive's entry names and the
// data of every entry as the unpacker inflates it.
#include "UpdateProtocol.h"
#include "UpdateZipIndex.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace UpdateProtocol;
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const VersionReply reply = parseVersionReply(bytes);
    versionValue(reply.verNum);
    versionValue(QString::fromLatin1(bytes));

    const QString name = safeDownloadName(fileNameFromDisposition(QString::fromLatin1(bytes)));
    if (name.contains('/') || name.contains('\\') || name == "..")
        abort();

    static const QString path =
        QDir::temp().filePath(QString("fuzz_updateprotocol.%1.zip").arg(QCoreApplication::applicationPid()));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.write(bytes);
        file.close();
        for (const QString &entry : rawZipEntryNames(path))
            isUnsafeEntryName(entry);
    }
    // a lying entry must be refused, never inflated past the size it states
    UpdateZipIndex index;
    if (index.read(bytes)) {
        for (int k = 0; k < index.entries().size(); ++k) {
            QByteArray out;
            if (index.data(k, &out) && out.size() != int(index.entries().at(k).size))
                abort();
        }
    }
    return 0;
}
