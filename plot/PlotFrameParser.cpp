#include "PlotFrameParser.h"

#include <cstring>

PlotFrameParser::PlotFrameParser(const PlotFrameDefinition &definition)
{
    setDefinition(definition);
}

void PlotFrameParser::setDefinition(const PlotFrameDefinition &definition)
{
    m_def = definition;
    m_ckSize = PlotChecksum::size(m_def.checksum);
    reset();
}

void PlotFrameParser::reset()
{
    m_buf.clear();
    m_pos = 0;
    m_counts = Counts();
}

void PlotFrameParser::feed(const QByteArray &bytes, PlotBatch &out)
{
    const int markerLen = m_def.start.size();
    if (markerLen == 0)
        return;
    m_buf.append(bytes);
    const uchar *base = reinterpret_cast<const uchar *>(m_buf.constData());
    const uchar first = uchar(m_def.start.at(0));
    for (;;) {
        const int avail = m_buf.size() - m_pos;
        // hunt for the marker's first byte, then check the rest of it
        const void *hit = avail > 0 ? std::memchr(base + m_pos, first, size_t(avail)) : nullptr;
        if (!hit) {
            m_counts.skippedBytes += avail;
            m_pos = m_buf.size();
            break;
        }
        const int at = int(static_cast<const uchar *>(hit) - base);
        m_counts.skippedBytes += at - m_pos;
        m_pos = at;
        const int left = m_buf.size() - m_pos;
        const int cmp = qMin(left, markerLen);
        if (std::memcmp(base + m_pos, m_def.start.constData(), size_t(cmp)) != 0) {
            ++m_counts.skippedBytes;
            ++m_pos;
            continue;
        }
        if (cmp < markerLen)
            break; // a marker split across reads
        int used = 0;
        const Step step = tryFrame(base + m_pos, left, out, &used);
        if (step == Wait)
            break;
        if (step == Done) {
            m_pos += used;
        } else {
            // a false start: only its first byte is given up
            ++m_counts.skippedBytes;
            ++m_pos;
        }
    }
    // drop what is consumed; the copy is of one unfinished frame at most
    if (m_pos > 0) {
        m_buf.remove(0, m_pos);
        m_pos = 0;
    }
}

PlotFrameParser::Step PlotFrameParser::tryFrame(const uchar *p, int avail, PlotBatch &out, int *used)
{
    const PlotFrameDefinition &d = m_def;
    qint64 total = 0;
    switch (d.lengthMode) {
    case PlotFrameDefinition::FixedLength:
        total = d.fixedLength;
        break;
    case PlotFrameDefinition::LengthField:
        if (avail < d.lengthOffset + d.lengthSize)
            return Wait;
        total = d.lengthFromField(PlotFrameDefinition::readUnsigned(d.lengthSize, d.lengthBigEndian, p + d.lengthOffset));
        break;
    case PlotFrameDefinition::UntilEndMarker: {
        const int from = d.minimumLength() - d.end.size();
        const int limit = qMin(avail, d.maxLength);
        const QByteArray window = QByteArray::fromRawData(reinterpret_cast<const char *>(p), limit);
        const int e = window.indexOf(d.end, from);
        if (e < 0) {
            if (avail < d.maxLength)
                return Wait;
            ++m_counts.dropped;
            return Next;
        }
        total = e + d.end.size();
        break;
    }
    }
    if (total < d.minimumLength() || total > d.maxLength) {
        ++m_counts.dropped;
        return Next;
    }
    if (avail < total)
        return Wait;
    const int n = int(total);
    if (!d.end.isEmpty() && std::memcmp(p + n - d.end.size(), d.end.constData(), size_t(d.end.size())) != 0) {
        ++m_counts.dropped;
        return Next;
    }
    if (m_ckSize > 0) {
        const int at = d.checkPosition(n);
        if (at < d.checkFrom || at + m_ckSize > n) {
            ++m_counts.dropped;
            return Next;
        }
        const quint32 want = PlotFrameDefinition::readUnsigned(m_ckSize, d.checkBigEndian, p + at);
        if (PlotChecksum::compute(d.checksum, p + d.checkFrom, at - d.checkFrom) != want) {
            ++m_counts.badChecksum;
            return Next;
        }
    }
    for (int i = 0; i < d.channels.size(); ++i) {
        const PlotFrameDefinition::Channel &c = d.channels.at(i);
        // a short frame simply has no value for the channels beyond its end
        if (c.offset + PlotFrameDefinition::typeSize(c.type) <= n)
            out.add(i, PlotFrameDefinition::readValue(c.type, c.bigEndian, p + c.offset) * c.scale + c.add);
    }
    out.endRecord();
    ++m_counts.good;
    *used = n;
    return Done;
}
