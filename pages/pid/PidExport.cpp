#include "PidExport.h"

#include <QBuffer>
#include <QSaveFile>
#include <QTextCodec>
#include <QTextStream>

namespace {

// position i as QCPDataContainer::at bounds it; an empty curve reads 0
double valueAt(const QVector<double> &curve, int i)
{
    if (curve.isEmpty())
        return 0.0;
    return curve.at(qBound(0, i, curve.size() - 1));
}

} // namespace

void PidExport::setCurves(int n, const QVector<double> &target, const QVector<double> &actual)
{
    if (n < 1 || n > Channels)
        return;
    m_target[n - 1] = target;
    m_actual[n - 1] = actual;
}

QByteArray PidExport::text() const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QTextStream out(&buffer);
    out.setCodec(QTextCodec::codecForName("GB18030"));
    // QTextStream takes plain char strings as Latin-1: every literal goes as QString
    out << QString("PID调试数据") << "\n";
    for (int n = 1; n <= Channels; ++n) {
        out << QString("通道 %1 数据如下：").arg(n) << "\n";
        out << QString("序号,") << QString("实际值,") << QString("目标值,") << QString("差值") << "\n";
        const QVector<double> &target = m_target[n - 1];
        const QVector<double> &actual = m_actual[n - 1];
        for (int i = 0; i < target.size(); ++i) {
            const double a = valueAt(actual, i);
            const double t = valueAt(target, i);
            out << (i + 1) << "," << a << "," << t << "," << (a - t) << "\n";
        }
        out << "\n" << "\n";
    }
    out.flush();
    return bytes;
}

bool PidExport::write(const QString &fileName) const
{
    // renamed over the old file once whole: a full disk leaves an older export intact
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(text());
    // Qt's commit renames even when the buffered last write failed: flush first
    if (!file.flush())
        file.cancelWriting();
    return file.commit();
}
