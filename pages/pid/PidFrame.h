#ifndef PIDFRAME_H
#define PIDFRAME_H

#include <QByteArray>

// The frame of the PID board link, used in both directions:
//   "LARK" | channel (1..5) | length int32 LE (whole frame) | command | payload | sum8
// Building lives here; PidFrameReader cuts received frames and PidFrameDecoder
// decides what each one means, so the page keeps only what a frame does to it.
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

    // the four header bytes, as the receive side compares them
    static QByteArray header();
    // the channel byte of a channel combo index: commands always go to the channel
    // selected at that moment, and the byte wraps rather than refuses
    static unsigned char channelByte(int comboIndex);
    // P, I and D as three floats, each in host memory order (least significant byte
    // first on the little-endian hosts the board is driven from)
    static QByteArray pidPayload(float p, float i, float d);
    // a target or a period: one int32, little-endian
    static QByteArray valuePayload(int value);
};

#endif // PIDFRAME_H
