// The register table's import: a GB18030 comma-separated file into the table's model.
#include "RegisterTableFile.h"

#include <QBuffer>
#include <QStandardItemModel>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    QStandardItemModel model(50, 4);
    RegisterTableFile::read(file, &model);
    return 0;
}
