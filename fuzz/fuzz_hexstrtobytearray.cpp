// Hexadecimal text typed or loaded by the user, as Latin-1 and as UTF-16 text.
#include "NumberTool.h"

#include <QString>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString latin = QString::fromLatin1(reinterpret_cast<const char *>(data), int(size));
    const QString wide = QString::fromUtf16(reinterpret_cast<const char16_t *>(data), int(size / 2));
    for (const QString &text : {latin, wide}) {
        const QByteArray bytes = NumberTool::hexStrToByteArray(text);
        if (bytes.size() > text.size() / 2)
            abort();
        NumberTool::hexStrToByteArray(NumberTool::byteToHex(bytes));
    }
    return 0;
}
