// The camera page's receive path in framed and JPEG mode: chunks through the link
// decoder, and the images it hands out drawn as the page draws them: of one chunk's
// images, the last for each slot (the page shows no other).
#include "CameraImageDecoder.h"
#include "CameraLinkDecoder.h"
#include "FuzzInput.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    const quint8 flags = in.byte();
    CameraLinkDecoder::Options options;
    options.jpegMode = flags & 1;
    options.crcCheck = flags & 2;
    options.valueLength = (flags >> 2) % 5;
    const bool bigEndian = flags & 0x40;
    CameraLinkDecoder decoder;
    std::vector<CameraLinkEvent> events;
    QByteArray chunk;
    while (in.chunk(chunk)) {
        if (flags & 0x80 && chunk.size() == 1)
            decoder.resetLink();
        events.clear();
        decoder.receive(chunk, options, events);
        int last[2] = {-1, -1};
        for (int i = 0; i < int(events.size()); ++i) {
            const CameraLinkEvent &e = events[size_t(i)];
            if (e.slot < 0 || e.slot > 1)
                abort();
            if (e.kind == CameraLinkEvent::DrawRaw || e.kind == CameraLinkEvent::DrawRgb565)
                last[e.slot] = i;
        }
        for (int i = 0; i < int(events.size()); ++i) {
            const CameraLinkEvent &e = events[size_t(i)];
            if (i != last[e.slot])
                continue;
            const CameraImageFormat &f = decoder.imageFormats()[e.slot];
            if (e.kind == CameraLinkEvent::DrawRaw) {
                CameraImageDecoder::rawRgb888(f.width, f.height, e.data);
            } else if (e.kind == CameraLinkEvent::DrawRgb565) {
                if (e.offset < 0 || e.length < 0 || e.offset + e.length > e.data.size())
                    abort();
                CameraImageDecoder::rgb565(f.width, f.height, e.data.constData() + e.offset, e.length, bigEndian);
            }
        }
    }
    return 0;
}
