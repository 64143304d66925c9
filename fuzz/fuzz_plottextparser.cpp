// The plot's line reader on chunks: whatever the cuts, the records are those of the
// whole stream read at once, and every value names a channel that exists.
#include "FuzzInput.h"
#include "PlotTextParser.h"

#include <QTextCodec>

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    const quint8 options = in.byte();
    QTextCodec *codec = QTextCodec::codecForName(options & 0x80 ? "GB18030" : "UTF-8");
    const auto separator = PlotTextParser::Separator(options % 5);
    PlotTextParser chunked(codec), whole(codec);
    chunked.setSeparator(separator);
    whole.setSeparator(separator);
    PlotBatch a, b;
    const QByteArray all = in.feedBoth(chunked, a, whole, b);
    for (int i = 0; i < a.values.size(); ++i)
        if (a.channels.at(i) < 0 || a.channels.at(i) > qMin(chunked.names().size(), int(PlotTextParser::MaxNames))
            || !std::isfinite(a.values.at(i)))
            abort();
    if (all.size() < PlotTextParser::MaxLineLength
        && (a.values != b.values || a.recordEnds != b.recordEnds || chunked.names() != whole.names()
            || chunked.badLines() != whole.badLines()))
        abort();
    return 0;
}
