#ifndef PIDRANGETRACKER_H
#define PIDRANGETRACKER_H

#include <QPointer>

#include <deque>
#include <utility>

class QCPAxis;
class QCPGraph;
class QCPRange;

// Value range of one actual curve, kept up to date sample by sample.
//
// Every sample rescales the value axis to its actual curve. Asking the curve for its
// range walks all points of the ten-second window (ten thousand at 1 kHz), and a
// reception of many frames did that once per frame, which made a backlog freeze the
// page. The curve only ever grows at its newest key and loses points older than the
// window, so the minimum and the maximum follow from two monotonic queues. The axis
// ends exactly where QCPAbstractPlottable::rescaleValueAxis(false, false) puts it;
// whenever the curve changes in any other way (a new graph after a clear, a clock
// that went back) the queues are rebuilt from the curve's data.
class PidRangeTracker
{
public:
    // mirrors removeBefore(cutoff) and addData(key, value) just done on graph
    void follow(QCPGraph *graph, double cutoff, double key, double value);
    // sets graph's value axis as a rescale to graph would; false if graph is empty
    bool rescaleValueAxis(QCPAxis *valueAxis) const;
    // the range such a rescale leaves on an axis that had `range`; false if graph is empty
    bool rescaledRange(QCPRange &range) const;
    // true when follow(graph, ..., key, ...) goes on from the queues, without reading
    // the graph's data again
    bool followsInOrder(const QCPGraph *graph, double key) const;

    bool valueRange(double &lower, double &upper) const;

private:
    void rebuild(QCPGraph *graph);
    void push(double key, double value);

    // guarded: a graph made after a clear may reuse a removed graph's address
    QPointer<QCPGraph> m_graph;
    double m_lastKey = 0;
    std::deque<std::pair<double, double>> m_max; // (key, value), values falling
    std::deque<std::pair<double, double>> m_min; // (key, value), values rising
};

#endif // PIDRANGETRACKER_H
