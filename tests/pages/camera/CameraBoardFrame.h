#ifndef CAMERABOARDFRAME_H
#define CAMERABOARDFRAME_H

#include <QBuffer>
#include <QByteArray>
#include <QImage>

// CRC-16/MODBUS bit by bit, written apart from the program's table routine
inline quint16 modbusCrc(const QByteArray &data)
{
    quint16 crc = 0xFFFF;
    for (char ch : data) {
        crc ^= uchar(ch);
        for (int i = 0; i < 8; ++i)
            crc = (crc & 1) ? quint16((crc >> 1) ^ 0xA001) : quint16(crc >> 1);
    }
    return crc;
}

inline QByteArray le16(quint16 v) { return QByteArray(1, char(v & 0xFF)) + char(v >> 8); }
inline QByteArray le32(quint32 v) { return le16(quint16(v)) + le16(quint16(v >> 16)); }

// What a board puts on the wire; length overrides the length field, crcDelta spoils
// the CRC.
inline QByteArray camFrame(int cmd, const QByteArray &payload, int addr = 0, qint64 length = -1, int crcDelta = 0)
{
    QByteArray f = "LARK" + QByteArray(1, char(addr)) + le32(quint32(length < 0 ? payload.size() + 12 : length))
                   + QByteArray(1, char(cmd)) + payload;
    return f + le16(quint16(modbusCrc(f) + crcDelta));
}

inline QByteArray formatFrame(int slot, int format, int w, int h)
{
    return camFrame(1, QByteArray(1, char(format)) + le16(quint16(w)) + le16(quint16(h)), slot);
}

// a read answer: status, regId, value of valueLen bytes
inline QByteArray readAnswer(int status, quint16 regId, quint32 value, int valueLen)
{
    return camFrame(0x11, QByteArray(1, char(status)) + le16(regId) + le32(value).left(valueLen));
}

// pixel k of a test image: grey 8 * (k + 1) in RGB565, low byte first
inline QByteArray greyPixels(int n)
{
    QByteArray out;
    for (int k = 0; k < n; ++k)
        out += le16(quint16((k + 1) * 0x0841));
    return out;
}

// a JPEG of one colour
inline QByteArray jpegOf(QColor colour, int w, int h)
{
    QImage image(w, h, QImage::Format_RGB888);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", 95);
    return bytes;
}

#endif // CAMERABOARDFRAME_H
