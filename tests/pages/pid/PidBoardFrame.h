#ifndef PIDBOARDFRAME_H
#define PIDBOARDFRAME_H

#include <QByteArray>

#include <cstring>

// What the board puts on the wire (x86: little-endian), written independently of the
// program's builder; sumDelta falsifies the checksum.
inline QByteArray boardFrame(int channel, int cmd, const QByteArray &payload = QByteArray(), int sumDelta = 0)
{
    const qint32 len = payload.size() + 11;
    QByteArray f = "LARK" + QByteArray(1, char(channel)) + QByteArray(reinterpret_cast<const char *>(&len), 4)
                   + QByteArray(1, char(cmd)) + payload;
    int sum = sumDelta;
    for (char ch : qAsConst(f))
        sum += uchar(ch);
    return f.append(char(sum & 0xFF));
}

template <class T>
inline QByteArray le(T v) { return QByteArray(reinterpret_cast<const char *>(&v), sizeof v); }

inline QByteArray withLength(QByteArray frame, qint32 len)
{
    std::memcpy(frame.data() + 5, &len, 4);
    return frame;
}

#endif // PIDBOARDFRAME_H
