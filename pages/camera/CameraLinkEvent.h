#ifndef CAMERALINKEVENT_H
#define CAMERALINKEVENT_H

#include <QByteArray>
#include <QString>

// One thing the page has to do because of received bytes, in the order the decoder
// reports them.
struct CameraLinkEvent {
    enum Kind {
        RestartFrameTimer, // a frame or a JPEG begins
        Notify,            // status bar text, level 0 (a format announcement)
        DrawRaw,           // slot, data = the whole packet, drawn as RGB888
        DrawRgb565,        // slot, data = packet, payload at offset/length
        DrawJpeg,          // data = the cut JPEG bytes, always slot 0
        FrameDone,         // the frame counter grows
        RefreshCounts,     // signalRefresCounts(1)
        Reply,             // a CMD_REPLY frame with value as its status
        RegisterValue,     // regId, value: a good read answer
        Toast,             // text, for 2000 ms
    };
    Kind kind;
    int slot = 0;
    unsigned int value = 0;
    unsigned short regId = 0;
    int offset = 0;
    int length = 0;
    QByteArray data;
    QString text;
};

#endif // CAMERALINKEVENT_H
