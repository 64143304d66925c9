#include "UpdateZipIndex.h"

#include <QtEndian>

#include <climits>

#include <zlib.h>

namespace {
const quint32 EndSignature = 0x06054b50;
const quint32 CentralSignature = 0x02014b50;
const quint32 LocalSignature = 0x04034b50;
const int EndSize = 22;
const int CentralSize = 46;
const int LocalSize = 30;
} // namespace

bool UpdateZipIndex::read(const QByteArray &archive)
{
    m_archive = archive;
    m_entries.clear();
    const qint64 size = archive.size();
    const uchar *bytes = reinterpret_cast<const uchar *>(archive.constData());
    const auto u16 = [bytes](qint64 pos) { return qFromLittleEndian<quint16>(bytes + pos); };
    const auto u32 = [bytes](qint64 pos) { return qFromLittleEndian<quint32>(bytes + pos); };

    // the end record sits in the last 22 + 65535 bytes, after its comment
    qint64 end = -1;
    for (qint64 pos = size - EndSize; pos >= 0 && pos >= size - EndSize - 0xffff; --pos) {
        if (u32(pos) == EndSignature) {
            end = pos;
            break;
        }
    }
    if (end < 0) {
        m_error = "目录不完整";
        return false;
    }
    const int count = u16(end + 10);
    const qint64 directorySize = u32(end + 12);
    qint64 pos = u32(end + 16);
    if (u16(end + 8) != count || pos == 0xffffffff || pos + directorySize > end) {
        m_error = "目录不完整";
        return false;
    }
    // The records are read to the end of the directory, not to the count: writers
    // without ZIP64 store a count above 65535 cut to 16 bits, and such an archive must
    // be seen with all its entries.
    const qint64 directoryEnd = pos + directorySize;
    while (pos < directoryEnd) {
        if (pos + CentralSize > directoryEnd || u32(pos) != CentralSignature) {
            m_error = "目录不完整";
            m_entries.clear();
            return false;
        }
        Entry e;
        e.flags = u16(pos + 8);
        e.method = u16(pos + 10);
        e.crc = u32(pos + 16);
        e.compressedSize = u32(pos + 20);
        e.size = u32(pos + 24);
        e.localOffset = u32(pos + 42);
        const int nameLength = u16(pos + 28);
        const qint64 next = pos + CentralSize + nameLength + u16(pos + 30) + u16(pos + 32);
        // 0xffffffff says the real value is in a ZIP64 record: no release needs one
        if (next > directoryEnd || e.compressedSize == 0xffffffff || e.size == 0xffffffff || e.localOffset == 0xffffffff) {
            m_error = "目录不完整";
            m_entries.clear();
            return false;
        }
        const QByteArray name = archive.mid(int(pos + CentralSize), nameLength);
        // bit 11: the name is UTF-8
        e.name = (e.flags & 0x0800) ? QString::fromUtf8(name) : QString::fromLocal8Bit(name);
        m_entries << e;
        pos = next;
    }
    if ((m_entries.size() & 0xffff) != count) {
        m_error = "目录不完整";
        m_entries.clear();
        return false;
    }
    m_error.clear();
    return true;
}

bool UpdateZipIndex::data(int index, QByteArray *out) const
{
    out->clear();
    if (index < 0 || index >= m_entries.size())
        return false;
    const Entry &e = m_entries.at(index);
    const qint64 size = m_archive.size();
    const uchar *bytes = reinterpret_cast<const uchar *>(m_archive.constData());
    const qint64 local = e.localOffset;
    if (local + LocalSize > size || qFromLittleEndian<quint32>(bytes + local) != LocalSignature)
        return false;
    const qint64 start = local + LocalSize + qFromLittleEndian<quint16>(bytes + local + 26)
                         + qFromLittleEndian<quint16>(bytes + local + 28);
    if (start + e.compressedSize > size)
        return false;

    QByteArray result;
    if (e.method == 0) {
        if (e.compressedSize != e.size)
            return false;
        result = m_archive.mid(int(start), int(e.size));
    } else if (e.method == 8) {
        // deflate never packs more than 1032 bytes into one: a larger stated size lies,
        // and trusting it would size the buffer by the liar
        if (e.size > qint64(e.compressedSize) * 1032 + 1024)
            return false;
        // one byte of room beyond the stated size: a stream that fills it says more
        // than it stated, and is stopped there
        result.resize(int(qMin<qint64>(qint64(e.size) + 1, INT_MAX)));
        z_stream stream{};
        if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
            return false;
        stream.next_in = const_cast<Bytef *>(bytes + start);
        stream.avail_in = e.compressedSize;
        stream.next_out = reinterpret_cast<Bytef *>(result.data());
        stream.avail_out = uInt(result.size());
        const int status = inflate(&stream, Z_FINISH);
        const qint64 produced = qint64(stream.total_out);
        inflateEnd(&stream);
        if (status != Z_STREAM_END || produced != e.size)
            return false;
        result.resize(int(produced));
    } else {
        return false;
    }
    const uLong crc = crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef *>(result.constData()), uInt(result.size()));
    if (crc != e.crc)
        return false;
    *out = result;
    return true;
}
