#ifndef PLOTSAMPLESTORE_H
#define PLOTSAMPLESTORE_H

#include "PlotBatch.h"

#include <QStringList>
#include <QVector>

#include <deque>
#include <vector>

// Everything a plot recorded, as a table: one row a record (a line or a frame), its
// time in seconds since the start, one column a channel, NaN where a record had no
// value for a channel. At most MaxChannels channels; values of later ones are counted
// and left out. Holds at most `capacity` rows: beyond that the oldest are dropped, in
// steps of about a sixteenth.
//
// Rows lie in chunks of ChunkRows, so that dropping the oldest frees whole chunks
// instead of moving every row kept; and each chunk keeps the lowest and highest value
// of every block of 16, 256, 4096 and 65536 rows, so that the envelope of any run of
// rows costs a few dozen steps however long the run is. The plot draws from those.
class PlotSampleStore
{
public:
    static constexpr int MaxChannels = 16;
    static constexpr int DefaultCapacity = 2000000;
    static constexpr int ChunkBits = 16;
    static constexpr int ChunkRows = 1 << ChunkBits;

    // the lowest and highest value of a run of rows; empty when it holds no value
    struct Span {
        double low;
        double high;
        bool isEmpty() const { return !(low <= high); }
    };

    explicit PlotSampleStore(int capacity = DefaultCapacity);

    void setNames(const QStringList &names) { m_names = names.mid(0, MaxChannels); }
    const QStringList &names() const { return m_names; }
    // the name of a channel, its number when nothing named it
    QString name(int channel) const;

    // every record of the batch, at time t
    void append(double t, const PlotBatch &batch) { append(t, t, batch); }
    // the records evenly after `from`, the last one at t
    void append(double from, double t, const PlotBatch &batch);
    void clear();

    int capacity() const { return m_capacity; }
    int rows() const { return m_rows; }
    // rows ever appended, and the absolute number of the first one still kept
    qint64 totalRows() const { return m_firstRow + m_rows; }
    qint64 firstRow() const { return m_firstRow; }
    int channelCount() const { return m_channels; }
    qint64 ignoredValues() const { return m_nIgnored; }

    double time(int row) const
    {
        const int p = m_head + row;
        return m_chunks[size_t(p >> ChunkBits)].times[size_t(p & (ChunkRows - 1))];
    }
    double value(int channel, int row) const
    {
        const int p = m_head + row;
        return m_chunks[size_t(p >> ChunkBits)].columns[size_t(channel)].values[size_t(p & (ChunkRows - 1))];
    }
    // a copy of every time kept, oldest first
    QVector<double> times() const;

    // the first row whose time is t or later (rows() when none is); times never go back
    int rowAtTime(double t) const;
    // the lowest and highest value of the channel in rows [from, to)
    Span envelope(int channel, int from, int to) const;

private:
    static constexpr int Levels = 4; // blocks of 16^1 .. 16^4 rows
    struct Column {
        std::vector<double> values;
        std::vector<double> low[Levels], high[Levels];
    };
    struct Chunk {
        std::vector<double> times;
        std::vector<Column> columns;
    };
    static Column emptyColumn();
    void addChunk();
    void set(int position, int channel, double value);
    static void scan(const Column &column, int from, int to, Span &span);

    int m_capacity;
    QStringList m_names;
    std::deque<Chunk> m_chunks;
    int m_head = 0; // position of row 0 in the first chunk
    int m_rows = 0;
    int m_channels = 0;
    qint64 m_firstRow = 0;
    qint64 m_nIgnored = 0;
};

#endif // PLOTSAMPLESTORE_H
