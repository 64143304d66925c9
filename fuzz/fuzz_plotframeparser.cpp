// The plot's frame reader on chunks, under the shipped definitions and a few more:
// whatever the cuts, the frames and counts are those of the whole stream read at once.
#include "FuzzInput.h"
#include "PlotFrameParser.h"

#include <cstdlib>
#include <cstring>

static const PlotFrameDefinition &definition(int which)
{
    static const char *const json[] = {
        R"({"start":"AA55","length":{"mode":"field","offset":2,"size":1,"counts":"payload"},"maxLength":64,
            "checksum":{"type":"crc16-modbus"},"channels":[{"offset":3,"type":"u16"},{"offset":5,"type":"i16","scale":0.001},
            {"offset":7,"type":"f32"},{"offset":11,"type":"i16","endian":"big"}]})",
        R"({"start":"4C41524B","length":{"mode":"field","offset":5,"size":4,"counts":"frame"},"maxLength":64,
            "checksum":{"type":"sum8"},"channels":[{"offset":4},{"offset":9},{"offset":10,"type":"i32"}]})",
        R"({"start":"24","end":"0D0A","length":{"mode":"end"},"maxLength":40,"checksum":{"type":"xor8"},
            "channels":[{"offset":1,"type":"f64","endian":"big"},{"offset":9,"type":"u32"}]})",
        R"({"start":"7E","length":{"bytes":12},"checksum":{"type":"crc32","from":1,"at":6,"endian":"big"},
            "channels":[{"offset":1,"type":"i8"},{"offset":10,"type":"u16","endian":"big"}]})",
        R"({"start":"5A","end":"A5","length":{"mode":"field","offset":1,"size":2,"endian":"big","counts":"after-field"},
            "maxLength":300,"checksum":{"type":"crc16-ccitt","endian":"big"},"channels":[{"offset":3,"type":"f32"}]})",
    };
    static const QVector<PlotFrameDefinition> defs = [] {
        QVector<PlotFrameDefinition> out(5);
        QString error;
        for (int i = 0; i < 5; ++i)
            if (!PlotFrameDefinition::fromJson(json[i], &out[i], &error))
                abort();
        return out;
    }();
    return defs.at(which % 5);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    const PlotFrameDefinition def = definition(in.byte());
    PlotFrameParser chunked(def), whole(def);
    PlotBatch a, b;
    const QByteArray all = in.feedBoth(chunked, a, whole, b);
    const PlotFrameParser::Counts &x = chunked.counts(), &y = whole.counts();
    // bitwise: an f64 or f32 channel may carry NaN, which equals nothing
    const size_t bytes = size_t(a.values.size()) * sizeof(double);
    if (a.values.size() != b.values.size() || std::memcmp(a.values.constData(), b.values.constData(), bytes) != 0 || a.channels != b.channels || a.recordEnds != b.recordEnds || x.good != y.good
        || x.badChecksum != y.badChecksum || x.dropped != y.dropped || x.skippedBytes != y.skippedBytes
        || x.skippedBytes > all.size() || x.good != a.records())
        abort();
    return 0;
}
