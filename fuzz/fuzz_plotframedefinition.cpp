// A frame definition file: anything accepted is usable (it saves and loads back the
// same, and a frame built from it is read without touching memory outside it).
#include "FuzzInput.h"
#include "PlotFrameParser.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray json(reinterpret_cast<const char *>(data), int(size));
    PlotFrameDefinition def, again;
    QString error;
    if (!PlotFrameDefinition::fromJson(json, &def, &error)) {
        if (error.isEmpty())
            abort();
        return 0;
    }
    if (!def.validate().isEmpty() || !PlotFrameDefinition::fromJson(def.toJson(), &again, &error)
        || again.toJson() != def.toJson())
        abort();
    QVector<double> values;
    for (int i = 0; i < def.channels.size(); ++i)
        values << i * 3.5 - 7;
    const QByteArray frame = def.buildFrame(values);
    PlotFrameParser parser(def);
    PlotBatch batch;
    parser.feed(frame + frame.left(frame.size() / 2) + frame, batch);
    return 0;
}
