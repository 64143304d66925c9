#include "PidFrameDecoder.h"

#include "NumberTool.h"
#include "PidFrame.h"

bool PidFrameDecoder::next(PidReceivedFrame &out)
{
    QByteArray frame;
    // a loop, not a call per frame: a reception of a megabyte holds some 70000 frames
    while (!m_over && !m_reader.atEnd() && m_reader.next(frame)) {
        switch (decode(frame, m_displayStopped, out)) {
        case Apply:
            return true;
        case Skip:
            break;
        case EndPass:
            m_over = true;
            break;
        }
    }
    m_over = true;
    return false;
}

PidFrameDecoder::Verdict PidFrameDecoder::decode(const QByteArray &frame, bool displayStopped, PidReceivedFrame &out)
{
    const unsigned char cmd = frame.size() > 9 ? static_cast<unsigned char>(frame.at(9)) : 0;
    if (frame.size() <= 4)
        return EndPass;
    const unsigned char c = static_cast<unsigned char>(static_cast<unsigned char>(frame.at(4)) - 1);
    if (c > 4)
        return EndPass;
    if (cmd > PidFrame::RecvPeriod)
        return EndPass;
    if (cmd == 0)
        return Skip;
    if (cmd == PidFrame::RecvActualValue && displayStopped)
        return EndPass;

    out = PidReceivedFrame();
    out.command = cmd;
    out.channel = c;
    switch (cmd) {
    case PidFrame::RecvTargetValue:
    case PidFrame::RecvActualValue:
    case PidFrame::RecvPeriod:
        out.value = NumberTool::int32FromByteArray(frame.mid(10, 4));
        break;
    case PidFrame::RecvPidValues:
        out.p = NumberTool::floatFromSmallEndian(frame.mid(10, 4));
        out.i = NumberTool::floatFromSmallEndian(frame.mid(14, 4));
        out.d = NumberTool::floatFromSmallEndian(frame.mid(18, 4));
        break;
    default:
        break;
    }
    return Apply;
}
