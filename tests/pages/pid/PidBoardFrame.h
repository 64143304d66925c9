#ifndef PIDBOARDFRAME_H
#define PIDBOARDFRAME_H

#include <QByteArray>

template <class T>
inline QByteArray le(T v) { return QByteArray(reinterpret_cast<const char *>(&v), sizeof v); }

// What the board puts on the wire (x86: little-endian), written independently of the
// program's builder; sumDelta falsifies the checksum.
inline QByteArray boardFrame(int channel, int cmd, const QByteArray &payload = QByteArray(), int sumDelta = 0)
{
    QByteArray f = "LARK" + QByteArray(1, char(channel)) + le(qint32(payload.size() + 11)) + QByteArray(1, char(cmd)) + payload;
    int sum = sumDelta;
    for (char ch : qAsConst(f))
        sum += uchar(ch);
    return f.append(char(sum & 0xFF));
}

inline QByteArray withLength(QByteArray frame, qint32 len) { return frame.replace(5, 4, le(len)); }

#endif // PIDBOARDFRAME_H
