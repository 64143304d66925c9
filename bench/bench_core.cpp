// Throughput of the conversions every receive path runs (CRC-16, hex formatting and
// parsing) and the cost of one terminal feed call once its history is at its bound.
#include "LarkBench.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QtTerminalWidget.h"

#include <QApplication>
#include <QRandomGenerator>
#include <benchmark/benchmark.h>

static QByteArray randomBytes(int n)
{
    QByteArray data(n, 0);
    QRandomGenerator rng(7);
    for (char &c : data)
        c = char(rng.bounded(256));
    return data;
}

static void BM_Crc16(benchmark::State &state)
{
    const QByteArray data = randomBytes(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(NumberTool::getCrcData(data));
    state.SetBytesProcessed(state.iterations() * data.size());
}
BENCHMARK(BM_Crc16)->Arg(64)->Arg(4096)->Arg(1 << 20);

static void BM_ByteToHex(benchmark::State &state)
{
    const QByteArray data = randomBytes(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(NumberTool::byteToHex(data));
    state.SetBytesProcessed(state.iterations() * data.size());
}
BENCHMARK(BM_ByteToHex)->Arg(64)->Arg(4096)->Arg(1 << 20);

static void BM_HexStrToByteArray(benchmark::State &state)
{
    const QString text = NumberTool::byteToHex(randomBytes(int(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(NumberTool::hexStrToByteArray(text));
    // bytes produced per second, comparable with the formatting direction
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_HexStrToByteArray)->Arg(64)->Arg(4096)->Arg(1 << 20);

// One ASCII feed call with the history full at 20480 bytes: decode and lay out the
// whole history again. Reported per call; items/s is calls per second.
static void BM_TerminalAsciiFeedAtBound(benchmark::State &state)
{
    QtTerminalWidget w;
    w.resize(900, 500);
    QByteArray line = "temperature=25.3 humidity=40 温度\r\n";
    line = MyApp::strToUnicode(QString::fromUtf8(line));
    QByteArray fill;
    while (fill.size() < QtTerminalWidget::MaxRecvHistory)
        fill += line;
    w.insertRecvData(fill, false, state.range(0) != 0);
    const QByteArray chunk = line.repeated(int(state.range(1)) / line.size() + 1).left(int(state.range(1)));
    for (auto _ : state)
        w.insertRecvData(chunk, false, state.range(0) != 0);
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * chunk.size());
}
BENCHMARK(BM_TerminalAsciiFeedAtBound)->Args({0, 64})->Args({1, 64})->Args({0, 4096})->Unit(benchmark::kMicrosecond);

static void BM_TerminalHexFeed(benchmark::State &state)
{
    QtTerminalWidget w;
    w.resize(900, 500);
    const QByteArray chunk = randomBytes(int(state.range(0)));
    int calls = 0;
    for (auto _ : state) {
        w.insertRecvData(chunk, true, true);
        // the hex branch has no bound of its own; keep the document at a size a
        // session reaches in minutes so the figure stays comparable
        if (++calls % 500 == 0) {
            state.PauseTiming();
            w.clearTerminal();
            state.ResumeTiming();
        }
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * chunk.size());
}
BENCHMARK(BM_TerminalHexFeed)->Arg(64)->Arg(4096)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    return LarkBench::run<QApplication>(argc, argv);
}
