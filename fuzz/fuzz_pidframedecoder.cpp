// The PID page's receive path: chunks appended to the buffer, one decoding pass per
// chunk, consumed bytes dropped after the pass.
#include "FuzzInput.h"
#include "PidFrameDecoder.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    const bool displayStopped = in.byte() & 1;
    const QByteArray header("LARK");
    QByteArray buffer;
    QByteArray chunk;
    while (in.chunk(chunk)) {
        buffer.append(chunk);
        PidFrameDecoder decoder(buffer, header, displayStopped);
        PidReceivedFrame frame;
        while (decoder.next(frame)) {
            // the page indexes its five channels with this
            if (frame.channel < 0 || frame.channel > 4)
                abort();
        }
        if (decoder.consumed() < 0 || decoder.consumed() > buffer.size())
            abort();
        buffer.remove(0, decoder.consumed());
    }
    return 0;
}
