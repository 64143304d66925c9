#include "HexOffset.h"

qint64 HexOffset::parse(const QString &text, qint64 cursor, qint64 size)
{
    QString digits = text.trimmed();
    int sign = 0;
    if (digits.startsWith('+') || digits.startsWith('-')) {
        sign = digits.startsWith('-') ? -1 : 1;
        digits = digits.mid(1).trimmed();
    }
    int base = 10;
    if (digits.startsWith("0x", Qt::CaseInsensitive)) {
        base = 16;
        digits = digits.mid(2);
    }
    bool ok = false;
    // toULongLong takes a sign of its own, which would make "+-5" valid
    const qint64 value = digits.startsWith('+') || digits.startsWith('-') ? -1 : qint64(digits.toULongLong(&ok, base));
    if (!ok || value < 0)
        return -1;
    const qint64 offset = sign == 0 ? value : cursor + sign * value;
    return offset >= 0 && offset < qMax<qint64>(size, 1) ? offset : -1;
}
