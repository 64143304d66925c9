#ifndef PLOTFRAMEDEFINITION_H
#define PLOTFRAMEDEFINITION_H

#include "PlotChecksum.h"

#include <QByteArray>
#include <QString>
#include <QVector>

// A user's description of a binary frame, kept as a small JSON file: where a frame
// starts, how long it is, how it is checked and where its values lie. Offsets count
// from the first byte of the start marker.
class PlotFrameDefinition
{
public:
    enum LengthMode { FixedLength, LengthField, UntilEndMarker };
    // what the number in the length field counts
    enum LengthCounts { CountsFrame, CountsAfterField, CountsPayload };
    enum ValueType { U8, I8, U16, I16, U32, I32, F32, F64 };

    struct Channel {
        QString name;
        int offset = 0;
        ValueType type = U8;
        bool bigEndian = false;
        double scale = 1;
        double add = 0; // value = raw * scale + add
    };

    static constexpr int MaxChannels = 16;
    static constexpr int MaxFrameLength = 65536;

    QString name;
    QByteArray start;
    QByteArray end;
    LengthMode lengthMode = FixedLength;
    int fixedLength = 0;
    int lengthOffset = 0;
    int lengthSize = 1;
    bool lengthBigEndian = false;
    LengthCounts lengthCounts = CountsFrame;
    int maxLength = 1024;
    PlotChecksum::Type checksum = PlotChecksum::None;
    int checkFrom = 0;   // first byte the check covers
    int checkAt = -1;    // where the check stands; -1: last, before the end marker
    bool checkBigEndian = false;
    QVector<Channel> channels;

    static QStringList typeNames();
    static int typeSize(ValueType type);

    // an empty text when the definition can be used; otherwise what is wrong, in one
    // sentence a user can act on
    QString validate() const;

    QByteArray toJson() const;
    static bool fromJson(const QByteArray &json, PlotFrameDefinition *out, QString *error);
    bool save(const QString &path, QString *error) const;
    static bool load(const QString &path, PlotFrameDefinition *out, QString *error);

    // the size of the smallest frame that still holds the marker, length field, check
    // and end marker
    int minimumLength() const;
    // the frame length a length field value stands for
    qint64 lengthFromField(quint32 field) const;
    // where the check of a frame of that length stands
    int checkPosition(int frameLength) const { return checkAt >= 0 ? checkAt : frameLength - end.size() - PlotChecksum::size(checksum); }

    // one well-formed frame carrying these values (raw = (value - add) / scale),
    // the inverse of parsing; for tests, benchmarks and the simulator
    QByteArray buildFrame(const QVector<double> &values) const;

    static QByteArray hexToBytes(const QString &text, bool *ok);
    // the value of that type at p, and its inverse; unsigned fields are read as such
    static double readValue(ValueType type, bool bigEndian, const uchar *p);
    static void writeValue(ValueType type, bool bigEndian, double value, uchar *p);
    static quint32 readUnsigned(int size, bool bigEndian, const uchar *p);
    static void writeUnsigned(int size, bool bigEndian, quint32 value, uchar *p);
};

#endif // PLOTFRAMEDEFINITION_H
