#include "PlotCsvWriter.h"
#include "PlotSampleStore.h"

#include <QSaveFile>

#include <charconv>
#include <cmath>

namespace {
QByteArray csvField(const QString &text)
{
    QByteArray f = text.toUtf8();
    if (f.contains(',') || f.contains('"') || f.contains('\n') || f.contains('\r'))
        f = '"' + f.replace('"', "\"\"") + '"';
    return f;
}

void appendNumber(QByteArray &out, double v, bool fixedMicro)
{
    char buf[64];
    const auto r = fixedMicro ? std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, 6)
                              : std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, int(r.ptr - buf));
}
}

QString PlotCsvWriter::csvPath(const QString &path)
{
    return path.endsWith(".csv", Qt::CaseInsensitive) ? path : path + ".csv";
}

bool PlotCsvWriter::write(const PlotSampleStore &store, const QString &path, QString *error, QString *written)
{
    const QString target = csvPath(path);
    if (written)
        *written = target;
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = QString("无法创建 %1：%2").arg(target, file.errorString());
        return false;
    }
    const int channels = store.channelCount();
    QByteArray out = "time_s";
    for (int c = 0; c < channels; ++c)
        out += ',' + csvField(store.name(c));
    out += '\n';
    bool ok = true;
    for (int r = 0; r < store.rows() && ok; ++r) {
        appendNumber(out, store.time(r), true);
        for (int c = 0; c < channels; ++c) {
            out += ',';
            const double v = store.value(c, r);
            if (!std::isnan(v))
                appendNumber(out, v, false);
        }
        out += '\n';
        if (out.size() > (1 << 20)) {
            ok = file.write(out) == out.size();
            out.resize(0);
        }
    }
    ok = ok && file.write(out) == out.size();
    if (!ok || !file.commit()) {
        *error = QString("无法写入 %1：%2").arg(target, file.errorString());
        return false;
    }
    return true;
}
