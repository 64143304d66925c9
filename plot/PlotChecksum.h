#ifndef PLOTCHECKSUM_H
#define PLOTCHECKSUM_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

// The checks a user can put at the end of a frame. CRC-16/CCITT is the "FALSE" variant
// (0x1021, initial 0xFFFF, not reflected), the one found on most serial boards.
class PlotChecksum
{
public:
    enum Type { None, Sum8, Xor8, Crc8, Crc16Modbus, Crc16Ccitt, Crc32 };

    // the names used in definition files, in the order of Type
    static QStringList names();
    // -1 for an unknown name
    static int typeFromName(const QString &name);
    static int size(Type type);
    static quint32 compute(Type type, const uchar *data, int len);
};

#endif // PLOTCHECKSUM_H
