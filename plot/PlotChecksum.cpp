#include "PlotChecksum.h"

#include <array>

namespace {
template <typename T, typename F>
std::array<T, 256> makeTable(F step)
{
    std::array<T, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = step(i);
    return table;
}

const auto s_crc8 = makeTable<quint8>([](unsigned i) {
    quint8 c = quint8(i);
    for (int k = 0; k < 8; ++k)
        c = quint8(c & 0x80 ? (c << 1) ^ 0x07 : c << 1);
    return c;
});
const auto s_modbus = makeTable<quint16>([](unsigned i) {
    quint16 c = quint16(i);
    for (int k = 0; k < 8; ++k)
        c = quint16(c & 1 ? (c >> 1) ^ 0xA001 : c >> 1);
    return c;
});
const auto s_ccitt = makeTable<quint16>([](unsigned i) {
    quint16 c = quint16(i << 8);
    for (int k = 0; k < 8; ++k)
        c = quint16(c & 0x8000 ? (c << 1) ^ 0x1021 : c << 1);
    return c;
});
const auto s_crc32 = makeTable<quint32>([](unsigned i) {
    quint32 c = i;
    for (int k = 0; k < 8; ++k)
        c = c & 1 ? (c >> 1) ^ 0xEDB88320u : c >> 1;
    return c;
});
}

QStringList PlotChecksum::names()
{
    return {"none", "sum8", "xor8", "crc8", "crc16-modbus", "crc16-ccitt", "crc32"};
}

int PlotChecksum::typeFromName(const QString &name)
{
    return names().indexOf(name.trimmed().toLower());
}

int PlotChecksum::size(Type type)
{
    switch (type) {
    case None:
        return 0;
    case Sum8:
    case Xor8:
    case Crc8:
        return 1;
    case Crc16Modbus:
    case Crc16Ccitt:
        return 2;
    case Crc32:
        return 4;
    }
    return 0;
}

quint32 PlotChecksum::compute(Type type, const uchar *data, int len)
{
    switch (type) {
    case None:
        return 0;
    case Sum8: {
        quint8 s = 0;
        for (int i = 0; i < len; ++i)
            s = quint8(s + data[i]);
        return s;
    }
    case Xor8: {
        quint8 s = 0;
        for (int i = 0; i < len; ++i)
            s ^= data[i];
        return s;
    }
    case Crc8: {
        quint8 c = 0;
        for (int i = 0; i < len; ++i)
            c = s_crc8[c ^ data[i]];
        return c;
    }
    case Crc16Modbus: {
        quint16 c = 0xFFFF;
        for (int i = 0; i < len; ++i)
            c = quint16((c >> 8) ^ s_modbus[(c ^ data[i]) & 0xFF]);
        return c;
    }
    case Crc16Ccitt: {
        quint16 c = 0xFFFF;
        for (int i = 0; i < len; ++i)
            c = quint16((c << 8) ^ s_ccitt[((c >> 8) ^ data[i]) & 0xFF]);
        return c;
    }
    case Crc32: {
        quint32 c = 0xFFFFFFFFu;
        for (int i = 0; i < len; ++i)
            c = (c >> 8) ^ s_crc32[(c ^ data[i]) & 0xFF];
        return ~c;
    }
    }
    return 0;
}
