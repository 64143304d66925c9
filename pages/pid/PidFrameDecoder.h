#ifndef PIDFRAMEDECODER_H
#define PIDFRAMEDECODER_H

#include "PidFrameReader.h"
#include "PidReceivedFrame.h"

#include <QByteArray>

// One parsing pass over the receive buffer: cuts frames with PidFrameReader and
// decides, frame by frame, whether the page applies it, skips it or ends the pass.
// The pass ends, with the frame consumed and the rest of the buffer left for the next
// reception, on
//  - a frame of 4 bytes or fewer (among them the empty frame of a length of 0 or
//    below, which consumes nothing, so the link stalls on that header for good);
//  - a channel byte outside 1..5;
//  - a command above 6;
//  - a RecvActualValue while display is stopped: one sample is dropped per reception
//    and the plot stands still while the user inspects it.
// A command 0, and a frame of 5 to 9 bytes, is skipped. The checksum is not looked
// at: a frame with a false sum is applied like a good one.
class PidFrameDecoder
{
public:
    enum Verdict {
        Apply,   // the page applies the decoded frame, then the pass goes on
        Skip,    // nothing to apply, the pass goes on
        EndPass, // nothing to apply, the rest waits for the next reception
    };

    PidFrameDecoder(const QByteArray &buffer, const QByteArray &header, bool displayStopped)
        : m_reader(buffer, header)
        , m_displayStopped(displayStopped)
    {
    }

    // the next frame to apply; false when the pass is over
    bool next(PidReceivedFrame &out);
    // bytes the pass consumed, to be removed from the front of the buffer
    int consumed() const { return m_reader.consumed(); }

    // what one cut frame means
    static Verdict decode(const QByteArray &frame, bool displayStopped, PidReceivedFrame &out);

private:
    PidFrameReader m_reader;
    bool m_displayStopped;
    bool m_over = false;
};

#endif // PIDFRAMEDECODER_H
