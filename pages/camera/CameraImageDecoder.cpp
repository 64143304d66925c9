#include "CameraImageDecoder.h"

#include <cstring>

bool CameraImageDecoder::drawable(int width, int height)
{
    return width > 0 && height > 0 && qint64(width) * height * 3 <= MaxImageBytes;
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
    QImage image(width, height, QImage::Format_RGB888);
    if (image.isNull())
        return image;
    uchar *bits = image.bits();
    const qint64 w = width;
    const qint64 written = w * height * 3;
    // the row padding the linear writes never reach
    std::memset(bits + written, 0, size_t(qint64(image.sizeInBytes()) - written));

    const auto *src = reinterpret_cast<const uchar *>(data);
    const qint64 whole = size / 2; // source pixels with both bytes present
    const int hi = bigEndian ? 0 : 1;
    const int lo = 1 - hi;
    for (qint64 y = height - 1; y >= 0; --y) {
        uchar *dst = bits + 3 * y * w;
        // x takes pixel p = top - x; pixels at or past `whole` are (partly) missing
        const qint64 top = w * (y + 2);
        const qint64 firstWhole = qBound<qint64>(0, top - whole + 1, w);
        std::memset(dst, 0, size_t(3 * firstWhole));
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
    QImage image(width, height, QImage::Format_RGB888);
    if (image.isNull())
        return image;
    const qint64 total = image.sizeInBytes();
    const qint64 n = qMin<qint64>(total, packet.size());
    std::memcpy(image.bits(), packet.constData(), size_t(n));
    std::memset(image.bits() + n, 0, size_t(total - n));
    return image;
}
