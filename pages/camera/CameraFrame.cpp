#include "CameraFrame.h"

#include "NumberTool.h"

QByteArray CameraFrame::head()
{
    return QByteArray("LARK", 4);
}

QByteArray CameraFrame::build(unsigned char cmd, unsigned char addr, const QByteArray &data)
{
    QByteArray frame;
    frame.reserve(data.size() + MinimumSize);
    frame.append(head());
    frame.append(char(addr));
    frame.append(le(unsigned(data.size() + MinimumSize), 4));
    frame.append(char(cmd));
    frame.append(data);
    frame.append(NumberTool::getCRCData(frame));
    return frame;
}

QString CameraFrame::imageSuffix(unsigned char format)
{
    switch (format) {
    case 2: return "*.bmp";
    case 3: return "*.png";
    case 4: return "RGB565";
    case 5: return "RGB888";
    case 7: return "自定义";
    default: return "*.jpg";
    }
}

unsigned int CameraFrame::readLe(const QByteArray &data, int pos, int n)
{
    unsigned int value = 0;
    for (int i = 0; i < n && i < 4; ++i) {
        const int at = pos + i;
        if (at >= 0 && at < data.size())
            value |= unsigned(uchar(data.at(at))) << (8 * i);
    }
    return value;
}

QByteArray CameraFrame::le(unsigned int value, int n)
{
    QByteArray out(n, 0);
    for (int i = 0; i < n; ++i)
        out[i] = char(i < 4 ? (value >> (8 * i)) & 0xFF : 0);
    return out;
}
