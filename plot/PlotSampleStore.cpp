#include "PlotSampleStore.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
const double s_none = std::numeric_limits<double>::quiet_NaN();
const double s_inf = std::numeric_limits<double>::infinity();
// block size of a summary level, in rows: 16, 256, 4096, 65536
inline int blockBits(int level) { return 4 * (level + 1); }
}

PlotSampleStore::PlotSampleStore(int capacity)
    : m_capacity(qMax(16, capacity))
{
}

QString PlotSampleStore::name(int channel) const
{
    return channel < m_names.size() ? m_names.at(channel) : QString("CH%1").arg(channel + 1);
}

void PlotSampleStore::clear()
{
    m_chunks.clear();
    m_head = 0;
    m_rows = 0;
    m_channels = 0;
    m_firstRow = 0;
    m_nIgnored = 0;
}

PlotSampleStore::Column PlotSampleStore::emptyColumn()
{
    Column c;
    c.values.assign(ChunkRows, s_none);
    for (int l = 0; l < Levels; ++l) {
        c.low[l].assign(size_t(ChunkRows >> blockBits(l)), s_inf);
        c.high[l].assign(size_t(ChunkRows >> blockBits(l)), -s_inf);
    }
    return c;
}

void PlotSampleStore::addChunk()
{
    m_chunks.emplace_back();
    Chunk &chunk = m_chunks.back();
    chunk.times.assign(ChunkRows, 0);
    chunk.columns.resize(size_t(m_channels), emptyColumn());
}

void PlotSampleStore::set(int position, int channel, double value)
{
    while (m_channels <= channel) {
        // a channel seen late had no value in any row before
        for (Chunk &chunk : m_chunks)
            chunk.columns.push_back(emptyColumn());
        ++m_channels;
    }
    Column &col = m_chunks[size_t(position >> ChunkBits)].columns[size_t(channel)];
    const int at = position & (ChunkRows - 1);
    col.values[size_t(at)] = value;
    if (std::isnan(value))
        return;
    for (int l = 0; l < Levels; ++l) {
        double &lo = col.low[l][size_t(at >> blockBits(l))];
        double &hi = col.high[l][size_t(at >> blockBits(l))];
        lo = std::min(lo, value);
        hi = std::max(hi, value);
    }
}

void PlotSampleStore::append(double from, double t, const PlotBatch &batch)
{
    const int records = batch.records();
    if (records == 0)
        return;
    int pair = 0;
    for (int r = 0; r < records; ++r) {
        const int position = m_head + m_rows;
        if (size_t(position >> ChunkBits) >= m_chunks.size())
            addChunk();
        m_chunks.back().times[size_t(position & (ChunkRows - 1))] = t - (t - from) * (records - 1 - r) / records;
        ++m_rows;
        for (const int end = batch.recordEnds.at(r); pair < end; ++pair) {
            const int ch = batch.channels.at(pair);
            if (ch < 0 || ch >= MaxChannels) {
                ++m_nIgnored;
                continue;
            }
            set(position, ch, batch.values.at(pair));
        }
    }
    if (m_rows > m_capacity) {
        const int drop = m_rows - m_capacity + m_capacity / 16;
        m_rows -= drop;
        m_head += drop;
        m_firstRow += drop;
        while (m_head >= ChunkRows) {
            m_chunks.pop_front();
            m_head -= ChunkRows;
        }
    }
}

QVector<double> PlotSampleStore::times() const
{
    QVector<double> out(m_rows);
    for (int r = 0; r < m_rows; ++r)
        out[r] = time(r);
    return out;
}

int PlotSampleStore::rowAtTime(double t) const
{
    int lo = 0, hi = m_rows;
    while (lo < hi) {
        const int mid = lo + (hi - lo) / 2;
        if (time(mid) < t)
            lo = mid + 1;
        else
            hi = mid;
    }
    return lo;
}

// [from, to) within one chunk: single rows up to the first 16-row boundary on either
// side, then whole blocks of each level up to the boundary of the next level
void PlotSampleStore::scan(const Column &column, int from, int to, Span &span)
{
    const auto take = [&span](double lo, double hi) {
        span.low = std::min(span.low, lo);
        span.high = std::max(span.high, hi);
    };
    // A gap (NaN) never wins: std::min(a, b) and std::max(a, b) keep a when b is NaN.
    // Without a test per row the loop compiles to plain min/max instructions; a redraw
    // runs it over every visible row of every channel.
    const auto takeRows = [&span, &column](int a, int b) {
        const double *v = column.values.data();
        double lo = span.low, hi = span.high;
        for (int i = a; i < b; ++i) {
            lo = std::min(lo, v[i]);
            hi = std::max(hi, v[i]);
        }
        span.low = lo;
        span.high = hi;
    };
    const int rowMask = (1 << blockBits(0)) - 1;
    const int head = std::min(to, (from + rowMask) & ~rowMask);
    takeRows(from, head);
    from = head;
    const int tail = std::max(from, to & ~rowMask);
    takeRows(tail, to);
    to = tail;
    for (int l = 0; l < Levels && from < to; ++l) {
        const int bits = blockBits(l);
        const int size = 1 << bits;
        const int nextMask = l + 1 < Levels ? (1 << blockBits(l + 1)) - 1 : -1;
        while (from < to && (nextMask < 0 || (from & nextMask))) {
            take(column.low[l][size_t(from >> bits)], column.high[l][size_t(from >> bits)]);
            from += size;
        }
        while (from < to && nextMask >= 0 && (to & nextMask)) {
            to -= size;
            take(column.low[l][size_t(to >> bits)], column.high[l][size_t(to >> bits)]);
        }
    }
}

PlotSampleStore::Span PlotSampleStore::envelope(int channel, int from, int to) const
{
    Span span{s_inf, -s_inf};
    if (channel < 0 || channel >= m_channels)
        return span;
    from = qMax(0, from);
    to = qMin(m_rows, to);
    // only blocks wholly inside the run are read from the summaries, so those of blocks
    // that still count dropped rows are never used
    int p = m_head + from;
    const int end = m_head + to;
    for (size_t c = size_t(p >> ChunkBits); p < end; ++c) {
        const int chunkEnd = int((c + 1) << ChunkBits);
        const int stop = qMin(end, chunkEnd);
        scan(m_chunks[c].columns[size_t(channel)], p & (ChunkRows - 1), stop - int(c << ChunkBits), span);
        p = stop;
    }
    return span;
}
