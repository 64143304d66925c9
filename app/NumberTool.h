#ifndef NUMBERTOOL_H
#define NUMBERTOOL_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// Stateless conversions between numbers, byte arrays, hexadecimal text and readable
// sizes, plus the CRC-16/MODBUS of the camera link. Several names do not say what the
// function does (the "BigEndian" float writer writes least significant byte first);
// the names are kept because both board links are defined in terms of them.
// Conversions from bytes return 0 when the array has the wrong size.
class NumberTool
{
public:
    static QByteArray m_newLine; // "\r\n" once the serial page exists

    static constexpr bool isBigEndian() { return false; }

    static QByteArray baFromFloatBigEndian(float value);
    static QByteArray baFromFloatSmallEndian(float value);
    static QByteArray baFromInt32SmallEndian(int value);
    static QByteArray baFromInt32BigEndian(int value);
    static QByteArray baFromUint32BigEndian(unsigned int value);
    static QByteArray baFromUint16BigEndian(unsigned short value);
    static QByteArray changeEndian(const QByteArray &ba);

    static float floatFromByteArray(const QByteArray &ba);
    static float floatFromSmallEndian(const QByteArray &ba);
    static int int32FromByteArray(const QByteArray &ba);
    static unsigned int uint32FromByteArray(const QByteArray &ba);
    static unsigned int uint32FromByteArray(const QByteArray &ba, int n);
    static unsigned long long uint64FromByteArray(const QByteArray &ba);
    static unsigned short uint16FromByteArray(const QByteArray &ba);
    static float floatFromHL(unsigned short high, unsigned short low);

    static int getCrcData(const QByteArray &data);
    static QByteArray getCRCData(const QByteArray &data);

    static QString size(long long bytes);
    static QString speed(double bytesPerSecond);
    static QString timeFormat(int seconds);

    static char convertHexChar(char ch);
    static QByteArray hexStrToByteArray(const QString &str);
    static QString byteToHex(const QByteArray &data);

    static bool IsIpAddr(const QString &ip);
    static QStringList GetHostIpAddress();

private:
    static const unsigned short s_nCRCTableAbs[16];
};

#endif // NUMBERTOOL_H
