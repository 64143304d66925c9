// What the link additions cost. Capture: CPU per MB of the capture writer fed the
// chunks a serial page receives (4 KiB reads), at full speed and at a steady 400 KB/s,
// for each file format, to compare with the serial page's own cpu_s_per_MB
// (bench_serial_page). Remote serial port: a real ser2net at 4 Mbaud in front of a
// socat pty, a board thread writing into the pty paced at 4 Mbaud's 400 KB/s and at
// full speed, an Rfc2217Port reading: throughput, CPU per MB and bytes lost.
#include "BoardWriter.h"
#include "LarkBench.h"
#include "CaptureWriter.h"
#include "LarkPtyPair.h"
#include "Rfc2217Port.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTextCodec>
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
    return double(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) + double(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

QByteArray boardText(int size)
{
    const QByteArray line("temp=25.3 hum=40 state=ok 0123456789\r\n");
    return line.repeated(size / line.size() + 1).left(size);
}

void BM_Capture(benchmark::State &state)
{
    const auto format = CaptureWriter::Format(qMin<int>(int(state.range(0)), 2));
    const int bytesPerSecond = int(state.range(1));
    const int total = 8 << 20;
    const int chunk = 4096;
    const QByteArray data = boardText(total);
    QTemporaryDir dir;
    double cpu = 0, mb = 0;
    for (auto _ : state) {
        CaptureWriter writer;
        // format 3: the same loop without a capture, the baseline of the paced rows
        if (state.range(0) < 3)
            writer.start(dir.filePath(format == CaptureWriter::Raw ? "c.bin" : "c.log"), format,
                     QTextCodec::codecForName("GB18030"));
        const double cpu0 = cpuSeconds();
        QElapsedTimer t;
        t.start();
        int done = 0;
        // what a link delivers: everything due at each tick of the event loop, in
        // reads of at most 4 KiB; at full speed the ticks follow each other at once
        QEventLoop loop;
        QTimer tick;
        tick.setTimerType(Qt::PreciseTimer);
        tick.setInterval(bytesPerSecond > 0 ? 10 : 0);
        QObject::connect(&tick, &QTimer::timeout, [&] {
            const qint64 due = bytesPerSecond > 0 ? qMin<qint64>(total, t.elapsed() * bytesPerSecond / 1000) : total;
            for (int n = 0; done < due && n < 16; ++n) {
                const int len = int(qMin<qint64>(chunk, due - done));
                writer.SltReceived(QByteArray::fromRawData(data.constData() + done, len));
                done += len;
            }
            if (done >= total)
                loop.quit();
        });
        tick.start();
        loop.exec();
        writer.stop();
        cpu += cpuSeconds() - cpu0;
        mb += total / 1e6;
    }
    state.counters["cpu_s_per_MB"] = cpu / mb;
}
// format: 0 raw, 1 text log, 2 hex log, 3 none; 0 B/s is full speed
BENCHMARK(BM_Capture)->ArgNames({"format", "Bps"})
    ->Args({0, 0})->Args({1, 0})->Args({2, 0})->Args({3, 400000})->Args({0, 400000})->Args({1, 400000})
    ->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_Rfc2217Receive(benchmark::State &state)
{
    const int bytesPerSecond = int(state.range(0));
    if (QStandardPaths::findExecutable("ser2net").isEmpty()) {
        state.SkipWithError("ser2net is not installed");
        return;
    }
    LarkPtyPair pty;
    if (!pty.start()) {
        state.SkipWithError("socat pty pair did not start");
        return;
    }
    QTemporaryDir dir;
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    const quint16 port = probe.serverPort();
    probe.close();
    QFile conf(dir.filePath("ser2net.yaml"));
    conf.open(QIODevice::WriteOnly);
    conf.write(QString("connection: &b\n  accepter: telnet(rfc2217),tcp,localhost,%1\n"
                       "  connector: serialdev,%2,4000000n81,local\n")
                   .arg(port).arg(pty.programPath()).toUtf8());
    conf.close();
    QProcess ser2net;
    ser2net.start("ser2net", {"-n", "-d", "-c", conf.fileName(), "-P", dir.filePath("pid")});
    Rfc2217Port remote;
    remote.setPortName(QString("rfc2217://127.0.0.1:%1").arg(port));
    remote.setBaudRate(4000000);
    QElapsedTimer wait;
    wait.start();
    while (!remote.open(QIODevice::ReadWrite) && wait.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    if (!remote.isOpen()) {
        state.SkipWithError("ser2net did not answer");
        return;
    }
    const int total = 8 << 20;
    QByteArray data(total, Qt::Uninitialized);
    for (int i = 0; i < total; ++i)
        data[i] = char(i * 131 + (i >> 8));
    double seconds = 0, cpu = 0, mb = 0, lost = 0;
    for (auto _ : state) {
        QByteArray got;
        got.reserve(total);
        std::atomic<bool> stop{false};
        const double cpu0 = cpuSeconds();
        QElapsedTimer wall;
        wall.start();
        std::thread writer(boardWriter, pty.boardPath(), data, bytesPerSecond, 4096, &stop);
        QEventLoop loop;
        QObject::connect(&remote, &QIODevice::readyRead, &loop, [&] {
            got += remote.readAll();
            if (got.size() >= total)
                loop.quit();
        });
        QTimer::singleShot(120000, &loop, &QEventLoop::quit);
        loop.exec();
        QObject::disconnect(&remote, &QIODevice::readyRead, &loop, nullptr);
        seconds += wall.elapsed() / 1000.0;
        cpu += cpuSeconds() - cpu0;
        mb += got.size() / 1e6;
        lost += total - qMin(got.size(), total) + (got.left(total) == data ? 0 : 1);
        stop = true;
        writer.join();
    }
    state.counters["MB_per_s"] = mb / seconds;
    state.counters["cpu_s_per_MB"] = cpu / mb;
    state.counters["bytes_lost"] = lost;
    remote.close();
    ser2net.terminate();
    ser2net.waitForFinished();
}
// 400000 B/s is 4 Mbaud with 8N1 framing; 0 is as fast as the pty goes
BENCHMARK(BM_Rfc2217Receive)->ArgNames({"Bps"})->Arg(400000)->Arg(0)
    ->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    return LarkBench::run<QCoreApplication>(argc, argv);
}
