#include "SerialRecvRule.h"
#include "MyApp.h"
#include "NumberTool.h"

bool SerialRecvRule::holdChunk(const QByteArray &chunk, bool asciiShown, const QByteArray &waiting)
{
    if (!asciiShown || chunk.isEmpty() || !waiting.isEmpty())
        return false;
    return uchar(chunk.at(chunk.size() - 1)) > 0x80;
}

QString SerialRecvRule::displayText(const QByteArray &data, bool hexShown)
{
    return hexShown ? NumberTool::byteToHex(data) : MyApp::toUnicode(data);
}

QString SerialRecvRule::logTag(const QTime &time, bool asciiShown)
{
    return time.toString("[hh:mm:ss.zzz]") + (asciiShown ? " ASCII >" : " HEX >");
}
