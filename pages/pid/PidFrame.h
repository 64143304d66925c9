#ifndef PIDFRAME_H
#define PIDFRAME_H

#include <QByteArray>

// State of one PID channel as last sent or reported.
struct PidChannelState
{
    float p;
    float i;
    float d;
    int target;
    int period;
};

// The frame of the PID board link, used in both directions:
//   "LARK" | channel (1..5) | length int32 LE (whole frame) | command | payload | sum8
// Building and cutting live here so the page keeps only what a frame does to it.
class PidFrame
{
public:
    enum Command {
        RecvTargetValue = 1,
        RecvActualValue = 2,
        RecvPidValues = 3,
        RecvStarted = 4,
        RecvStopped = 5,
        RecvPeriod = 6,
        SendPidValues = 0x10,
        SendTargetValue = 0x11,
        SendStart = 0x12,
        SendStop = 0x13,
        SendReset = 0x14,
        SendPeriod = 0x15,
    };

    static constexpr unsigned int HeaderValue = 0x4B52414C; // "LARK" read little-endian
    static constexpr int MinimumSize = 11;

    // low 8 bits of the sum of every byte; 0 for an empty array
    static int getCheckSum(QByteArray frame);
    // header, channel, length (payload + 11), command, payload, checksum
    static QByteArray build(unsigned char cmd, unsigned char channel, const QByteArray &payload);
};

// Cuts frames out of a receive buffer the way the board link has always done it,
// without moving the buffer's bytes for every frame: the reader advances an offset
// and the caller drops what was consumed once, when it stops reading.
//
// One call of next():
//  - hunt: bytes before the header are consumed; when no header is in sight the last
//    three bytes are kept, as they may begin a header that is split across receptions;
//  - wait while 10 bytes or fewer follow the header;
//  - the length field is taken as it is: the frame is that many bytes, or what there
//    is; a length of 0 or below yields an empty frame and consumes nothing, which
//    stalls the link on that header for good.
class PidFrameReader
{
public:
    PidFrameReader(const QByteArray &buffer, const QByteArray &header)
        : m_buffer(buffer)
        , m_header(header)
    {
    }

    // false: wait for more bytes; true: frame holds the next frame (possibly empty)
    bool next(QByteArray &frame);
    // bytes consumed so far, to be removed from the front of the buffer
    int consumed() const { return m_pos; }
    bool atEnd() const { return m_pos >= m_buffer.size(); }

private:
    const QByteArray &m_buffer;
    const QByteArray &m_header;
    int m_pos = 0;
};

#endif // PIDFRAME_H
