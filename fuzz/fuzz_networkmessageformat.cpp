// The network page's receive view: a received chunk as an ASCII line and as hex, and
// a port field's text.
#include "FuzzInput.h"
#include "MyApp.h"
#include "NetworkMessageFormat.h"
#include "NumberTool.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput in(data, size);
    MyApp::m_nTextCodecIndex = in.byte() & 1;
    NumberTool::m_newLine = "\r\n";
    const QByteArray bytes = in.rest();
    NetworkMessageFormat::asciiLine(NetworkMessageFormat::serverSenderName(), bytes);
    NetworkMessageFormat::hexText(bytes);
    NetworkMessageFormat::portFromText(QString::fromUtf8(bytes));
    return 0;
}
