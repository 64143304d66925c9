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
    QByteArray frame = NumberTool::baFromInt32SmallEndian(static_cast<int>(HeaderValue));
    frame.append(static_cast<char>(channel));
    frame.append(NumberTool::baFromInt32SmallEndian(payload.size() + MinimumSize));
    frame.append(static_cast<char>(cmd));
    frame.append(payload);
    frame.append(static_cast<char>(getCheckSum(frame)));
    return frame;
}
