#include "PlotDecimator.h"
#include "PlotSampleStore.h"

#include <cmath>

QVector<int> PlotDecimator::columnRows(const PlotSampleStore &store, double t0, double t1, int columns, int rowLimit)
{
    const int limit = qMin(rowLimit, store.rows());
    const int first = qMax(0, qMin(limit, store.rowAtTime(t0)) - 1);
    const int last = qMin(limit, store.rowAtTime(t1) + 1);
    QVector<int> bounds;
    if (first >= last)
        return bounds;
    columns = qMax(1, columns);
    if (last - first <= 2 * columns) {
        bounds.resize(last - first + 1);
        for (int r = first; r <= last; ++r)
            bounds[r - first] = r;
        return bounds;
    }
    const double width = (t1 - t0) / columns;
    for (int r = first; r < last;) {
        bounds.append(r);
        const double k = std::floor(store.time(r) / width);
        // a time that rounds back into this column would stall the walk: one row at least
        r = qMax(r + 1, qMin(last, store.rowAtTime((k + 1) * width)));
    }
    bounds.append(last);
    return bounds;
}

void PlotDecimator::points(const PlotSampleStore &store, int channel, const QVector<int> &bounds,
                           QVector<double> &keys, QVector<double> &values)
{
    keys.resize(0);
    values.resize(0);
    if (channel < 0 || channel >= store.channelCount())
        return;
    for (int i = 0; i + 1 < bounds.size(); ++i) {
        const int r = bounds.at(i), next = bounds.at(i + 1);
        if (next - r <= 2) {
            for (int s = r; s < next; ++s) {
                const double v = store.value(channel, s);
                if (!std::isnan(v))
                    keys.append(store.time(s)), values.append(v);
            }
            continue;
        }
        const PlotSampleStore::Span span = store.envelope(channel, r, next);
        if (span.isEmpty())
            continue;
        // the end nearer the previous point first, so the line does not zigzag
        const bool lowFirst = values.isEmpty() || std::fabs(values.last() - span.low) <= std::fabs(values.last() - span.high);
        keys.append(store.time(r)), values.append(lowFirst ? span.low : span.high);
        keys.append(store.time(next - 1)), values.append(lowFirst ? span.high : span.low);
    }
}
