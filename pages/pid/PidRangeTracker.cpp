#include "PidRangeTracker.h"

#include <qcustomplot.h>

void PidRangeTracker::push(double key, double value)
{
    // a later point with an equal or more extreme value outlives the earlier one
    while (!m_max.empty() && m_max.back().second <= value)
        m_max.pop_back();
    m_max.emplace_back(key, value);
    while (!m_min.empty() && m_min.back().second >= value)
        m_min.pop_back();
    m_min.emplace_back(key, value);
    m_lastKey = key;
}

void PidRangeTracker::rebuild(QCPGraph *graph)
{
    m_graph = graph;
    m_max.clear();
    m_min.clear();
    m_lastKey = 0;
    const QSharedPointer<QCPGraphDataContainer> data = graph->data();
    for (auto it = data->constBegin(); it != data->constEnd(); ++it) {
        if (!qIsNaN(it->value))
            push(it->key, it->value);
    }
}

void PidRangeTracker::follow(QCPGraph *graph, double cutoff, double key, double value)
{
    const bool inOrder = m_max.empty() || key >= m_lastKey;
    if (m_graph.data() != graph || !inOrder) {
        rebuild(graph);
        return;
    }
    while (!m_max.empty() && m_max.front().first < cutoff)
        m_max.pop_front();
    while (!m_min.empty() && m_min.front().first < cutoff)
        m_min.pop_front();
    push(key, value);
}

bool PidRangeTracker::valueRange(double &lower, double &upper) const
{
    if (m_max.empty())
        return false;
    lower = m_min.front().second;
    upper = m_max.front().second;
    return true;
}

bool PidRangeTracker::followsInOrder(const QCPGraph *graph, double key) const
{
    return m_graph.data() == graph && (m_max.empty() || key >= m_lastKey);
}

bool PidRangeTracker::rescaledRange(QCPRange &range) const
{
    double lower, upper;
    if (!valueRange(lower, upper))
        return false;
    QCPRange newRange(lower, upper);
    if (!QCPRange::validRange(newRange)) {
        // constant data: keep the span, centred on the value
        const double center = (newRange.lower + newRange.upper) * 0.5;
        newRange.lower = center - range.size() / 2.0;
        newRange.upper = center + range.size() / 2.0;
    }
    // what QCPAxis::setRange keeps of it on a linear axis
    if (QCPRange::validRange(newRange))
        range = newRange.sanitizedForLinScale();
    return true;
}

bool PidRangeTracker::rescaleValueAxis(QCPAxis *valueAxis) const
{
    QCPRange range = valueAxis->range();
    if (!rescaledRange(range))
        return false;
    valueAxis->setRange(range);
    return true;
}
