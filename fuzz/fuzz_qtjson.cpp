// JSON text from the update server through the lenient parser, and what parses back
// through the writer and the parser again.
#include "QtJson.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    bool ok = false;
    const QVariant value = QtJson::parse(text, ok);
    if (ok) {
        const QByteArray again = QtJson::serialize(value, ok);
        if (ok)
            QtJson::parse(QString::fromUtf8(again), ok);
    }
    return 0;
}
