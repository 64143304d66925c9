#ifndef CAMERABOARD_H
#define CAMERABOARD_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QString>

class QTimer;
class SimEndpoint;

// A board with a camera: announces its image format, streams a moving test pattern
// and keeps a register map that the page reads and writes.
//
// The page takes an image frame only when a later chunk arrives, and drops whatever
// it holds when a chunk begins with a head. So each image goes out without its last
// byte, which follows alone once the rest has left: the page's chunk that completes
// the frame does not begin with a head. Every frame after it begins a write of its
// own, so a page that fell behind and merged chunks is back in step at the next head
// instead of drawing one frame late for good.
class CameraBoard : public QObject
{
    Q_OBJECT
public:
    enum Format { Rgb565, Raw, Jpeg };
    struct Options {
        Format format = Rgb565;
        int width = 320;
        int height = 240;
        double fps = 10;
        int device = 0;       // address byte of the board's frames, 0 or 1
        int addrLen = 1;      // register address bytes of a write
        int valueLen = 1;     // register value bytes of writes and read answers
        QString regsFile;     // the page's register table, GB18030 CSV
        bool verbose = false; // one line per reply instead of one a second
    };

    CameraBoard(SimEndpoint *endpoint, const Options &options, QObject *parent = nullptr);

    // the register table file: header line, then "number,address,value,description,"
    bool loadRegisters(const QString &path, QString *error);
    const QMap<unsigned, unsigned> &registers() const { return m_regs; }

    // the colour the test pattern has at (x, y) in frame n
    static void patternPixel(int x, int y, int n, int width, int height, uchar rgb[3]);
    // the image frame of frame n, whole; one implementation for the simulator and
    // its benchmark
    QByteArray imageFrame(int n) const;
    QByteArray formatFrame() const;

    void start();
    quint64 framesSent() const { return m_sent; }
    quint64 framesSkipped() const { return m_skipped; }

private slots:
    void tick();
    void received(const QByteArray &data);
    void peerChanged(bool present);
    void report();
    void sendTail();

private:
    void send(const QByteArray &frame, bool image);
    int tailGapMs() const;
    void handleFrame(const QByteArray &frame);
    QByteArray rgbImage(int n, int stride) const;

    SimEndpoint *m_endpoint;
    Options m_opt;
    QMap<unsigned, unsigned> m_regs;
    QByteArray m_heldByte;
    QByteArray m_control; // short frames waiting for an image to pass
    QByteArray m_inBuffer;
    QTimer *m_timer;
    QTimer *m_tailTimer;
    QElapsedTimer m_clock;
    quint64 m_sent = 0;
    quint64 m_skipped = 0;
    quint64 m_ticks = 0;
    int m_repliesOk = 0;
    int m_repliesBad = 0;
};

#endif // CAMERABOARD_H
