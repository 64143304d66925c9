#include "../automation/LinkTapRig.h"
#include "CaptureLog.h"
#include "CaptureWriter.h"
#include "LarkTapSpy.h"
#include "LarkTestCore.h"

#include <QtTest>

// The board on a socat pty writes, a real serial port reads into a tap as a page's
// does, the capture follows the tap.
class tst_CaptureWriter : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void captureHoldsExactlyWhatCrossedTheLink_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("roll");
        QTest::addColumn<int>("files");
        QTest::newRow("raw, one file") << "cap.bin" << qint64(0) << 1;
        QTest::newRow("raw, rolled over at exactly 64 KiB") << "roll.bin" << qint64(64 * 1024) << 4;
        QTest::newRow("readable log") << "cap.log" << qint64(0) << 1;
    }

    void captureHoldsExactlyWhatCrossedTheLink()
    {
        QFETCH(QString, name);
        QFETCH(qint64, roll);
        QFETCH(int, files);
        LinkTapRig rig;
        QVERIFY(rig.openPty());
        LarkTapSpy spy(&rig.tap);
        const QString path = m_dir.filePath(name);
        CaptureWriter writer;
        QTextCodec *codec = QTextCodec::codecForName("UTF-8");
        QVERIFY(writer.start(path, CaptureWriter::formatFor(path, false), codec, roll));
        writer.attach(&rig.tap);
        QByteArray board(200 * 1024, 0);
        QRandomGenerator(7).fillRange(reinterpret_cast<quint32 *>(board.data()), board.size() / 4);
        rig.tap.write("typed");
        rig.boardWrite(board);
        QTRY_COMPARE(spy.received().size(), board.size());
        writer.stop();

        QByteArray all;
        for (int i = 0; i < files; ++i) {
            QFile f(CaptureWriter::rolledPath(path, i));
            QVERIFY2(f.open(QIODevice::ReadOnly), qPrintable(f.fileName()));
            QCOMPARE(f.size(), (roll && i < files - 1) ? roll : (roll ? board.size() % roll : f.size()));
            all += f.readAll();
        }
        QVERIFY(!QFile::exists(CaptureWriter::rolledPath(path, files)));
        // raw: only what arrived, byte for byte, across the roll-overs; a log: both ways
        QByteArray rx = name.endsWith(".log") ? QByteArray() : all, tx = rx.isEmpty() ? "" : "typed";
        if (rx.isEmpty()) {
            for (const QByteArray &line : all.split('\n')) {
                CaptureLog::Entry e;
                QVERIFY2(line.isEmpty() || CaptureLog::parseLine(line, codec, &e), line.constData());
                (e.sent ? tx : rx) += e.bytes;
            }
        }
        QCOMPARE(tx, QByteArray("typed"));
        QCOMPARE(rx, board);
    }

    void aFailedWriteStopsTheCaptureAndKeepsWhatWasWritten_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("disk full") << "/dev/full";
        QTest::newRow("file deleted during the capture") << m_dir.filePath("gone.bin");
    }

    void aFailedWriteStopsTheCaptureAndKeepsWhatWasWritten()
    {
        QFETCH(QString, path);
        const bool deleteMidway = path != "/dev/full";
        CaptureWriter writer;
        QSignalSpy failed(&writer, SIGNAL(failed(QString)));
        QSignalSpy progress(&writer, SIGNAL(progress(qint64)));
        QVERIFY(writer.start(path, CaptureWriter::Raw));
        writer.SltReceived("first");
        if (deleteMidway) {
            QVERIFY(progress.wait());
            QFile kept(path);
            QVERIFY(kept.open(QIODevice::ReadOnly));
            QCOMPARE(kept.readAll(), QByteArray("first"));
            QVERIFY(QFile::remove(path));
            writer.SltReceived("second");
        }
        QVERIFY(failed.wait() && !writer.isRunning() && failed.at(0).at(0).toString().contains(path));
        QCOMPARE(writer.totalBytes(), deleteMidway ? qint64(5) : qint64(0));
        // the link goes on: more bytes are simply not captured
        writer.SltReceived("third");
        QCOMPARE(failed.size(), 1);
    }
};

LARK_TEST_GUILESS_MAIN(tst_CaptureWriter)
#include "tst_capturewriter.moc"
