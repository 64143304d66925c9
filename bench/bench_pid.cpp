// The PID page under a live board: RecvActualValue frames for five channels streamed
// through a pty at a fixed rate, parsed, pruned to ten seconds and replotted in a
// visible window. Reports samples per second taken by the page, replots per second,
// process CPU per sample and the longest event-loop stall (gap of a 1 ms timer).
// A second case measures the parser and plot path alone on in-memory receptions.
#include "LarkBench.h"
#include "LarkHost.h"
#include "LarkPtyPair.h"
#include "MainWindow.h"
#include "PidDebugWidget.h"
#include "QtSerialPort.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <cmath>
#include <cstring>
#include <random>
#include <sys/resource.h>
#include <time.h>

static double threadCpuMs()
{
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

// a reception as the page's port hands it over, without the pty in between
static void receive(PidDebugWidget &w, const QByteArray &data)
{
    emit w.serialPort()->bytesRead(data);
}

static void openOn(PidDebugWidget &w, const QString &shortName)
{
    w.SltSerialportChanged({shortName});
    for (QPushButton *b : w.findChildren<QPushButton *>()) {
        if (b->text() == "打开串口")
            b->click();
    }
}

static QByteArray boardFrame(int channel, int cmd, qint32 value)
{
    QByteArray f("LARK");
    f.append(char(channel));
    const qint32 len = 15;
    f.append(reinterpret_cast<const char *>(&len), 4);
    f.append(char(cmd));
    f.append(reinterpret_cast<const char *>(&value), 4);
    int sum = 0;
    for (char ch : qAsConst(f))
        sum += uchar(ch);
    f.append(char(sum & 0xFF));
    return f;
}

static QByteArray sampleFrame(int channel, qint32 value)
{
    return boardFrame(channel, 2, value); // RecvActualValue
}

// a slow sine so the y axis keeps rescaling, one phase per channel
static qint32 sampleValue(int channel, qint64 n)
{
    return qint32(500 * std::sin(n * 0.002 + channel) + channel * 20);
}

static double cpuSeconds()
{
    rusage ru;
    getrusage(RUSAGE_SELF, &ru);
    return ru.ru_utime.tv_sec + ru.ru_stime.tv_sec + (ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

// state.range(0): samples per second per channel; range(1): curves shown (2 or 10)
static void BM_PidLiveStream(benchmark::State &state)
{
    const int rate = int(state.range(0));
    const bool allCurves = state.range(1) == 10;
    const int seconds = 12; // beyond the 10 s window, so pruning runs at full curves

    LarkPtyPair pty;
    if (!pty.start()) {
        state.SkipWithError("socat pty pair not available");
        return;
    }
    PidDebugWidget page;
    page.resize(1280, 760);
    page.show();
    openOn(page, pty.programShortName());
    if (!page.serialPort()->isOpen()) {
        state.SkipWithError("port did not open");
        return;
    }
    QCustomPlot *plot = page.customPlot();
    for (int g = 0; g < 10; ++g)
        plot->graph(g)->setVisible(allCurves || g == 0 || g == 5);
    for (int c = 0; c < 5; ++c)
        receive(page, boardFrame(c + 1, 1, 100 * c)); // RecvTargetValue

    for (auto _ : state) {
        qint64 sent = 0;
        int replots = 0;
        double replotMs = 0, replotMaxMs = 0, replotCpuStart = 0, replotCpuMaxMs = 0;
        QElapsedTimer replotClock;
        QObject::connect(plot, &QCustomPlot::beforeReplot, [&] {
            replotClock.start();
            replotCpuStart = threadCpuMs();
        });
        QMetaObject::Connection after = QObject::connect(plot, &QCustomPlot::afterReplot, [&] {
            ++replots;
            const double ms = replotClock.nsecsElapsed() / 1e6;
            replotMs += ms;
            replotMaxMs = std::max(replotMaxMs, ms);
            // against the wall time: a long replot with little CPU was preempted
            replotCpuMaxMs = std::max(replotCpuMaxMs, threadCpuMs() - replotCpuStart);
        });

        QElapsedTimer clock;
        clock.start();
        qint64 lastTick = 0, maxGapNs = 0, maxGapAt = 0;
        int gapsOver50 = 0, gapsOver20 = 0;
        QTimer board;
        board.setTimerType(Qt::PreciseTimer);
        board.setInterval(1);
        QObject::connect(&board, &QTimer::timeout, [&] {
            const qint64 now = clock.nsecsElapsed();
            if (lastTick) {
                const qint64 gap = now - lastTick;
                if (gap > maxGapNs) {
                    maxGapNs = gap;
                    maxGapAt = now;
                }
                gapsOver50 += gap > 50000000;
                gapsOver20 += gap > 20000000;
            }
            lastTick = now;
            // catch up to the wall clock, so a stall delays frames but never drops them
            const qint64 due = now * rate / 1000000000LL;
            QByteArray burst;
            while (sent < due) {
                for (int c = 0; c < 5; ++c)
                    burst += sampleFrame(c + 1, sampleValue(c, sent));
                ++sent;
            }
            if (!burst.isEmpty())
                pty.boardWrite(burst);
        });
        const double cpu0 = cpuSeconds();
        board.start();
        QEventLoop loop;
        QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
        loop.exec();
        board.stop();
        // let the page take what is still in flight
        QElapsedTimer drain;
        drain.start();
        while (drain.elapsed() < 200)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        const double cpu = cpuSeconds() - cpu0;
        const double wall = clock.nsecsElapsed() / 1e9;
        QObject::disconnect(after);

        qint64 inPlot = 0;
        for (int g = 5; g < 10; ++g)
            inPlot += plot->graph(g)->dataCount();
        const double samples = double(sent) * 5;
        state.counters["samples_per_s"] = samples / wall;
        state.counters["points_in_window"] = double(inPlot);
        state.counters["replots_per_s"] = replots / wall;
        state.counters["replot_ms_avg"] = replots ? replotMs / replots : 0;
        state.counters["replot_ms_max"] = replotMaxMs;
        state.counters["replot_cpu_ms_max"] = replotCpuMaxMs;
        state.counters["cpu_us_per_sample"] = samples > 0 ? cpu * 1e6 / samples : 0;
        state.counters["cpu_load"] = cpu / wall;
        state.counters["max_stall_ms"] = maxGapNs / 1e6;
        state.counters["max_stall_at_s"] = maxGapAt / 1e9;
        state.counters["stalls_over_20ms"] = gapsOver20;
        state.counters["stalls_over_50ms"] = gapsOver50;
    }
}
BENCHMARK(BM_PidLiveStream)->Args({1000, 2})->Args({1000, 10})->Iterations(1)->Unit(benchmark::kSecond);

// Parser and plot path without the port: one reception of n frames over five
// channels into a page whose curves already hold a full window.
static void BM_PidReceptionParse(benchmark::State &state)
{
    const int frames = int(state.range(0));
    PidDebugWidget page;
    page.resize(1280, 760);
    QByteArray chunk;
    for (int i = 0; i < frames; ++i)
        chunk += sampleFrame(i % 5 + 1, sampleValue(i % 5, i));
    // fill each curve with ten seconds of 1 kHz samples first
    for (int k = 0; k < 10; ++k) {
        QByteArray prefill;
        for (int i = 0; i < 5000; ++i)
            prefill += sampleFrame(i % 5 + 1, i);
        receive(page, prefill);
    }
    for (auto _ : state) {
        receive(page, chunk);
        // the points reach the curves at the page's next frame
        QMetaObject::invokeMethod(&page, "SltReplotFrame");
    }
    state.SetItemsProcessed(state.iterations() * frames);
    state.SetBytesProcessed(state.iterations() * chunk.size());
}
// fixed iterations: the page's clock hardly moves during a run, so every frame stays
// inside the window and a free-running count would keep growing the curves
BENCHMARK(BM_PidReceptionParse)->Arg(1)->Iterations(5000);
BENCHMARK(BM_PidReceptionParse)->Arg(64)->Iterations(200);
BENCHMARK(BM_PidReceptionParse)->Arg(4096)->Iterations(5);

// One frame of the page as the program shows it: the two CH1 curves over a full
// ten-second window of 1 kHz samples with the noise `larksim pid --noise 2` adds, drawn
// and put on the window. CPU per frame, and what it comes to at 30 and 60 frames a
// second (the receive path adds to that; BM_PidLiveStream and scripts/pid_cpu.py
// measure everything together).
static void BM_PidFrame(benchmark::State &state)
{
    QTranslator translator;
    LarkHost::startLikeTheProgram(translator);
    MainWindow window;
    window.show();
    window.SltTabBarClicked(3);
    auto *page = window.findChild<PidDebugWidget *>();
    QCustomPlot *plot = page->customPlot();
    std::mt19937 rng(1);
    std::normal_distribution<double> noise(0, 2);
    for (int i = 0; i < 10000; ++i) {
        plot->graph(0)->addData(i / 1000.0, 200);
        plot->graph(5)->addData(i / 1000.0, std::round(200 + noise(rng)));
    }
    plot->graph(5)->rescaleValueAxis(false, false);
    plot->xAxis->setRange(10.25, 10.0, Qt::AlignRight);
    QCoreApplication::processEvents();
    double cpu = 0;
    for (auto _ : state) {
        const double cpu0 = threadCpuMs();
        // the page's own frame: its queued replot and the paint run in the event loop
        QMetaObject::invokeMethod(page, "SltReplotFrame");
        QCoreApplication::processEvents();
        cpu += threadCpuMs() - cpu0;
    }
    const double perFrame = cpu / double(state.iterations());
    state.counters["cpu_ms_per_frame"] = perFrame;
    state.counters["core_percent_at_30fps"] = perFrame * 30 / 10;
    state.counters["core_percent_at_60fps"] = perFrame * 60 / 10;
}
BENCHMARK(BM_PidFrame)->Iterations(300)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    // the page logs every frame it sends; keep the tables readable
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    return LarkBench::run<QApplication>(argc, argv);
}
