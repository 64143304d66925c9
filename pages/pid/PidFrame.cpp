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

bool PidFrameReader::next(QByteArray &frame)
{
    const int size = m_buffer.size();
    // dropping byte by byte until the header leads is the same as jumping to the
    // first header, or to the last three bytes when there is none
    const int at = m_buffer.indexOf(m_header, m_pos);
    if (at < 0) {
        m_pos = qMax(m_pos, size - 3);
        return false;
    }
    m_pos = at;
    if (size - m_pos <= 10)
        return false;

    const int length = NumberTool::int32FromByteArray(m_buffer.mid(m_pos + 5, 4));
    if (length <= 0) {
        frame.clear();
        return true;
    }
    const int take = qMin(length, size - m_pos);
    frame = m_buffer.mid(m_pos, take);
    m_pos += take;
    return true;
}
