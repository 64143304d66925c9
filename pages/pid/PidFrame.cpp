#include "PidFrame.h"

#include "NumberTool.h"

#include <QtGlobal>

int PidFrame::getCheckSum(QByteArray frame)
{
    unsigned char sum = 0;
    for (const char ch : qAsConst(frame))
        sum = static_cast<unsigned char>(sum + static_cast<unsigned char>(ch));
    return sum;
}

QByteArray PidFrame::build(unsigned char cmd, unsigned char channel, const QByteArray &payload)
{
    QByteArray frame = header();
    frame.append(static_cast<char>(channel));
    frame.append(NumberTool::baFromInt32SmallEndian(payload.size() + MinimumSize));
    frame.append(static_cast<char>(cmd));
    frame.append(payload);
    frame.append(static_cast<char>(getCheckSum(frame)));
    return frame;
}

QByteArray PidFrame::header()
{
    return NumberTool::baFromInt32SmallEndian(static_cast<int>(HeaderValue));
}

unsigned char PidFrame::channelByte(int comboIndex)
{
    return static_cast<unsigned char>((comboIndex + 1) & 255);
}

QByteArray PidFrame::pidPayload(float p, float i, float d)
{
    // the routine named for big endian is the one that leaves the bytes unswapped
    return NumberTool::baFromFloatBigEndian(p) + NumberTool::baFromFloatBigEndian(i)
           + NumberTool::baFromFloatBigEndian(d);
}

QByteArray PidFrame::valuePayload(int value)
{
    return NumberTool::baFromInt32SmallEndian(value);
}
