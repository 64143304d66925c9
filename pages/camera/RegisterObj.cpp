#include "RegisterObj.h"

RegisterObj::RegisterObj(int id)
    : m_id(id)
    , m_addr(0)
    , m_value(0)
{
}

QString RegisterObj::strAddr(int base) const
{
    return QString("%1").arg(m_addr, 2, base, QChar('0')).toUpper();
}

QString RegisterObj::strValue(int base) const
{
    const qlonglong wide = m_value;
    // decimal keeps its minus sign; other bases show the 64-bit two's complement
    if (base == 10)
        return QString("%1").arg(wide, 2, base, QChar('0')).toUpper();
    return QString("%1").arg(qulonglong(wide), 2, base, QChar('0')).toUpper();
}
