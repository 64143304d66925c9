// The binary editor page with large files: time from HexEditWidget::loadFile to a
// painted view, and the memory the loaded file costs (resident set growth once shown,
// and the peak on the way), for 1 MB, 100 MB and 1 GB files. The files are written to
// the temporary folder once (so they are in the page cache, as a file just built or
// copied would be) and deleted afterwards; 1 GB is skipped without the room for it.
#include "LarkBench.h"
#include "HexEditWidget.h"
#include "QHexEdit.h"

#include <Okteta/AbstractByteArrayModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

qint64 statusKb(const char *key)
{
    QFile f("/proc/self/status");
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(int(strlen(key))).trimmed().split(' ').first().toLongLong();
    return 0;
}

qint64 memAvailableKb()
{
    QFile f("/proc/meminfo");
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith("MemAvailable:"))
            return line.mid(13).trimmed().split(' ').first().toLongLong();
    return 0;
}

// the peak resident size starts again from the current one
void resetPeak()
{
    QFile f("/proc/self/clear_refs");
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

// a file of mb MiB filled with a repeating 64 KiB pattern, so no page is all zeros
QString makeFile(const QTemporaryDir &dir, qint64 mb)
{
    const QString path = dir.filePath(QString("bench-%1M.bin").arg(mb));
    QFile f(path);
    if (f.exists() || !f.open(QIODevice::WriteOnly))
        return path;
    QByteArray block(1 << 16, Qt::Uninitialized);
    for (int i = 0; i < block.size(); ++i)
        block[i] = char((i * 31 + i / 251) & 0xff);
    for (qint64 written = 0; written < (mb << 20); written += block.size())
        f.write(block);
    return path;
}

QTemporaryDir &tempDir()
{
    static QTemporaryDir dir(QDir::tempPath() + "/bench_hexedit-XXXXXX");
    return dir;
}

} // namespace

// range(0): file size in MiB
static void BM_LoadFileToPaintedView(benchmark::State &state)
{
    const qint64 mb = state.range(0);
    const qint64 bytes = mb << 20;
    // the file in the page cache, its bytes in the process, and slack
    if (memAvailableKb() < (3 * bytes + (512 << 20)) / 1024
        || QStorageInfo(QDir::tempPath()).bytesAvailable() < bytes + (512 << 20)) {
        state.SkipWithError("not enough free memory or disk for this size");
        return;
    }
    const QString path = makeFile(tempDir(), mb);
    HexEditWidget page;
    page.resize(900, 600);
    page.show();
    QCoreApplication::processEvents();

    double rssMb = 0, peakMb = 0;
    for (auto _ : state) {
        state.PauseTiming();
        page.hexEdit()->setData(QByteArray());
        QCoreApplication::processEvents();
        const qint64 before = statusKb("VmRSS:");
        resetPeak();
        state.ResumeTiming();

        page.loadFile(path);
        page.hexEdit()->viewport()->repaint();

        state.PauseTiming();
        if (page.getCounts().last() != QString("Size: %1").arg(bytes))
            state.SkipWithError("the file did not load whole");
        rssMb += double(statusKb("VmRSS:") - before) / 1024.0;
        peakMb += double(qMax(statusKb("VmHWM:"), statusKb("VmRSS:")) - before) / 1024.0;
        state.ResumeTiming();
    }
    const double n = double(state.iterations());
    state.counters["rss_delta_MB"] = rssMb / n;
    state.counters["peak_delta_MB"] = peakMb / n;
    state.counters["peak_per_file"] = peakMb / n / double(mb);
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes);
    QFile::remove(path);
}
BENCHMARK(BM_LoadFileToPaintedView)
    ->Arg(1)->Arg(100)->Arg(1024)
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

// with 1 GiB loaded (mapped) and one byte changed in its middle: saving it whole as a
// copy beside it, through the temporary file and the rename
static void BM_SaveOneEditIn1GB(benchmark::State &state)
{
    const qint64 bytes = qint64(1) << 30;
    if (QStorageInfo(QDir::tempPath()).bytesAvailable() < 2 * bytes + (512 << 20)) {
        state.SkipWithError("not enough free disk for this size");
        return;
    }
    const QString path = makeFile(tempDir(), 1024), copy = path + ".saved";
    HexEditWidget page;
    page.resize(900, 600);
    page.show();
    page.loadFile(path);
    page.hexEdit()->byteArrayModel()->setByte(Okteta::Address(bytes / 2), 0x5a);
    for (auto _ : state)
        if (!page.saveFile(copy))
            state.SkipWithError("saving failed");
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes);
    QFile::remove(copy);
    QFile::remove(path);
}
BENCHMARK(BM_SaveOneEditIn1GB)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

// with 100 MiB loaded: jump to the end, type a byte there and paint
static void BM_EditAtTheEndOf100MB(benchmark::State &state)
{
    HexEditWidget page;
    page.resize(900, 600);
    page.show();
    const QString path = makeFile(tempDir(), 100);
    page.loadFile(path);
    QHexEdit *edit = page.hexEdit();
    edit->viewport()->repaint();
    for (auto _ : state) {
        edit->setCursorPosition(edit->byteArrayModel()->size() - 1);
        edit->ensureCursorVisible();
        edit->byteArrayModel()->setByte(edit->byteArrayModel()->size() - 1, 0x5a);
        edit->viewport()->repaint();
    }
    QFile::remove(path);
}
BENCHMARK(BM_EditAtTheEndOf100MB)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

int main(int argc, char **argv)
{
    return LarkBench::run<QApplication>(argc, argv);
}
