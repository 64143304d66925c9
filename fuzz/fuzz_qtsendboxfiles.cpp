// The send box's files in conf/: the single-send history and the multi-send table,
// read from a real file holding the input.
#include "QtSendBoxFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString path =
        QDir::temp().filePath(QString("fuzz_qtsendboxfiles.%1").arg(QCoreApplication::applicationPid()));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 0;
    file.write(reinterpret_cast<const char *>(data), qint64(size));
    file.close();
    QtSendBoxFiles::readHistory(path);
    const QMap<int, QString> table = QtSendBoxFiles::readMultiConfig(path);
    // what the box writes back must read back with the same keys
    QtSendBoxFiles::writeMultiConfig(path, table);
    if (QtSendBoxFiles::readMultiConfig(path).keys() != table.keys())
        abort();
    return 0;
}
