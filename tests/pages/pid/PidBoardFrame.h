#ifndef PIDBOARDFRAME_H
#define PIDBOARDFRAME_H

#include <QStringList>
#include <QTextCodec>

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

// the exported file for these point lines of channels 1 to 5 (missing ones empty): GB18030, no BOM
inline QByteArray pidCsv(const QStringList &rows)
{
    QString text = "PID调试数据\n";
    for (int n = 1; n <= 5; ++n)
        text += QString("通道 %1 数据如下：\n序号,实际值,目标值,差值\n").arg(n) + rows.value(n - 1) + "\n\n";
    return QTextCodec::codecForName("GB18030")->fromUnicode(text);
}

#endif // PIDBOARDFRAME_H
