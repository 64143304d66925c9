// The stream plot: parse rates of the line and frame readers in samples per second on
// one core, and the live window under 16 channels at 10 kHz (CPU share of a core,
// longest event-loop stall as the gap of a 1 ms timer, redraws per second).
#include "LarkBench.h"
#include "LinkTap.h"
#include "PlotFrameParser.h"
#include "PlotTextParser.h"
#include "PlotWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <cmath>
#include <sys/resource.h>

static double cpuSeconds()
{
    rusage ru;
    getrusage(RUSAGE_SELF, &ru);
    return ru.ru_utime.tv_sec + ru.ru_stime.tv_sec + (ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

// n lines of `channels` values as a board prints them: a few decimals, signs
static QByteArray csvLines(int n, int channels, qint64 first = 0, bool named = false)
{
    QByteArray out;
    for (qint64 i = first; i < first + n; ++i) {
        for (int c = 0; c < channels; ++c) {
            if (c)
                out += named ? ' ' : ',';
            if (named)
                out += "ch" + QByteArray::number(c) + ':';
            out += QByteArray::number(100 * std::sin(i * 0.001 + c), 'f', 3);
        }
        out += "\r\n";
    }
    return out;
}

static void BM_PlotTextLines(benchmark::State &state)
{
    const int channels = 8;
    const QByteArray chunk = csvLines(4096, channels, 0, state.range(0) == 1);
    PlotTextParser parser;
    PlotBatch batch;
    for (auto _ : state) {
        batch.clear();
        parser.feed(chunk, batch);
        benchmark::DoNotOptimize(batch.values.data());
    }
    state.SetItemsProcessed(state.iterations() * 4096 * channels);
    state.SetBytesProcessed(state.iterations() * chunk.size());
    state.SetLabel(state.range(0) ? "name:value" : "comma separated");
}
BENCHMARK(BM_PlotTextLines)->Arg(0)->Arg(1);

// arg 0: the shipped sensor frame (4 channels, CRC-16/MODBUS); 1: 8 i16 channels with
// sum8; 2: 8 f32 channels with CRC-32
static void BM_PlotFrames(benchmark::State &state)
{
    static const char *const json[] = {
        nullptr,
        R"({"start":"AA55","length":{"bytes":19},"checksum":{"type":"sum8"},"channels":[
            {"offset":2,"type":"i16"},{"offset":4,"type":"i16"},{"offset":6,"type":"i16"},{"offset":8,"type":"i16"},
            {"offset":10,"type":"i16"},{"offset":12,"type":"i16"},{"offset":14,"type":"i16"},{"offset":16,"type":"i16"}]})",
        R"({"start":"AA55","length":{"mode":"field","offset":2,"size":1,"counts":"payload"},"checksum":{"type":"crc32"},"channels":[
            {"offset":3,"type":"f32"},{"offset":7,"type":"f32"},{"offset":11,"type":"f32"},{"offset":15,"type":"f32"},
            {"offset":19,"type":"f32"},{"offset":23,"type":"f32"},{"offset":27,"type":"f32"},{"offset":31,"type":"f32"}]})",
    };
    PlotFrameDefinition def;
    QString error;
    const bool ok = state.range(0) == 0
        ? PlotFrameDefinition::load(QCoreApplication::applicationDirPath() + "/../../plot-examples/larksim_sensor.json", &def, &error)
        : PlotFrameDefinition::fromJson(json[state.range(0)], &def, &error);
    if (!ok) {
        state.SkipWithError(qPrintable(error));
        return;
    }
    QByteArray chunk;
    for (int i = 0; i < 4096; ++i) {
        QVector<double> values;
        for (int c = 0; c < def.channels.size(); ++c)
            values << std::round(100 * std::sin(i * 0.01 + c));
        chunk += def.buildFrame(values);
    }
    PlotFrameParser parser(def);
    PlotBatch batch;
    for (auto _ : state) {
        batch.clear();
        parser.feed(chunk, batch);
        benchmark::DoNotOptimize(batch.values.data());
    }
    if (parser.counts().badChecksum + parser.counts().dropped > 0)
        state.SkipWithError("frames refused");
    state.SetItemsProcessed(state.iterations() * 4096 * def.channels.size());
    state.SetBytesProcessed(state.iterations() * chunk.size());
    state.SetLabel(def.channels.size() == 4 ? "sensor, crc16" : state.range(0) == 1 ? "8 x i16, sum8" : "8 x f32, crc32");
}
BENCHMARK(BM_PlotFrames)->Arg(0)->Arg(1)->Arg(2);

// range(0): lines a second, range(1): channels; 12 s, beyond the 10 s window
static void BM_PlotLiveWindow(benchmark::State &state)
{
    const int rate = int(state.range(0));
    const int channels = int(state.range(1));
    const int seconds = 12;
    for (auto _ : state) {
        LinkTap tap;
        PlotWindow window(&tap, "bench");
        window.resize(1280, 760);
        window.show();
        qint64 sent = 0, lastTick = 0, maxGapNs = 0;
        QElapsedTimer clock;
        clock.start();
        QTimer board;
        board.setTimerType(Qt::PreciseTimer);
        board.setInterval(1);
        QObject::connect(&board, &QTimer::timeout, [&] {
            const qint64 now = clock.nsecsElapsed();
            if (lastTick)
                maxGapNs = std::max(maxGapNs, now - lastTick);
            lastTick = now;
            // catch up with the wall clock: a stall delays lines, never drops them
            const qint64 due = now * rate / 1000000000LL;
            if (due > sent) {
                tap.reportReceived(csvLines(int(due - sent), channels, sent));
                sent = due;
            }
        });
        int replots = 0;
        double replotMs = 0, replotMaxMs = 0;
        QElapsedTimer replotClock;
        QObject::connect(window.plot(), &QCustomPlot::beforeReplot, [&] { replotClock.start(); });
        QObject::connect(window.plot(), &QCustomPlot::afterReplot, [&] {
            const double ms = replotClock.nsecsElapsed() / 1e6;
            ++replots, replotMs += ms, replotMaxMs = std::max(replotMaxMs, ms);
        });
        const double cpu0 = cpuSeconds();
        board.start();
        QEventLoop loop;
        QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
        loop.exec();
        board.stop();
        const double cpu = cpuSeconds() - cpu0;
        const double wall = clock.nsecsElapsed() / 1e9;
        state.counters["samples_per_s"] = double(window.store().totalRows()) * channels / wall;
        state.counters["cpu_load"] = cpu / wall;
        state.counters["max_stall_ms"] = maxGapNs / 1e6;
        state.counters["redraws_per_s"] = window.redraws() / wall;
        state.counters["replot_ms_avg"] = replots ? replotMs / replots : 0;
        state.counters["replot_ms_max"] = replotMaxMs;
        state.counters["points_in_plot"] = double(window.plot()->graph(0)->dataCount()) * channels;
    }
}
BENCHMARK(BM_PlotLiveWindow)->Args({10000, 16})->Iterations(1)->Unit(benchmark::kSecond);

int main(int argc, char **argv)
{
    return LarkBench::run<QApplication>(argc, argv);
}
