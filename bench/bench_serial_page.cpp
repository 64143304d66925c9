// The serial page's receive path at full speed and at a steady 400 KB/s: a board
// thread writes into one end of a socat pty pair, the page reads the other end on the
// GUI thread as in the program. Reported per display mode: MB/s, CPU seconds of this
// process per MB, and the longest stall of the event loop (the gap between two ticks
// of a 5 ms timer, less its interval).
#include "BoardWriter.h"
#include "LarkBench.h"
#include "LarkPtyPair.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QextSerialPort.h"
#include "QtTerminalWidget.h"
#include "QtRecvViewFeeder.h"
#include "SerialportWidget.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRadioButton>
#include <QTimer>
#include <benchmark/benchmark.h>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

double cpuSeconds()
{
    rusage ru;
    getrusage(RUSAGE_SELF, &ru);
    return double(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec)
           + double(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

// text a board typically prints: readable lines with some GB18030
QByteArray boardText(int size)
{
    const QByteArray line = MyApp::strToUnicode(QString::fromUtf8("temp=25.3 hum=40 状态正常 0123456789\r\n"));
    return line.repeated(size / line.size() + 1).left(size);
}

// bytes with no pattern, as a board sending binary data does
QByteArray noiseBytes(int size)
{
    QByteArray data(size, Qt::Uninitialized);
    quint32 x = 7;
    for (char &c : data) {
        x = x * 1103515245u + 12345u;
        c = char(x >> 24);
    }
    return data;
}

// resident memory of this process, from /proc
double rssMB()
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    }
    return 0;
}

struct Stall {
    QTimer timer;
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 worst = 0;
    explicit Stall(int intervalMs = 5)
    {
        timer.setInterval(intervalMs);
        timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer, &QTimer::timeout, [this, intervalMs] {
            const qint64 now = clock.elapsed();
            worst = qMax(worst, now - last - intervalMs);
            last = now;
        });
    }
    void start() { clock.start(); last = 0; worst = 0; timer.start(); }
    void stop() { timer.stop(); }
};


enum Mode { Ascii, Hex, AsciiLog };
enum Data { Text, Noise };

void runPage(benchmark::State &state, Mode mode, int bytesPerSecond, int totalBytes, int slice, Data kind = Text)
{
    LarkPtyPair pty;
    if (!pty.start()) {
        state.SkipWithError("socat pty pair did not start");
        return;
    }
    NumberTool::m_newLine.clear();
    SerialportWidget page;
    page.resize(900, 600);
    page.show(); // hidden, the terminal lays nothing out and the figures mean nothing
    page.SltSerialportChanged({pty.programShortName()});
    page.findChild<QComboBox *>("cbxBaud")->setCurrentText("921600");
    if (mode == Hex)
        page.findChild<QRadioButton *>("rbtnRecvHex")->click();
    if (mode == AsciiLog)
        page.findChild<QCheckBox *>("chkLogMode")->setChecked(true);
    page.SltOpenSerialport();
    if (!page.serialport()->isOpen()) {
        state.SkipWithError("port did not open");
        return;
    }
    const QByteArray data = kind == Noise ? noiseBytes(totalBytes) : boardText(totalBytes);

    double seconds = 0, cpu = 0, worst = 0, mb = 0;
    const double rss0 = rssMB();
    for (auto _ : state) {
        page.clearRecv();
        page.clearCounts();
        Stall stall;
        std::atomic<bool> stop{false};
        const double cpu0 = cpuSeconds();
        QElapsedTimer wall;
        wall.start();
        stall.start();
        std::thread writer(boardWriter, pty.boardPath(), data, bytesPerSecond, slice, &stop);
        // The receive count is exact while display runs; a generous limit keeps a
        // page that cannot keep up from running for ever.
        const qint64 limit = bytesPerSecond > 0 ? 1000LL * totalBytes / bytesPerSecond * 3 + 5000 : 120000;
        QEventLoop loop;
        QTimer check;
        check.setInterval(10);
        QObject::connect(&check, &QTimer::timeout, [&] {
            if (page.recvCount() >= quint32(totalBytes) || wall.elapsed() > limit)
                loop.quit();
        });
        check.start();
        loop.exec();
        stall.stop();
        seconds += wall.elapsed() / 1000.0;
        cpu += cpuSeconds() - cpu0;
        worst = qMax(worst, double(stall.worst));
        mb += page.recvCount() / 1e6;
        stop = true;
        writer.join();
    }
    state.counters["MB_per_s"] = mb / seconds;
    state.counters["cpu_s_per_MB"] = cpu / mb;
    state.counters["max_stall_ms"] = worst;
    state.counters["doc_chars"] = page.terminal()->document()->characterCount();
    // what the page holds on to per MB received: the view is bounded, the text kept
    // for saving is compressed
    state.counters["rss_growth_MB"] = rssMB() - rss0;
    state.counters["rss_growth_MB_per_MB"] = (rssMB() - rss0) / qMax(mb, 1e-9);
}

void BM_FullSpeed(benchmark::State &state)
{
    runPage(state, Mode(state.range(0)), 0, int(state.range(1)), 4096, Data(state.range(2)));
}

void BM_Paced400KBps(benchmark::State &state)
{
    runPage(state, Mode(state.range(0)), 400 * 1000, int(state.range(1)), int(state.range(2)), Data(state.range(3)));
}

} // namespace

// 50 MB text and noise show the memory a long session takes (rss_growth_MB_per_MB)
BENCHMARK(BM_FullSpeed)->ArgNames({"mode", "bytes", "noise"})
    ->Args({Ascii, 8 << 20, Text})->Args({Hex, 8 << 20, Text})->Args({AsciiLog, 8 << 20, Text})
    ->Args({Ascii, 8 << 20, Noise})->Args({Hex, 8 << 20, Noise})
    ->Args({Ascii, 50000000, Text})->Args({Hex, 50000000, Noise})
    ->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
// the board writes in slices of the last argument: 4000 bytes every 10 ms, or 256
// bytes every 0.64 ms, which is closer to what a USB serial adapter hands over
BENCHMARK(BM_Paced400KBps)->ArgNames({"mode", "bytes", "slice", "noise"})
    ->Args({Ascii, 2000 * 1000, 4000, Text})->Args({Hex, 2000 * 1000, 4000, Text})->Args({AsciiLog, 2000 * 1000, 4000, Text})
    ->Args({Ascii, 2000 * 1000, 256, Text})->Args({Hex, 2000 * 1000, 256, Text})->Args({AsciiLog, 2000 * 1000, 256, Text})
    ->Args({Hex, 2000 * 1000, 4000, Noise})->Args({Hex, 2000 * 1000, 256, Noise})
    ->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// Display stopped while the board sends, then resumed: the whole held buffer is
// shown in one block from the next read on. Reported: how long until all of it stands
// in the view (resume_ms), and the longest the event loop stood still meanwhile, as
// the gap between two ticks of a 10 ms timer less its interval (max_stall_ms).
bool shownAll(const SerialportWidget &page)
{
    return page.recvBuffer().isEmpty() && !page.recvFeeder()->isPending();
}

void BM_ResumeAfterStoppedDisplay(benchmark::State &state)
{
    LarkPtyPair pty;
    if (!pty.start()) {
        state.SkipWithError("socat pty pair did not start");
        return;
    }
    NumberTool::m_newLine.clear();
    SerialportWidget page;
    page.resize(900, 600);
    page.show();
    page.SltSerialportChanged({pty.programShortName()});
    if (state.range(0) == Hex)
        page.findChild<QRadioButton *>("rbtnRecvHex")->click();
    page.SltOpenSerialport();
    auto *stop = page.findChild<QCheckBox *>("chkStopShow");
    const int total = int(state.range(1));
    double worst = 0, worstStall = 0;
    for (auto _ : state) {
        page.clearRecv();
        stop->setChecked(true);
        std::atomic<bool> cancel{false};
        std::thread writer(boardWriter, pty.boardPath(), boardText(total), 0, 4096, &cancel);
        QElapsedTimer wall;
        wall.start();
        while (page.recvBuffer().size() < total && wall.elapsed() < 60000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        writer.join();
        stop->setChecked(false);
        Stall stall(10);
        QElapsedTimer t;
        t.start();
        stall.start();
        pty.boardWrite("!");
        while (!shownAll(page) && t.elapsed() < 120000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        worst = qMax(worst, double(t.elapsed()));
        // a few more ticks, so that a stall at the very end is seen too
        QElapsedTimer tail;
        tail.start();
        while (tail.elapsed() < 50)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        stall.stop();
        worstStall = qMax(worstStall, double(stall.worst));
    }
    state.counters["resume_ms"] = worst;
    state.counters["max_stall_ms"] = worstStall;
}
BENCHMARK(BM_ResumeAfterStoppedDisplay)->ArgNames({"mode", "bytes"})
    ->Args({Ascii, 1 << 20})->Args({Ascii, 10 << 20})->Args({Hex, 1 << 20})
    ->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    return LarkBench::run<QApplication>(argc, argv);
}
