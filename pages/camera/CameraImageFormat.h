#ifndef CAMERAIMAGEFORMAT_H
#define CAMERAIMAGEFORMAT_H

// What one device slot last announced; the page knows it as s_img_format. Every
// slot starts as RGB565, 320 by 240, so a board may send images without announcing.
struct CameraImageFormat {
    unsigned char format = 4;
    unsigned char device = 0;
    unsigned short width = 320;
    unsigned short height = 240;
};

#endif // CAMERAIMAGEFORMAT_H
