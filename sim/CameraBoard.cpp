#include "CameraBoard.h"

#include "CameraFrame.h"
#include "NumberTool.h"
#include "SimEndpoint.h"
#include "SimLog.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTextCodec>
#include <QTimer>

namespace {
// a register map as a sensor might hold it, for a run without --regs
const unsigned s_defaultRegs[][2] = {
    {0x0A, 0x76}, {0x0B, 0x73}, {0x11, 0x01}, {0x12, 0x00}, {0x13, 0x8F},
    {0x3A, 0x04}, {0x40, 0xD0}, {0x55, 0x00}, {0x56, 0x40}, {0x6B, 0x0A},
};
// classic colour bars of the pattern's upper half
const uchar s_bars[8][3] = {
    {255, 255, 255}, {255, 255, 0}, {0, 255, 255}, {0, 255, 0},
    {255, 0, 255}, {255, 0, 0}, {0, 0, 255}, {0, 0, 0},
};
// shortest pause between an image and its last byte
constexpr int TailGapMs = 2;
// read answer status for an address the map does not hold
constexpr char NoSuchRegister = 2;
}

CameraBoard::CameraBoard(SimEndpoint *endpoint, const Options &options, QObject *parent)
    : QObject(parent)
    , m_endpoint(endpoint)
    , m_opt(options)
    , m_timer(new QTimer(this))
    , m_tailTimer(new QTimer(this))
{
    for (const auto &r : s_defaultRegs)
        m_regs.insert(r[0], r[1]);
    m_timer->setTimerType(Qt::PreciseTimer);
    m_timer->setSingleShot(true);
    m_tailTimer->setSingleShot(true);
    connect(m_tailTimer, SIGNAL(timeout()), this, SLOT(sendTail()));
    connect(m_timer, SIGNAL(timeout()), this, SLOT(tick()));
    connect(m_endpoint, SIGNAL(received(QByteArray)), this, SLOT(received(QByteArray)));
    connect(m_endpoint, SIGNAL(peerChanged(bool)), this, SLOT(peerChanged(bool)));
}

bool CameraBoard::loadRegisters(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QString("cannot read register table %1").arg(path);
        return false;
    }
    const QString text = QTextCodec::codecForName("GB18030")->toUnicode(file.readAll());
    QMap<unsigned, unsigned> regs;
    const QStringList lines = text.split('\n');
    for (int i = 1; i < lines.size(); ++i) {
        const QStringList f = lines.at(i).trimmed().split(',');
        if (f.size() < 3 || f.at(1).trimmed().isEmpty())
            continue;
        bool okA = false, okV = false;
        auto hex = [](QString s, bool *ok) {
            s = s.trimmed();
            if (s.startsWith("0x", Qt::CaseInsensitive))
                s = s.mid(2);
            return s.isEmpty() ? (*ok = true, 0u) : s.toUInt(ok, 16);
        };
        const unsigned addr = hex(f.at(1), &okA);
        const unsigned value = hex(f.at(2), &okV);
        if (!okA || !okV) {
            *error = QString("%1 line %2: address and value must be hexadecimal").arg(path).arg(i + 1);
            return false;
        }
        regs.insert(addr, value);
    }
    m_regs = regs;
    return true;
}

// where the red square of frame n stands, and its side
static void squareOf(int n, int width, int height, int &sx, int &sy, int &side)
{
    side = qMax(4, height / 8);
    sx = (3 * n) % qMax(1, width - side);
    sy = height / 2 + (height / 2 - side) / 2;
}

void CameraBoard::patternPixel(int x, int y, int n, int width, int height, uchar rgb[3])
{
    if (y < height / 2) {
        const uchar *bar = s_bars[qBound(0, x * 8 / qMax(1, width), 7)];
        rgb[0] = bar[0], rgb[1] = bar[1], rgb[2] = bar[2];
        return;
    }
    // lower half: a grey ramp scrolling left, and a red square that travels across
    int sx, sy, side;
    squareOf(n, width, height, sx, sy, side);
    if (x >= sx && x < sx + side && y >= sy && y < sy + side) {
        rgb[0] = 255, rgb[1] = 0, rgb[2] = 0;
        return;
    }
    const int shift = (x + 4 * n) % qMax(1, width);
    rgb[0] = rgb[1] = rgb[2] = uchar(shift * 255 / qMax(1, width - 1));
}

QByteArray CameraBoard::rgbImage(int n, int stride) const
{
    const int w = m_opt.width, h = m_opt.height;
    QByteArray out(stride * h, 0);
    uchar *p = reinterpret_cast<uchar *>(out.data());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            patternPixel(x, y, n, w, h, p + y * stride + 3 * x);
    return out;
}

QByteArray CameraBoard::imageFrame(int n) const
{
    const int w = m_opt.width, h = m_opt.height;
    if (m_opt.format == Jpeg) {
        QImage image(w, h, QImage::Format_RGB888);
        const QByteArray rgb = rgbImage(n, image.bytesPerLine());
        memcpy(image.bits(), rgb.constData(), size_t(rgb.size()));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "JPG", 85);
        return bytes;
    }
    if (m_opt.format == Raw) {
        // the page lays its image over the whole packet, head included: the payload
        // is the image less the ten bytes that the head stands on
        const QByteArray rgb = rgbImage(n, (3 * w + 3) & ~3);
        return CameraFrame::build(CameraFrame::CMD_IMAGE_DATA, uchar(m_opt.device), rgb.mid(CameraFrame::HeaderSize));
    }
    // RGB565, low byte first, laid out for the page's drawing: target (x, y) is taken
    // from source pixel (y + 1) * width + width - x, so the first row is never shown
    // and each row runs right to left. Rows of the pattern come in three kinds (bars,
    // ramp, ramp with the square): each is made once and copied.
    int sx, sy, side;
    squareOf(n, w, h, sx, sy, side);
    const int kinds[3] = {0, h / 2, sy};
    QByteArray rows[3];
    uchar rgb[3];
    for (int r = 0; r < 3; ++r) {
        rows[r] = QByteArray(2 * w, 0);
        uchar *p = reinterpret_cast<uchar *>(rows[r].data());
        for (int x = 0; x < w; ++x) {
            patternPixel(x, kinds[r], n, w, h, rgb);
            const unsigned v = unsigned(rgb[0] >> 3) << 11 | unsigned(rgb[1] >> 2) << 5 | unsigned(rgb[2] >> 3);
            uchar *at = p + 2 * (w - 1 - x);
            at[0] = uchar(v & 0xFF);
            at[1] = uchar(v >> 8);
        }
    }
    QByteArray payload(((h + 1) * w + 1) * 2, 0);
    for (int y = 0; y < h; ++y) {
        const int r = y < h / 2 ? 0 : (y >= sy && y < sy + side) ? 2 : 1;
        memcpy(payload.data() + 2 * ((y + 1) * w + 1), rows[r].constData(), size_t(2 * w));
    }
    return CameraFrame::build(CameraFrame::CMD_IMAGE_DATA, uchar(m_opt.device), payload);
}

QByteArray CameraBoard::formatFrame() const
{
    const uchar code = m_opt.format == Raw ? 3 : 4;
    QByteArray payload(1, char(code));
    payload += CameraFrame::le(unsigned(m_opt.width), 2) + CameraFrame::le(unsigned(m_opt.height), 2);
    return CameraFrame::build(CameraFrame::CMD_IMAGE_FORMAT, uchar(m_opt.device), payload);
}

void CameraBoard::start()
{
    m_clock.start();
    if (m_opt.fps > 0)
        m_timer->start(0);
    auto *reporter = new QTimer(this);
    connect(reporter, SIGNAL(timeout()), this, SLOT(report()));
    reporter->start(1000);
    if (m_endpoint->hasPeer())
        peerChanged(true);
}

void CameraBoard::peerChanged(bool present)
{
    m_heldByte.clear();
    m_control.clear();
    if (present && m_opt.format != Jpeg)
        send(formatFrame(), false);
}

void CameraBoard::send(const QByteArray &frame, bool image)
{
    if (!image && !m_heldByte.isEmpty()) {
        // an image is on its way: a short frame right behind it could share the
        // page's chunk with the whole image, and be lost with the next head
        m_control += frame;
        return;
    }
    QByteArray out = m_heldByte + frame;
    m_heldByte.clear();
    if (image) {
        m_heldByte = out.right(1);
        out.chop(1);
        m_tailTimer->start(tailGapMs());
    }
    m_endpoint->write(out);
}

int CameraBoard::tailGapMs() const
{
    // a quarter of the frame time: long enough for a busy page to read in between,
    // short enough to leave the short frames their slot before the next image
    return qBound(TailGapMs, int(250 / qMax(1.0, m_opt.fps)), 20);
}

void CameraBoard::sendTail()
{
    // once the rest has left, so that the last byte travels in a chunk of its own;
    // short frames that waited for the image follow after another gap
    if (m_endpoint->pending() > 0) {
        m_tailTimer->start(TailGapMs);
        return;
    }
    if (!m_heldByte.isEmpty()) {
        m_endpoint->write(m_heldByte);
        m_heldByte.clear();
        if (!m_control.isEmpty())
            m_tailTimer->start(tailGapMs());
        return;
    }
    m_endpoint->write(m_control);
    m_control.clear();
}

void CameraBoard::tick()
{
    const qint64 nowNs = m_clock.nsecsElapsed();
    const double periodNs = 1e9 / m_opt.fps;
    const quint64 due = quint64(nowNs / periodNs) + 1;
    if (due > m_ticks) {
        // ticks that came too late for their frame are frames skipped as well
        m_skipped += due - m_ticks - 1;
        m_ticks = due;
        // a peer that has not taken the last two frames gets no third one
        const qint64 frameBytes = qint64(m_opt.width) * m_opt.height * 2;
        if (!m_endpoint->hasPeer() || m_endpoint->pending() > 2 * frameBytes || !m_control.isEmpty()) {
            ++m_skipped;
        } else {
            send(imageFrame(int(m_sent)), m_opt.format != Jpeg);
            ++m_sent;
        }
    }
    const qint64 next = qint64(m_ticks * periodNs) - m_clock.nsecsElapsed();
    m_timer->start(int(qMax<qint64>(0, next / 1000000)));
}

void CameraBoard::received(const QByteArray &data)
{
    m_inBuffer.append(data);
    const QByteArray head = CameraFrame::head();
    for (;;) {
        const int at = m_inBuffer.indexOf(head);
        if (at < 0) {
            m_inBuffer = m_inBuffer.right(3);
            return;
        }
        m_inBuffer.remove(0, at);
        if (m_inBuffer.size() < CameraFrame::MinimumSize)
            return;
        const unsigned len = CameraFrame::readLe(m_inBuffer, 5, 4);
        if (len < unsigned(CameraFrame::MinimumSize) || len > 4096) {
            m_inBuffer.remove(0, 1);
            continue;
        }
        if (unsigned(m_inBuffer.size()) < len)
            return;
        const QByteArray frame = m_inBuffer.left(int(len));
        m_inBuffer.remove(0, int(len));
        if (NumberTool::getCRCData(frame.left(frame.size() - 2)) != frame.right(2)) {
            SimLog::line("frame with a bad CRC ignored");
            continue;
        }
        handleFrame(frame);
    }
}

void CameraBoard::handleFrame(const QByteArray &frame)
{
    const QByteArray payload = frame.mid(CameraFrame::HeaderSize, frame.size() - CameraFrame::MinimumSize);
    switch (uchar(frame.at(9))) {
    case CameraFrame::CMD_REPLY: {
        const int status = payload.isEmpty() ? -1 : uchar(payload.at(0));
        status == 0 ? ++m_repliesOk : ++m_repliesBad;
        if (m_opt.verbose || status != 0)
            SimLog::line(QString("reply: status %1").arg(status));
        break;
    }
    case CameraFrame::CMD_WRITE_REG: {
        int addrLen = m_opt.addrLen;
        if (payload.size() != m_opt.addrLen + m_opt.valueLen)
            addrLen = qBound(1, payload.size() - m_opt.valueLen, 4);
        const unsigned addr = CameraFrame::readLe(payload, 0, addrLen);
        const unsigned value = CameraFrame::readLe(payload, addrLen, payload.size() - addrLen);
        m_regs.insert(addr, value);
        SimLog::line(QString("write register 0x%1 = 0x%2").arg(addr, 0, 16).arg(value, 0, 16));
        break;
    }
    case CameraFrame::CMD_READ_REG: {
        const unsigned regId = CameraFrame::readLe(payload, 0, 2);
        const unsigned addr = CameraFrame::readLe(payload, 2, payload.size() - 2);
        const bool known = m_regs.contains(addr);
        QByteArray answer(1, known ? 0 : NoSuchRegister);
        answer += CameraFrame::le(regId, 2) + CameraFrame::le(m_regs.value(addr), m_opt.valueLen);
        SimLog::line(known ? QString("read register 0x%1 (row %2) = 0x%3").arg(addr, 0, 16).arg(regId).arg(m_regs.value(addr), 0, 16)
                           : QString("read register 0x%1 (row %2): no such register").arg(addr, 0, 16).arg(regId));
        send(CameraFrame::build(CameraFrame::CMD_READ_REG, uchar(m_opt.device), answer), false);
        break;
    }
    default:
        SimLog::line(QString("command 0x%1 ignored").arg(uchar(frame.at(9)), 2, 16, QChar('0')));
    }
}

void CameraBoard::report()
{
    if (!m_opt.verbose && (m_repliesOk || m_repliesBad || m_sent))
        SimLog::line(QString("frames sent %1, skipped %2; replies ok %3, failed %4")
                         .arg(m_sent).arg(m_skipped).arg(m_repliesOk).arg(m_repliesBad));
    m_repliesOk = m_repliesBad = 0;
}
