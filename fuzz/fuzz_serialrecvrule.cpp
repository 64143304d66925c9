// The serial page's receive path: the hold rule for a chunk that may end inside a
// character, the text shown, in both codecs and both views, and what the view and
// the saved text make of it (line breaks, the view's cut and its bounded lines, the
// compressed text kept for saving).
#include "FuzzInput.h"
#include "MyApp.h"
#include "QtCompactLog.h"
#include "RecvViewText.h"
#include "SerialRecvRule.h"

#include <cstdlib>

namespace {

// view is text with line breaks added, and nothing else changed
bool readsAsWithBreaks(const QString &view, const QString &text)
{
    int j = 0;
    for (const QChar c : view) {
        if (j < text.size() && c == text.at(j))
            ++j;
        else if (c != QLatin1Char('\n'))
            return false;
    }
    return j == text.size();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    const quint8 options = in.byte();
    const bool asciiShown = options & 1;
    MyApp::m_nTextCodecIndex = (options >> 1) & 1;
    // small blocks and bounds, so that short inputs cross them
    const int lineBound = 1 + (options >> 2);
    QtCompactLog log(1 + in.byte());
    QString whole;
    RecvViewText::ViewRun run;
    QByteArray waiting;
    QByteArray chunk;
    auto show = [&](const QByteArray &bytes) {
        const QString text = SerialRecvRule::displayText(bytes, !asciiShown);
        const QString plain = RecvViewText::plainTextOf(text);
        log.append(plain);
        whole += plain;
        const QString view = RecvViewText::viewForm(text, lineBound, run);
        // the view reads as the text, but for the breaks the bound adds
        if (!readsAsWithBreaks(RecvViewText::plainTextOf(view), plain))
            abort();
        const int start = RecvViewText::tailStart(text, lineBound * 3);
        if (start < 0 || start > text.size())
            abort();
    };
    while (in.chunk(chunk)) {
        if (SerialRecvRule::holdChunk(chunk, asciiShown, waiting)) {
            waiting = chunk;
            continue;
        }
        const QByteArray shown = waiting + chunk;
        waiting.clear();
        show(shown);
    }
    show(waiting);
    // lone surrogates (no codec makes them) are the one thing UTF-8 cannot keep
    if (log.text().toUtf8() != whole.toUtf8() || log.length() != whole.size())
        abort();
    return 0;
}
