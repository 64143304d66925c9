#include "../../bench/BoardWriter.h"
#include "CaptureWriter.h"
#include "LarkPtyPair.h"
#include "LarkTestCore.h"

#include <QtTest>

#include <thread>

// The whole capturing program killed with SIGKILL in the middle of a 1 MB/s stream:
// the file is a prefix of the stream and lacks at most one frame's worth of what the
// program had received.
class tst_CaptureCrash : public QObject
{
    Q_OBJECT
private slots:
    void aKilledProgramLeavesAPrefixShortOfAtMostOneFrame()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        QTemporaryDir dir;
        const QString file = dir.filePath("crash.bin");
        QProcess host;
        host.start(LARK_CAPTURE_HOST, {pty.programPath(), file});
        QVERIFY(host.waitForReadyRead(10000));
        QCOMPARE(host.readLine().trimmed(), QByteArray("ready"));

        const int rate = 1000000;
        QByteArray stream(4 * rate, Qt::Uninitialized);
        for (int i = 0; i < stream.size(); ++i)
            stream[i] = char((quint32(i) * 7919u) >> 3);
        std::atomic<bool> stop{false};
        std::thread board(boardWriter, pty.boardPath(), stream, rate, 4096, &stop);
        // about a second into the stream, right after the program said what it had
        qint64 received = 0;
        while (received < rate && host.waitForReadyRead(5000))
            while (host.canReadLine())
                received = host.readLine().trimmed().toLongLong();
        host.kill();
        QVERIFY(host.waitForFinished());
        stop = true;
        board.join();

        QFile f(file);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray kept = f.readAll();
        QVERIFY(received >= rate);
        QVERIFY2(stream.startsWith(kept), "the capture is not a prefix of the stream");
        // one frame at 1 MB/s; the flush runs every CaptureWriter::flushInterval ms
        const qint64 frame = rate * 30 / 1000;
        QVERIFY2(kept.size() >= received - frame,
                 qPrintable(QString("kept %1 of %2 received").arg(kept.size()).arg(received)));
    }
};

LARK_TEST_GUILESS_MAIN(tst_CaptureCrash)
#include "tst_capturecrash.moc"
