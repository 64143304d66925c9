// larksim as the boards' stand-in must keep pace: the camera board streaming
// 640x480 RGB565 at 60 fps over loopback TCP, and the PID board reporting five
// channels at a 1 ms period over a pty. larksim runs as its own process; the bench
// is the page's side, counting what arrives. Counters: frames (samples) a second
// received against the rate asked for, and the share that arrived.
#include "CameraFrame.h"
#include "PidFrame.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSocketNotifier>
#include <QTcpSocket>
#include <QtEndian>
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int Seconds = 4;

// starts larksim; the printed line that begins with prefix, less the prefix
QString startSim(QProcess &p, const QStringList &args, const QString &prefix)
{
    p.start(LARKSIM_PATH, args);
    QByteArray out;
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 5000 && p.waitForReadyRead(200)) {
        out += p.readAllStandardOutput();
        for (const QString &line : QString::fromUtf8(out).split('\n'))
            if (line.startsWith(prefix) && out.endsWith('\n'))
                return line.mid(prefix.size());
    }
    return QString();
}

// whole frames of the given command in buf (both links share the head and the
// length field at offset 5); consumed bytes are removed
int countFrames(QByteArray &buf, int minimum, int cmd)
{
    int n = 0, at = 0;
    for (;;) {
        const int head = buf.indexOf("LARK", at);
        if (head < 0 || buf.size() - head < minimum)
            break;
        const int len = int(qFromLittleEndian<quint32>(buf.constData() + head + 5));
        if (len < minimum) {
            at = head + 1;
            continue;
        }
        if (buf.size() - head < len)
            break;
        n += uchar(buf.at(head + 9)) == cmd;
        at = head + len;
    }
    buf.remove(0, at);
    return n;
}

void BM_CameraSim640x480At60(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess sim;
        const QString port = startSim(sim, {"camera", "--fps", "60", "--size", "640x480", "--tcp-server", "0"},
                                      "larksim: tcp server on port ");
        QTcpSocket page;
        page.connectToHost("127.0.0.1", quint16(port.toUInt()));
        if (port.isEmpty() || !page.waitForConnected(5000)) {
            state.SkipWithError("larksim did not start");
            return;
        }
        QByteArray buf;
        qint64 bytes = 0;
        int frames = 0;
        QElapsedTimer t;
        t.start();
        // the first second is warm-up
        while (t.elapsed() < 1000)
            if (page.waitForReadyRead(50))
                buf += page.readAll(), countFrames(buf, 12, CameraFrame::CMD_IMAGE_DATA);
        t.restart();
        while (t.elapsed() < Seconds * 1000) {
            if (!page.waitForReadyRead(50))
                continue;
            const QByteArray chunk = page.readAll();
            bytes += chunk.size();
            buf += chunk;
            frames += countFrames(buf, 12, CameraFrame::CMD_IMAGE_DATA);
        }
        const double secs = t.elapsed() / 1000.0;
        state.counters["fps"] = frames / secs;
        state.counters["of_asked"] = frames / secs / 60.0;
        state.counters["MB_per_s"] = bytes / secs / 1e6;
        sim.terminate();
        sim.waitForFinished(3000);
        // the board's own count: frames it skipped since the page connected
        const QStringList reports = QString::fromUtf8(sim.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        if (reports.size() > 2)
            state.counters["sim_skipped"] = reports.last().section("skipped ", 1).section(';', 0, 0).toInt()
                                            - reports.at(1).section("skipped ", 1).section(';', 0, 0).toInt();
    }
}
BENCHMARK(BM_CameraSim640x480At60)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_PidSim5ChannelsAt1kHz(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess sim;
        const QString pty = startSim(sim, {"pid", "--pty"}, "larksim: pty ");
        const int fd = pty.isEmpty() ? -1 : ::open(qPrintable(pty), O_RDWR | O_NOCTTY);
        if (fd < 0) {
            state.SkipWithError("larksim did not start");
            return;
        }
        termios tio;
        ::tcgetattr(fd, &tio);
        ::cfmakeraw(&tio);
        ::tcsetattr(fd, TCSANOW, &tio);
        QByteArray cmds;
        auto i32 = [](qint32 v) { QByteArray b(4, 0); qToLittleEndian(v, b.data()); return b; };
        for (int c = 1; c <= 5; ++c)
            cmds += PidFrame::build(PidFrame::SendPeriod, uchar(c), i32(1)) + PidFrame::build(PidFrame::SendTargetValue, uchar(c), i32(500 * c))
                    + PidFrame::build(PidFrame::SendStart, uchar(c), QByteArray());
        // the board looks for a page every 50 ms: the commands wait in the pty till then
        if (::write(fd, cmds.constData(), size_t(cmds.size())) != cmds.size()) {
            state.SkipWithError("write failed");
            return;
        }
        QByteArray buf;
        char chunk[65536];
        int samples = 0;
        QElapsedTimer t;
        t.start();
        bool counting = false;
        while (t.elapsed() < (Seconds + 1) * 1000) {
            if (!counting && t.elapsed() >= 1000) {
                counting = true;
                samples = 0;
                t.restart();
            }
            fd_set set;
            FD_ZERO(&set);
            FD_SET(fd, &set);
            timeval tv{0, 50000};
            if (::select(fd + 1, &set, nullptr, nullptr, &tv) <= 0)
                continue;
            const ssize_t n = ::read(fd, chunk, sizeof chunk);
            if (n <= 0)
                break;
            buf.append(chunk, int(n));
            samples += countFrames(buf, 11, PidFrame::RecvActualValue);
            if (counting && t.elapsed() >= Seconds * 1000)
                break;
        }
        const double secs = t.elapsed() / 1000.0;
        state.counters["samples_per_s"] = samples / secs;
        state.counters["of_asked"] = samples / secs / 5000.0;
        ::close(fd);
        sim.terminate();
        sim.waitForFinished(3000);
    }
}
BENCHMARK(BM_PidSim5ChannelsAt1kHz)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
