// The network page under load over loopback: how fast received TCP and UDP data
// reaches the page's view in ASCII and in HEX (MB/s and process CPU per MB; the
// sending peer lives in the same process and is included), and how long the server
// takes to accept and list a thousand clients.
#include "LarkBench.h"
#include "NetworkToolWidget.h"
#include "NumberTool.h"
#include "QtRecvViewFeeder.h"
#include "TcpServer.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTcpSocket>
#include <QElapsedTimer>
#include <QTimer>
#include <QUdpSocket>
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <ctime>
#include <memory>
#include <vector>

static double processCpuMs()
{
    timespec ts {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1000.0 + double(ts.tv_nsec) / 1e6;
}

// printable lines, as a board's log would send them
static QByteArray lines(int size)
{
    QByteArray data;
    data.reserve(size + 64);
    for (int i = 0; data.size() < size; ++i)
        data += "adc " + QByteArray::number(i) + " value=" + QByteArray::number(i * 7 % 4096) + "\r\n";
    data.truncate(size);
    return data;
}

static void openPage(NetworkToolWidget &page, int mode, bool hex)
{
    page.findChild<QComboBox *>("cbxNetType")->setCurrentIndex(mode);
    page.findChild<QLineEdit *>("edtPort")->setText("0");
    page.findChild<QRadioButton *>(hex ? "rbtnRecvHex" : "rbtnRecvAscii")->setChecked(true);
    page.findChild<QPushButton *>("btnOpen")->click();
}

// Runs the event loop until pred holds, sleeping only while no event is due (QTest's
// waits nap 10 ms between checks, which would be measured as idle time).
template <class Pred>
static bool spinUntil(Pred pred, int timeoutMs = 60000)
{
    QElapsedTimer clock;
    clock.start();
    QTimer wake;
    wake.start(50);
    while (!pred()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

static bool waitForCount(NetworkToolWidget &page, quint64 count)
{
    return spinUntil([&] { return page.recvCount() >= count; });
}

// range(0): 0 ASCII, 1 HEX; range(1): MB the peer sends per iteration. The view is
// emptied between iterations, so every iteration starts from an empty document.
static void BM_TcpReceiveIntoPage(benchmark::State &state)
{
    const bool hex = state.range(0) == 1;
    const QByteArray data = lines(int(state.range(1)) << 20);
    NetworkToolWidget page;
    openPage(page, NetworkToolWidget::TcpServerMode, hex);
    page.resize(900, 600);
    page.show();
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, page.tcpServer()->serverPort());
    if (!spinUntil([&] { return page.tcpServer()->counts() == 1; }, 5000)) {
        state.SkipWithError("no connection");
        return;
    }

    double cpu = 0;
    for (auto _ : state) {
        const quint64 target = page.recvCount() + quint64(data.size());
        const double cpu0 = processCpuMs();
        peer.write(data);
        if (!waitForCount(page, target)) {
            state.SkipWithError("data did not arrive");
            break;
        }
        // the view has caught up only once the waiting text is drawn
        page.recvFeeder()->flush();
        cpu += processCpuMs() - cpu0;
        state.PauseTiming();
        page.clearRecv();
        state.ResumeTiming();
    }
    const double mb = double(state.iterations()) * data.size() / double(1 << 20);
    state.SetBytesProcessed(state.iterations() * data.size());
    state.counters["cpu_ms_per_MB"] = mb > 0 ? cpu / mb : 0;
}
BENCHMARK(BM_TcpReceiveIntoPage)
    ->ArgNames({"hex", "MB"})
    ->Args({0, 4})->Args({1, 4})
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

// A growing view: 16 MB received without clearing, to see what a long session costs.
static void BM_TcpReceiveIntoGrowingView(benchmark::State &state)
{
    const bool hex = state.range(0) == 1;
    const QByteArray data = lines(1 << 20);
    NetworkToolWidget page;
    openPage(page, NetworkToolWidget::TcpServerMode, hex);
    page.resize(900, 600);
    page.show();
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, page.tcpServer()->serverPort());
    if (!spinUntil([&] { return page.tcpServer()->counts() == 1; }, 5000)) {
        state.SkipWithError("no connection");
        return;
    }
    double cpu = 0;
    for (auto _ : state) {
        const double cpu0 = processCpuMs();
        for (int i = 0; i < 16; ++i) {
            const quint64 target = page.recvCount() + quint64(data.size());
            peer.write(data);
            waitForCount(page, target);
        }
        page.recvFeeder()->flush();
        cpu += processCpuMs() - cpu0;
    }
    const double mb = double(state.iterations()) * 16.0;
    state.SetBytesProcessed(state.iterations() * 16 * data.size());
    state.counters["cpu_ms_per_MB"] = cpu / mb;
}
BENCHMARK(BM_TcpReceiveIntoGrowingView)
    ->ArgNames({"hex"})->Arg(0)->Arg(1)
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

// range(0): 0 ASCII, 1 HEX; range(1): datagram size. Datagrams go in bursts small
// enough for the socket's receive buffer, so that none is lost and all are counted.
static void BM_UdpReceiveIntoPage(benchmark::State &state)
{
    const bool hex = state.range(0) == 1;
    const QByteArray datagram = lines(int(state.range(1)));
    const int perIteration = 4096;
    const int burst = 64;
    NetworkToolWidget page;
    openPage(page, NetworkToolWidget::UdpMode, hex);
    page.resize(900, 600);
    page.show();
    const quint16 port = page.udpSocket()->localPort();
    QUdpSocket peer;
    peer.bind(QHostAddress(QHostAddress::LocalHost), 0);

    double cpu = 0;
    for (auto _ : state) {
        const double cpu0 = processCpuMs();
        for (int sent = 0; sent < perIteration; sent += burst) {
            const quint64 target = page.recvCount() + quint64(burst) * quint64(datagram.size());
            for (int i = 0; i < burst; ++i)
                peer.writeDatagram(datagram, QHostAddress::LocalHost, port);
            if (!waitForCount(page, target)) {
                state.SkipWithError("datagrams lost");
                return;
            }
        }
        page.recvFeeder()->flush();
        cpu += processCpuMs() - cpu0;
        state.PauseTiming();
        page.clearRecv();
        state.ResumeTiming();
    }
    const double bytes = double(state.iterations()) * perIteration * datagram.size();
    state.SetBytesProcessed(int64_t(bytes));
    state.counters["cpu_ms_per_MB"] = cpu / (bytes / double(1 << 20));
}
BENCHMARK(BM_UdpReceiveIntoPage)
    ->ArgNames({"hex", "bytes"})
    ->Args({0, 1024})->Args({1, 1024})
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

// From the first connect to the thousandth name in the client box, and back to the
// empty box once all have left.
static void BM_AcceptAndList1000Clients(benchmark::State &state)
{
    const int n = int(state.range(0));
    NetworkToolWidget page;
    openPage(page, NetworkToolWidget::TcpServerMode, false);
    page.resize(900, 600);
    page.show();
    const quint16 port = page.tcpServer()->serverPort();
    QComboBox *box = page.findChild<QComboBox *>("cbxClients");
    double leaveMs = 0;
    for (auto _ : state) {
        std::vector<std::unique_ptr<QTcpSocket>> peers;
        peers.reserve(size_t(n));
        for (int i = 0; i < n; ++i) {
            peers.emplace_back(new QTcpSocket);
            peers.back()->connectToHost(QHostAddress::LocalHost, port);
        }
        if (!spinUntil([&] { return box->count() == n + 1; }, 60000)) {
            state.SkipWithError("not every client was listed");
            return;
        }
        state.PauseTiming();
        QElapsedTimer leave;
        leave.start();
        for (auto &p : peers)
            p->disconnectFromHost();
        spinUntil([&] { return box->count() == 1; }, 60000);
        leaveMs += double(leave.elapsed());
        peers.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
    state.counters["leave_ms"] = leaveMs / double(state.iterations());
}
BENCHMARK(BM_AcceptAndList1000Clients)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

int main(int argc, char **argv)
{
    // a thousand clients and their server-side sockets need two thousand descriptors
    rlimit limit {};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < 4096) {
        limit.rlim_cur = limit.rlim_max == RLIM_INFINITY ? 4096 : qMin<rlim_t>(limit.rlim_max, 4096);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    NumberTool::m_newLine = QByteArray("\r\n");
    return LarkBench::run<QApplication>(argc, argv);
}
