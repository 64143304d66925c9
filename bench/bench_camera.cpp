// The camera page under load over loopback TCP: RGB565 frames from a board that
// waits for each acknowledgement (frames per second, process CPU per frame, and the
// longest time the event loop was kept busy), JPEG frames the same way, and the time
// one RGB565 frame takes to become the viewer's pixmap.
#include "CameraDebugWidget.h"
#include "CameraFrame.h"
#include "CameraImageDecoder.h"
#include "ImageViewer.h"
#include "TcpServer.h"

#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QElapsedTimer>
#include <QImage>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPushButton>
#include <QRadioButton>
#include <QTcpSocket>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <ctime>

static double processCpuMs()
{
    timespec ts {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1000.0 + double(ts.tv_nsec) / 1e6;
}

template <class Pred>
static bool spinUntil(Pred pred, int timeoutMs = 20000)
{
    QElapsedTimer clock;
    clock.start();
    while (!pred()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// The longest gap between two ticks of a 1 ms timer: how long the loop was blocked.
class StallMeter : public QObject
{
public:
    StallMeter()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_max = qMax(m_max, m_clock.restart());
        });
        m_clock.start();
        m_timer.start();
    }
    qint64 maxMs() const { return m_max; }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_max = 0;
};

struct Board {
    CameraDebugWidget page;
    QTcpSocket socket;

    bool open(bool jpeg)
    {
        page.resize(1200, 800);
        page.show();
        for (QRadioButton *r : page.findChildren<QRadioButton *>())
            if (r->text() == (jpeg ? "JPEG数据" : "协议传输"))
                r->setChecked(true);
        page.findChild<QLineEdit *>("edtPort")->setText("0");
        page.findChild<QPushButton *>("btnOpen")->click();
        socket.connectToHost(QHostAddress::LocalHost, page.tcpServer()->serverPort());
        return spinUntil([&] { return page.tcpServer()->counts() == 1; }, 5000);
    }
    bool sendCounted(const QByteArray &data)
    {
        const qint64 want = page.recvBytes() + data.size();
        socket.write(data);
        return spinUntil([&] { return page.recvBytes() >= want; });
    }
    // head in a chunk of its own, then the rest; done when the acknowledgement is in
    bool sendFrame(const QByteArray &frame)
    {
        const qint64 acked = socket.bytesAvailable() + 13;
        return sendCounted(frame.left(12)) && sendCounted(frame.mid(12))
               && spinUntil([&] { return socket.bytesAvailable() >= acked; });
    }
};

static void report(benchmark::State &state, double cpu, qint64 stall)
{
    state.counters["fps"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["cpu_ms_per_frame"] = cpu / double(state.iterations());
    state.counters["max_stall_ms"] = double(stall);
}

static void BM_Rgb565OverTcp(benchmark::State &state)
{
    const int w = int(state.range(0));
    const int h = int(state.range(1));
    Board board;
    if (!board.open(false)) {
        state.SkipWithError("no connection");
        return;
    }
    QByteArray format(1, 4);
    format += CameraFrame::le(unsigned(w), 2) + CameraFrame::le(unsigned(h), 2);
    board.sendCounted(CameraFrame::build(1, 0, format));
    QByteArray payload(w * h * 2, 0);
    for (int i = 0; i < payload.size(); ++i)
        payload[i] = char(i * 31);
    const QByteArray frame = CameraFrame::build(2, 0, payload);
    StallMeter stall;
    double cpu = 0;
    for (auto _ : state) {
        const double cpu0 = processCpuMs();
        if (!board.sendFrame(frame)) {
            state.SkipWithError("frame not acknowledged");
            return;
        }
        board.socket.readAll();
        cpu += processCpuMs() - cpu0;
    }
    report(state, cpu, stall.maxMs());
}
BENCHMARK(BM_Rgb565OverTcp)->ArgNames({"w", "h"})->Args({320, 240})->Args({640, 480})
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(300);

static void BM_JpegOverTcp(benchmark::State &state)
{
    const int w = int(state.range(0));
    const int h = int(state.range(1));
    Board board;
    if (!board.open(true)) {
        state.SkipWithError("no connection");
        return;
    }
    QImage image(w, h, QImage::Format_RGB888);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y, qRgb(x & 255, y & 255, (x * y) & 255));
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", 80);
    StallMeter stall;
    double cpu = 0;
    for (auto _ : state) {
        const double cpu0 = processCpuMs();
        const quint32 want = board.page.frameCount() + 1;
        board.socket.write(jpeg);
        if (!spinUntil([&] { return board.page.frameCount() >= want; })) {
            state.SkipWithError("image not cut");
            return;
        }
        cpu += processCpuMs() - cpu0;
    }
    report(state, cpu, stall.maxMs());
    state.counters["jpeg_bytes"] = double(jpeg.size());
}
BENCHMARK(BM_JpegOverTcp)->ArgNames({"w", "h"})->Args({320, 240})->Args({640, 480})
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(200);

// one frame's payload to the viewer's pixmap, as the page does it
static void BM_SaveDataWithRGB565(benchmark::State &state)
{
    CameraDebugWidget page;
    CameraDebugWidget::s_img_format format;
    format.width = ushort(state.range(0));
    format.height = ushort(state.range(1));
    QByteArray payload(format.width * format.height * 2, 0);
    for (int i = 0; i < payload.size(); ++i)
        payload[i] = char(i * 31);
    for (auto _ : state)
        page.saveDataWithRGB565(&format, payload);
}
BENCHMARK(BM_SaveDataWithRGB565)->ArgNames({"w", "h"})->Args({320, 240})->Args({640, 480})
    ->Unit(benchmark::kMicrosecond);

// the pixel loop alone
static void BM_DecodeRgb565(benchmark::State &state)
{
    const int w = int(state.range(0));
    const int h = int(state.range(1));
    QByteArray payload(w * h * 2, 0x35);
    for (auto _ : state)
        benchmark::DoNotOptimize(CameraImageDecoder::rgb565(w, h, payload.constData(), payload.size(), false));
}
BENCHMARK(BM_DecodeRgb565)->ArgNames({"w", "h"})->Args({320, 240})->Args({640, 480})
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // the page logs every frame it sends
    QLoggingCategory::setFilterRules("default.debug=false");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
