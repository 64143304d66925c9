#ifndef PLOTBATCH_H
#define PLOTBATCH_H

#include <QVector>

// What a parser found in one chunk of bytes: records (a line or a frame each), every
// record a run of (channel, value) pairs. Flat vectors, reused from chunk to chunk, so
// that parsing a fast stream allocates nothing once the vectors have grown.
struct PlotBatch {
    QVector<int> recordEnds; // index past the last pair of each record
    QVector<int> channels;
    QVector<double> values;

    void clear()
    {
        recordEnds.resize(0);
        channels.resize(0);
        values.resize(0);
    }
    int records() const { return recordEnds.size(); }
    void add(int channel, double value)
    {
        channels.append(channel);
        values.append(value);
    }
    void endRecord() { recordEnds.append(values.size()); }
};

#endif // PLOTBATCH_H
