#ifndef PIDEXPORT_H
#define PIDEXPORT_H

#include <QByteArray>
#include <QString>
#include <QVector>

// The file the PID page exports: GB18030 text, one line feed per line, no byte-order
// mark. A title line, then for each of the five channels a title, the column line, one
// line per point (index, actual, target, actual minus target) and two empty lines.
// Numbers are written as a QTextStream writes a double by default (6 significant
// digits, smart notation), so the file reads the same as every earlier export.
//
// The curves are taken by plot position, not by meaning: after a clear the positions
// may hold surviving old curves, and they are exported under those channels. The
// target curve decides how many lines a channel has; an actual curve that is shorter
// repeats its last value (and an empty one reads 0), as the plot's container bounds
// a position.
class PidExport
{
public:
    static constexpr int Channels = 5;

    // channel n is 1 to 5; the values of the target and actual curves in plot order
    void setCurves(int n, const QVector<double> &target, const QVector<double> &actual);

    QByteArray text() const;
    // writes text() over fileName (opened read-write and truncated); false only when
    // the file cannot be opened, since write errors were never reported
    bool write(const QString &fileName) const;

private:
    QVector<double> m_target[Channels];
    QVector<double> m_actual[Channels];
};

#endif // PIDEXPORT_H
