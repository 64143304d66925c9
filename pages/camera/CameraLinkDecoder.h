#ifndef CAMERALINKDECODER_H
#define CAMERALINKDECODER_H

#include "CameraImageFormat.h"
#include "CameraLinkEvent.h"

#include <QByteArray>
#include <vector>

// The receive side of the camera link: chunks in, the things the page must do out.
// It owns the receive state the page shows under its own names (buffer, collecting
// flag, frame length, JPEG marker positions, the two format records).
//
// Framed mode keeps the link's odd rules, on which boards are built:
//  - a chunk that begins with "LARK" throws away whatever was collected;
//  - a buffer that does not begin with "LARK" outside an image is dropped whole;
//  - an image frame is taken only when a later chunk arrives, even if its first
//    chunk held it whole;
//  - format announcements and read answers must arrive whole, or are lost;
//  - a frame that fails its CRC or length is answered with status 1, and unless the
//    check is enforced it is then drawn and answered with status 0 as well.
// Length fields are not validated; a length below 12 consumes at most what it
// names, so a bad board cannot make a pass loop.
//
// JPEG mode cuts the buffer at the first EOI (0xFF 0xD9), one image a chunk. Marker
// searches start where the previous search ended, less one byte for a marker split
// over two chunks, so a long stream without markers costs linear time. A stream that
// never ends its image is held to MaximumJpegImage: past it, the bytes up to the last
// SOI that leaves no more than that are let go (all but the last byte when there is
// none, which may open a marker) and the page is told.
class CameraLinkDecoder
{
public:
    struct Options {
        bool jpegMode = false;
        bool crcCheck = false;   // "CRC-16": drop a frame that fails
        int valueLength = 1;     // "寄存器值长度", for the size of read answers
    };

    // The longest image frame collected: a 4096 x 4096 RGB888 image and its frame. A
    // frame is only looked at once the buffer holds it whole, so a longer length field
    // (a broken or lying board) would take the memory with it: such a frame is answered
    // as failing the check and its bytes are let go until the next head.
    static constexpr qint32 MaximumImageFrame = 4096 * 4096 * 3 + 12;
    // The most kept while a JPEG waits for its EOI: above the raw frame's bound, since
    // a JPEG of noise at full quality can outgrow its raw pixels.
    static constexpr qint32 MaximumJpegImage = 64 << 20;

    // one received chunk; what the page must do is appended to events
    void receive(const QByteArray &chunk, const Options &options, std::vector<CameraLinkEvent> &events);

    // collecting stops and the buffer is emptied (the marker positions stay)
    void stopRecvImage();
    // what opening or closing a link does: stopRecvImage and a frame length of 0
    void resetLink();

    QByteArray &recvBuffer() { return m_recvBuffer; }
    bool &recvImage() { return m_bRecvImage; }
    qint32 &frameLen() { return m_nFrameLen; }
    qint32 &jpegStart() { return m_nJpegStart; }
    qint32 &jpegEnd() { return m_nJpegEnd; }
    CameraImageFormat (&imageFormats())[2] { return m_imgFormat; }

private:
    void parseProtocolData(const Options &options, std::vector<CameraLinkEvent> &events);
    // Case "collecting": false when the pass ends here
    bool takeImage(const Options &options, std::vector<CameraLinkEvent> &events);
    // Case "expecting a head"
    void parseHead(const Options &options, std::vector<CameraLinkEvent> &events);
    void parseJpegData(int appended, std::vector<CameraLinkEvent> &events);
    // the bound of a JPEG that does not end; the buffer holds no EOI when called
    void dropUnendedJpeg(std::vector<CameraLinkEvent> &events);
    void removeFront(qint64 n);

    QByteArray m_recvBuffer;
    bool m_bRecvImage = false;
    qint32 m_nFrameLen = 0;
    qint32 m_nJpegStart = -1;
    qint32 m_nJpegEnd = -1;
    CameraImageFormat m_imgFormat[2];
    // where the next SOI / EOI search may begin: everything before is known free of it
    int m_soiScanFrom = 0;
    int m_eoiScanFrom = 0;
};

#endif // CAMERALINKDECODER_H
