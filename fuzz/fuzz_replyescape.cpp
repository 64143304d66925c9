// What a user types into a reply rule: text with escapes in either codec, and strict
// hex. Whatever parses must come back the same through \xNN escapes of its bytes.
#include "ReplyEscape.h"

#include <QTextCodec>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    static QTextCodec *const codecs[2] = {QTextCodec::codecForName("UTF-8"), QTextCodec::codecForName("GB18030")};
    QTextCodec *codec = codecs[data[0] & 1];
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), int(size - 1));
    QString error;
    for (const QByteArray &bytes : {ReplyEscape::fromText(text, codec, &error), ReplyEscape::fromHex(text, &error)}) {
        static const char digits[] = "0123456789abcdef";
        QString escaped;
        for (const char c : bytes)
            escaped += QLatin1String("\\x") + QLatin1Char(digits[uchar(c) >> 4]) + QLatin1Char(digits[uchar(c) & 15]);
        if (ReplyEscape::fromText(escaped, codec) != bytes)
            abort();
    }
    if (ReplyEscape::fromHex(text, &error).size() > text.size() / 2)
        abort();
    return 0;
}
