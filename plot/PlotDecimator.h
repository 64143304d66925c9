#ifndef PLOTDECIMATOR_H
#define PLOTDECIMATOR_H

#include <QVector>

class PlotSampleStore;

// What the plot draws of a channel over a time range: every sample while there are at
// most two a pixel column, otherwise the lowest and highest value of each column, so
// that a peak of one sample still shows and a redraw costs the same for ten seconds
// of data as for two hundred. Columns are fixed in absolute time (multiples of their
// width), so a scrolling plot does not shimmer.
class PlotDecimator
{
public:
    // Where the columns from t0 to t1 begin among the first `rowLimit` rows, one more
    // sample beyond either end so the line reaches the edges; the last entry ends the
    // last column. Shared by every channel: a run of one row is a sample drawn as is.
    static QVector<int> columnRows(const PlotSampleStore &store, double t0, double t1, int columns, int rowLimit);
    // the points of a channel in those columns
    static void points(const PlotSampleStore &store, int channel, const QVector<int> &bounds,
                       QVector<double> &keys, QVector<double> &values);
};

#endif // PLOTDECIMATOR_H
