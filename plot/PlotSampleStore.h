#ifndef PLOTSAMPLESTORE_H
#define PLOTSAMPLESTORE_H

#include "PlotBatch.h"

#include <QStringList>
#include <QVector>

// Everything a plot recorded, as a table: one row a record (a line or a frame), its
// time in seconds since the start, one column a channel, NaN where a record had no
// value for a channel. At most MaxChannels channels; values of later ones are counted
// and left out. Holds at most `capacity` rows: beyond that the oldest are dropped, in
// steps of a sixteenth so that dropping costs little per row.
class PlotSampleStore
{
public:
    static const int MaxChannels = 16;
    static const int DefaultCapacity = 2000000;

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
    int rows() const { return m_times.size(); }
    // rows ever appended, and the absolute number of the first one still kept
    qint64 totalRows() const { return m_firstRow + m_times.size(); }
    qint64 firstRow() const { return m_firstRow; }
    int channelCount() const { return m_columns.size(); }
    qint64 ignoredValues() const { return m_nIgnored; }

    double time(int row) const { return m_times.at(row); }
    double value(int channel, int row) const { return m_columns.at(channel).at(row); }
    const QVector<double> &times() const { return m_times; }
    const QVector<double> &column(int channel) const { return m_columns.at(channel); }

private:
    int m_capacity;
    QStringList m_names;
    QVector<double> m_times;
    QVector<QVector<double>> m_columns;
    qint64 m_firstRow = 0;
    qint64 m_nIgnored = 0;
};

#endif // PLOTSAMPLESTORE_H
