// A remote serial port's server replies: telnet negotiation, COM port
// subnegotiations and doubled 0xFF among the serial data, in chunks split anywhere.
#include "FuzzInput.h"
#include "TelnetComPort.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    TelnetComPort chunked;
    QByteArray serial, all;
    QByteArray chunk;
    while (in.chunk(chunk)) {
        serial += chunked.feed(chunk);
        all += chunk;
    }
    // the split never changes what comes out
    TelnetComPort whole;
    if (whole.feed(all) != serial || whole.takeOutgoing() != chunked.takeOutgoing())
        abort();
    const QList<TelnetComPort::Reply> replies = chunked.takeReplies();
    if (whole.takeReplies() != replies)
        abort();
    // a reply re-sent as the server would is read back the same
    for (const TelnetComPort::Reply &r : replies) {
        TelnetComPort again;
        QByteArray bytes = TelnetComPort::command(TelnetComPort::Command(r.command), r.value);
        bytes[3] = char(r.command + 100);
        if (!again.feed(bytes).isEmpty() || again.takeReplies() != QList<TelnetComPort::Reply>{r})
            abort();
    }
    // serial data escaped for the wire comes back unchanged
    TelnetComPort echo;
    if (echo.feed(TelnetComPort::escape(serial)) != serial)
        abort();
    return 0;
}
