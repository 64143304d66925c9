// The serial page's receive path: the hold rule for a chunk that may end inside a
// character, then the text shown, in both codecs and both views.
#include "FuzzInput.h"
#include "MyApp.h"
#include "SerialRecvRule.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    const quint8 options = in.byte();
    const bool asciiShown = options & 1;
    MyApp::m_nTextCodecIndex = (options >> 1) & 1;
    QByteArray waiting;
    QByteArray chunk;
    while (in.chunk(chunk)) {
        if (SerialRecvRule::holdChunk(chunk, asciiShown, waiting)) {
            waiting = chunk;
            continue;
        }
        const QByteArray shown = waiting + chunk;
        waiting.clear();
        SerialRecvRule::displayText(shown, !asciiShown);
    }
    SerialRecvRule::displayText(waiting, !asciiShown);
    return 0;
}
