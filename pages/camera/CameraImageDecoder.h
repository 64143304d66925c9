#ifndef CAMERAIMAGEDECODER_H
#define CAMERAIMAGEDECODER_H

#include <QByteArray>
#include <QImage>

// Pixels of framed images, as the boards' firmware expects them to be drawn.
class CameraImageDecoder
{
public:
    // Images whose RGB888 pixels would take more than this are not drawn: an
    // announced 65535 by 65535 would otherwise ask for 12 GB. The frame is still
    // counted and answered. 64 MiB holds 4096 by 4096 with room to spare.
    static constexpr qint64 MaxImageBytes = qint64(64) << 20;
    static bool drawable(int width, int height);

    // RGB565 payload to an RGB888 image. Target (x, y) takes source pixel number
    // (y + 1) * width + width - x: mirrored left to right, one row up, and the last
    // row reads past a payload of width * height * 2 bytes and stays black. Rows are
    // written width * 3 bytes apart whatever the image's own row padding, so a width
    // that is not a multiple of 4 shears; the padding left over at the end is black.
    // Bytes past the payload read 0. Null for a size that is not drawable.
    static QImage rgb565(int width, int height, const char *data, int size, bool bigEndian);

    // The whole packet, head included, laid over an RGB888 image of that size with
    // 32-bit row alignment; what the packet does not cover is black.
    static QImage rawRgb888(int width, int height, const QByteArray &packet);
};

#endif // CAMERAIMAGEDECODER_H
