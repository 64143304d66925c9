#include "PidBoard.h"

#include "NumberTool.h"
#include "PidFrame.h"
#include "SimEndpoint.h"
#include "SimLog.h"

#include <QTimer>

PidBoard::PidBoard(SimEndpoint *endpoint, double noise, QObject *parent)
    : QObject(parent)
    , m_endpoint(endpoint)
    , m_timer(new QTimer(this))
{
    for (Channel &ch : m_ch)
        ch.motor.setNoise(noise);
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(tick()));
    connect(m_endpoint, SIGNAL(received(QByteArray)), this, SLOT(receivedSlot(QByteArray)));
}

void PidBoard::start()
{
    m_clock.start();
    m_timer->start(1);
}

void PidBoard::sendFrame(int cmd, int c, const QByteArray &payload)
{
    m_out += PidFrame::build(uchar(cmd), uchar(c + 1), payload);
}

void PidBoard::received(const QByteArray &data)
{
    m_inBuffer.append(data);
    const QByteArray header = NumberTool::baFromInt32SmallEndian(int(PidFrame::HeaderValue));
    // a frame is taken only once it is whole, and a nonsense length skips the header
    for (;;) {
        const int at = m_inBuffer.indexOf(header);
        if (at < 0) {
            m_inBuffer = m_inBuffer.right(3);
            break;
        }
        m_inBuffer.remove(0, at);
        if (m_inBuffer.size() < PidFrame::MinimumSize)
            break;
        const int len = NumberTool::int32FromByteArray(m_inBuffer.mid(5, 4));
        if (len < PidFrame::MinimumSize || len > 64) {
            m_inBuffer.remove(0, 1);
            continue;
        }
        if (m_inBuffer.size() < len)
            break;
        handleFrame(m_inBuffer.left(len));
        m_inBuffer.remove(0, len);
    }
    m_endpoint->write(m_out);
    m_out.clear();
}

void PidBoard::reportParameters(int c)
{
    const Channel &ch = m_ch[c];
    sendFrame(PidFrame::RecvPidValues, c, NumberTool::baFromFloatBigEndian(ch.p) + NumberTool::baFromFloatBigEndian(ch.i)
                                              + NumberTool::baFromFloatBigEndian(ch.d));
    sendFrame(PidFrame::RecvTargetValue, c, NumberTool::baFromInt32SmallEndian(ch.target));
    sendFrame(PidFrame::RecvPeriod, c, NumberTool::baFromInt32SmallEndian(ch.period));
}

void PidBoard::handleFrame(const QByteArray &frame)
{
    if (frame.size() < PidFrame::MinimumSize)
        return;
    const int c = uchar(frame.at(4)) - 1;
    const int cmd = uchar(frame.at(9));
    if (c < 0 || c >= Channels) {
        SimLog::line(QString("frame for channel %1 ignored").arg(c + 1));
        return;
    }
    if (PidFrame::getCheckSum(frame.left(frame.size() - 1)) != uchar(frame.at(frame.size() - 1))) {
        SimLog::line("frame with a bad checksum ignored");
        return;
    }
    Channel &ch = m_ch[c];
    const QByteArray payload = frame.mid(10, frame.size() - PidFrame::MinimumSize);
    switch (cmd) {
    case PidFrame::SendPidValues:
        ch.p = NumberTool::floatFromSmallEndian(payload.mid(0, 4));
        ch.i = NumberTool::floatFromSmallEndian(payload.mid(4, 4));
        ch.d = NumberTool::floatFromSmallEndian(payload.mid(8, 4));
        ch.motor.setGains(ch.p, ch.i, ch.d);
        SimLog::line(QString("CH%1 P=%2 I=%3 D=%4").arg(c + 1).arg(double(ch.p)).arg(double(ch.i)).arg(double(ch.d)));
        sendFrame(PidFrame::RecvPidValues, c, payload.left(12));
        break;
    case PidFrame::SendTargetValue:
        ch.target = NumberTool::int32FromByteArray(payload.left(4));
        ch.motor.setTarget(ch.target);
        SimLog::line(QString("CH%1 target=%2").arg(c + 1).arg(ch.target));
        sendFrame(PidFrame::RecvTargetValue, c, payload.left(4));
        break;
    case PidFrame::SendPeriod:
        ch.period = qMax(1, NumberTool::int32FromByteArray(payload.left(4)));
        SimLog::line(QString("CH%1 period=%2 ms").arg(c + 1).arg(ch.period));
        sendFrame(PidFrame::RecvPeriod, c, NumberTool::baFromInt32SmallEndian(ch.period));
        break;
    case PidFrame::SendStart:
        if (!ch.running)
            ch.nextDueNs = m_clock.nsecsElapsed() + qint64(ch.period) * 1000000;
        ch.running = true;
        SimLog::line(QString("CH%1 started").arg(c + 1));
        sendFrame(PidFrame::RecvStarted, c);
        break;
    case PidFrame::SendStop:
        ch.running = false;
        SimLog::line(QString("CH%1 stopped").arg(c + 1));
        sendFrame(PidFrame::RecvStopped, c);
        break;
    case PidFrame::SendReset:
        // a reset board stands still and tells what it keeps
        ch.running = false;
        ch.motor.reset();
        SimLog::line(QString("CH%1 reset").arg(c + 1));
        sendFrame(PidFrame::RecvStopped, c);
        reportParameters(c);
        break;
    default:
        SimLog::line(QString("CH%1 command 0x%2 ignored").arg(c + 1).arg(cmd, 2, 16, QChar('0')));
    }
}

void PidBoard::tick()
{
    const qint64 now = m_clock.nsecsElapsed();
    for (int c = 0; c < Channels; ++c) {
        Channel &ch = m_ch[c];
        const qint64 periodNs = qint64(ch.period) * 1000000;
        while (ch.running && ch.nextDueNs <= now) {
            if (now - ch.nextDueNs > periodNs)
                ++m_late;
            const int speed = ch.motor.step(ch.period / 1000.0);
            sendFrame(PidFrame::RecvActualValue, c, NumberTool::baFromInt32SmallEndian(speed));
            ++m_samples;
            ch.nextDueNs += periodNs;
        }
    }
    if (!m_out.isEmpty()) {
        m_endpoint->write(m_out);
        m_out.clear();
    }
}
