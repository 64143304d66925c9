// A rule file from disk, then a received stream through the rules it gives: the JSON
// reader, the pattern compilers (regular expressions included) and the chunked matcher.
// The input is the file up to the first NUL, then the stream in chunks it chooses.
#include "FuzzInput.h"
#include "ReplyMatcher.h"
#include "ReplyRuleFile.h"

#include <QTextCodec>
#include <cstdint>
#include <cstdlib>
#include <cstring>

// Qt 5.15's JSON reader leaks the first value of a key given twice when that value is an
// object or an array ({"a": {}, "a": 1}). The leak is Qt's, small and once per file read,
// so this target does not report it; everything else still does. Qt has no frame
// pointers: only full unwinding sees the reader in the allocation's stack.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:QJsonDocument::fromJson\n";
}

extern "C" const char *__asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto *nul = static_cast<const uint8_t *>(memchr(data, 0, size));
    const size_t fileSize = nul ? size_t(nul - data) : size;
    QList<ReplyRule> rules;
    QString error;
    if (!ReplyRuleFile::parse(QByteArray(reinterpret_cast<const char *>(data), int(fileSize)), &rules, &error))
        return 0;
    QList<ReplyRule> again;
    if (!ReplyRuleFile::parse(ReplyRuleFile::serialize(rules), &again, &error) || !(again == rules))
        abort();
    ReplyMatcher matcher;
    static QTextCodec *const codecs[2] = {QTextCodec::codecForName("UTF-8"), QTextCodec::codecForName("GB18030")};
    matcher.setRules(rules, codecs[fileSize & 1]);
    FuzzInput input(data + fileSize, size - fileSize);
    QByteArray chunk;
    qint64 now = 0;
    while (input.chunk(chunk))
        for (int rule : matcher.feed(chunk, now += 7))
            if (rule < 0 || rule >= rules.size())
                abort();
    return 0;
}
