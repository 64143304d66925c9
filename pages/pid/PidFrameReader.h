#ifndef PIDFRAMEREADER_H
#define PIDFRAMEREADER_H

#include <QByteArray>

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
    // the buffer is read where it lies and must outlive the reader; the header is
    // held by value (a shared copy), so a literal may be passed
    const QByteArray &m_buffer;
    const QByteArray m_header;
    int m_pos = 0;
};

#endif // PIDFRAMEREADER_H
