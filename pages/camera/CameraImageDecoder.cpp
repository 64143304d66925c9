#include "CameraImageDecoder.h"

#include <cstdlib>
#include <cstring>

bool CameraImageDecoder::drawable(int width, int height)
{
    return width > 0 && height > 0 && qint64(width) * height * 3 <= MaxImageBytes;
}

// An RGB888 image on zeroed memory. A large calloc takes fresh pages from the system,
// which are zero already and cost nothing until written, so the black a short frame
// leaves behind needs no clearing at all: an empty frame for a huge format costs
// microseconds, not a pass over tens of megabytes.
static QImage blackImage(int width, int height)
{
    const qint64 bytesPerLine = (qint64(width) * 3 + 3) & ~qint64(3);
    void *buffer = std::calloc(size_t(bytesPerLine * height), 1);
    if (!buffer)
        return QImage();
    return QImage(static_cast<uchar *>(buffer), width, height, int(bytesPerLine), QImage::Format_RGB888, std::free,
                  buffer);
}

static inline void putPixel(uchar *dst, unsigned v)
{
    dst[0] = uchar((v >> 11) << 3);
    dst[1] = uchar((v >> 3) & 0xFC);
    dst[2] = uchar((v & 0x1F) << 3);
}

QImage CameraImageDecoder::rgb565(int width, int height, const char *data, int size, bool bigEndian)
{
    if (!drawable(width, height))
        return QImage();
    QImage image = blackImage(width, height);
    if (image.isNull())
        return image;
    uchar *bits = image.bits();
    const qint64 w = width;

    const auto *src = reinterpret_cast<const uchar *>(data);
    const qint64 whole = size / 2; // source pixels with both bytes present
    const int hi = bigEndian ? 0 : 1;
    const int lo = 1 - hi;
    for (qint64 y = height - 1; y >= 0; --y) {
        uchar *dst = bits + 3 * y * w;
        // x takes pixel p = top - x; pixels at or past `whole` are (partly) missing
        const qint64 top = w * (y + 2);
        // the pixels before firstWhole stay black
        const qint64 firstWhole = qBound<qint64>(0, top - whole + 1, w);
        if (firstWhole > 0 && (size & 1)) {
            // the odd last byte: a pixel whose second byte is missing
            const qint64 x = top - whole;
            if (x >= 0 && x < w) {
                const unsigned b0 = src[2 * whole];
                putPixel(dst + 3 * x, bigEndian ? b0 << 8 : b0);
            }
        }
        const uchar *s = src + 2 * (top - firstWhole);
        uchar *d = dst + 3 * firstWhole;
        for (qint64 n = w - firstWhole; n > 0; --n, s -= 2, d += 3) {
            const unsigned v = unsigned(s[hi]) << 8 | s[lo];
            d[0] = uchar((v >> 11) << 3);
            d[1] = uchar((v >> 3) & 0xFC);
            d[2] = uchar((v & 0x1F) << 3);
        }
    }
    return image;
}

QImage CameraImageDecoder::rawRgb888(int width, int height, const QByteArray &packet)
{
    if (!drawable(width, height))
        return QImage();
    QImage image = blackImage(width, height);
    if (image.isNull())
        return image;
    const qint64 n = qMin<qint64>(image.sizeInBytes(), packet.size());
    std::memcpy(image.bits(), packet.constData(), size_t(n));
    return image;
}
