#ifndef HEXOFFSET_H
#define HEXOFFSET_H

#include <QString>

// The offsets a user types to jump in the editor: decimal ("4096") or hexadecimal
// ("0x1000"), absolute or, with a leading "+" or "-", relative to the cursor.
class HexOffset
{
public:
    // the absolute offset, or -1 when text is no offset or lands outside 0 to size-1
    // (an empty file has only offset 0)
    static qint64 parse(const QString &text, qint64 cursor, qint64 size);
};

#endif // HEXOFFSET_H
