#ifndef PIDBOARD_H
#define PIDBOARD_H

#include "PidMotor.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>

class QTimer;
class SimEndpoint;

// A motor-control board with five channels. It takes the page's P, I, D, target and
// period per channel and confirms each by reporting it back; start, stop and reset
// are answered with the run-state reports; while a channel runs, it reports one
// speed sample every period.
class PidBoard : public QObject
{
    Q_OBJECT
public:
    static constexpr int Channels = 5;
    static constexpr int DefaultPeriodMs = 10;

    PidBoard(SimEndpoint *endpoint, double noise, QObject *parent = nullptr);

    void start();
    // the page's frames; public so the benchmark can drive a board without a page
    void received(const QByteArray &data);
    quint64 samplesSent() const { return m_samples; }
    // samples that came later than one period after they were due
    quint64 samplesLate() const { return m_late; }

private slots:
    void receivedSlot(const QByteArray &data) { received(data); }
    void tick();

private:
    struct Channel {
        PidMotor motor;
        float p = 0, i = 0, d = 0;
        int target = 0;
        int period = DefaultPeriodMs;
        bool running = false;
        qint64 nextDueNs = 0;
    };
    void handleFrame(const QByteArray &frame);
    void reportParameters(int c);
    void sendFrame(int cmd, int c, const QByteArray &payload = QByteArray());

    SimEndpoint *m_endpoint;
    Channel m_ch[Channels];
    QByteArray m_inBuffer;
    QByteArray m_out;
    QTimer *m_timer;
    QElapsedTimer m_clock;
    quint64 m_samples = 0;
    quint64 m_late = 0;
};

#endif // PIDBOARD_H
