#ifndef CAMERAFRAME_H
#define CAMERAFRAME_H

#include <QByteArray>
#include <QString>

// The frame of the camera board link, the same in both directions:
//   "LARK" | address | length uint32 LE (whole frame, payload + 12) | command | payload
//   | CRC-16/MODBUS of everything before it, low byte first
class CameraFrame
{
public:
    enum Command {
        CMD_REPLY = 0x00,
        CMD_IMAGE_FORMAT = 0x01,
        CMD_IMAGE_DATA = 0x02,
        CMD_WRITE_REG = 0x10,
        CMD_READ_REG = 0x11,
    };

    static constexpr int HeaderSize = 10; // head, address, length, command
    static constexpr int MinimumSize = 12;

    static QByteArray head(); // "LARK"
    static QByteArray build(unsigned char cmd, unsigned char addr, const QByteArray &data);
    // the text a format code stands for in messages
    static QString imageSuffix(unsigned char format);

    // little-endian field of n bytes (at most 4) at pos; bytes past the end read 0
    static unsigned int readLe(const QByteArray &data, int pos, int n);
    static QByteArray le(unsigned int value, int n);
};

#endif // CAMERAFRAME_H
