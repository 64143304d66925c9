#include "PlotSampleStore.h"

#include <limits>

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
    m_times.clear();
    m_columns.clear();
    m_firstRow = 0;
    m_nIgnored = 0;
}

void PlotSampleStore::append(double from, double t, const PlotBatch &batch)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const int records = batch.records();
    if (records == 0)
        return;
    const int base = m_times.size();
    m_times.resize(base + records);
    for (int r = 0; r < records; ++r)
        m_times[base + r] = t - (t - from) * (records - 1 - r) / records;
    for (QVector<double> &col : m_columns)
        col.resize(base + records), std::fill(col.begin() + base, col.end(), none);
    int pair = 0;
    for (int r = 0; r < records; ++r) {
        for (const int end = batch.recordEnds.at(r); pair < end; ++pair) {
            const int ch = batch.channels.at(pair);
            if (ch < 0 || ch >= MaxChannels) {
                ++m_nIgnored;
                continue;
            }
            while (m_columns.size() <= ch)
                m_columns.append(QVector<double>(base + records, none));
            m_columns[ch][base + r] = batch.values.at(pair);
        }
    }
    if (m_times.size() > m_capacity) {
        const int drop = m_times.size() - m_capacity + m_capacity / 16;
        m_times.remove(0, drop);
        for (QVector<double> &col : m_columns)
            col.remove(0, drop);
        m_firstRow += drop;
    }
}
