// Automation on a busy link: 50 reply rules matched on a received stream (the cost a
// 4 Mbaud line, 400 KB/s, would put on the GUI thread), and onData calls into a
// trivial script.
#include "LarkBench.h"
#include "AutoReplyRunner.h"
#include "LinkTap.h"
#include "ScriptRuntime.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <benchmark/benchmark.h>

// sensor-log lines with a rare command among them, 1 MB
static QByteArray stream()
{
    QByteArray out;
    QRandomGenerator rng(11);
    while (out.size() < (1 << 20)) {
        out += QByteArray("T=") + QByteArray::number(rng.bounded(1000)) + ";V=" + QByteArray::number(rng.bounded(5000))
            + ";S=" + QByteArray::number(rng.bounded(1u << 31), 16) + "\r\n";
        if (rng.bounded(100) == 0)
            out += "AT+CMD" + QByteArray::number(rng.bounded(50)) + "\r\n";
    }
    return out;
}

// 50 rules: text commands, hex frames and `regexes` regular expressions
static QList<ReplyRule> rules(int regexes)
{
    QList<ReplyRule> out;
    for (int i = 0; i < 50; ++i) {
        ReplyRule r;
        r.reply = "OK\\r\\n";
        if (i < regexes) {
            r.matchKind = ReplyRule::MatchRegex;
            r.pattern = QString("CMD%1\\r\\n|ERR=\\d+;").arg(i);
        } else if (i % 5 == 0) {
            r.matchKind = ReplyRule::MatchHex;
            r.pattern = QString("AA 55 %1 0D").arg(i, 2, 16, QLatin1Char('0'));
        } else {
            r.pattern = QString("AT+CMD%1\\r\\n").arg(i);
        }
        out << r;
    }
    return out;
}

static void BM_ReplyRulesOnStream(benchmark::State &state)
{
    const QByteArray data = stream();
    const int chunk = int(state.range(0));
    LinkTap tap;
    tap.setWriter([](const QByteArray &b) { return qint64(b.size()); });
    tap.reportOpened("bench");
    AutoReplyRunner runner;
    runner.setTap(&tap);
    runner.setRules(rules(int(state.range(1))));
    runner.setActive(true);
    for (auto _ : state) {
        for (int at = 0; at < data.size(); at += chunk)
            tap.reportReceived(data.mid(at, chunk));
    }
    state.SetBytesProcessed(state.iterations() * data.size());
    // at 1 MB/s, this many ms of each second go to the rules: ms/MB ÷ 10 is % of a core
    state.counters["rules_cpu_ms_per_MB"] = benchmark::Counter(double(state.iterations()) / 1000,
                                                               benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ReplyRulesOnStream)->Args({64, 5})->Args({1024, 5})->Args({1024, 0})->Args({1024, 50})->Unit(benchmark::kMillisecond);

static void BM_ScriptOnDataCalls(benchmark::State &state)
{
    ScriptRuntime runtime;
    runtime.start("var n = 0;\nfunction onData(bytes) { n += bytes.length; }\n", "bench.js");
    const QByteArray chunk(int(state.range(0)), 'x');
    for (auto _ : state)
        runtime.feed(chunk);
    state.SetItemsProcessed(state.iterations());
    if (!runtime.isRunning())
        state.SkipWithError("the script stopped");
}
BENCHMARK(BM_ScriptOnDataCalls)->Arg(16)->Arg(1024);

int main(int argc, char **argv)
{
    return LarkBench::run<QCoreApplication>(argc, argv);
}
