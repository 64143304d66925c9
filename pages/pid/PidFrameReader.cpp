#include "PidFrameReader.h"

#include "NumberTool.h"

#include <QtGlobal>

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
