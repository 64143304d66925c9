#include "CaptureLog.h"
#include "CaptureWriter.h"
#include "LarkPtyPair.h"
#include "LarkTestCore.h"
#include "LinkTap.h"
#include "QextSerialPort.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

// The board on a socat pty writes, a real serial port reads into a tap, the capture
// follows the tap.
class tst_CaptureWriter : public QObject
{
    Q_OBJECT
private slots:
    void captureHoldsExactlyWhatCrossedTheLink_data();
    void captureHoldsExactlyWhatCrossedTheLink();
    void aFailedWriteStopsTheCaptureAndKeepsWhatWasWritten_data();
    void aFailedWriteStopsTheCaptureAndKeepsWhatWasWritten();

private:
    QTemporaryDir m_dir;
};

void tst_CaptureWriter::captureHoldsExactlyWhatCrossedTheLink_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<qint64>("roll");
    QTest::addColumn<int>("files");
    QTest::newRow("raw, one file") << "cap.bin" << qint64(0) << 1;
    QTest::newRow("raw, rolled over at exactly 64 KiB") << "roll.bin" << qint64(64 * 1024) << 4;
    QTest::newRow("readable log") << "cap.log" << qint64(0) << 1;
}

void tst_CaptureWriter::captureHoldsExactlyWhatCrossedTheLink()
{
    QFETCH(QString, name);
    QFETCH(qint64, roll);
    QFETCH(int, files);
    LarkPtyPair pty;
    QVERIFY(pty.start());
    QextSerialPort port(pty.programPath());
    QVERIFY(port.open(QIODevice::ReadWrite));
    LinkTap tap;
    tap.reportOpened(pty.programPath());
    int arrived = 0;
    connect(&port, &QIODevice::readyRead, &tap, [&] {
        const QByteArray b = port.readAll();
        arrived += b.size();
        tap.reportReceived(b);
    });
    tap.setWriter([&](const QByteArray &b) { tap.reportSent(b); return port.write(b); });

    const QString path = m_dir.filePath(name);
    CaptureWriter writer;
    QTextCodec *codec = QTextCodec::codecForName("UTF-8");
    QVERIFY(writer.start(path, CaptureWriter::formatFor(path, false), codec, roll));
    writer.attach(&tap);
    QByteArray board(200 * 1024, 0);
    QRandomGenerator rng(7);
    for (char &c : board)
        c = char(rng.bounded(256));
    tap.write("typed");
    QVERIFY(pty.boardWrite(board));
    QTRY_COMPARE(arrived, board.size());
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
    QByteArray rx = all, tx = "typed";
    if (name.endsWith(".log")) {
        rx.clear();
        tx.clear();
        for (const QByteArray &line : all.split('\n')) {
            CaptureLog::Entry e;
            QVERIFY2(line.isEmpty() || CaptureLog::parseLine(line, codec, &e), line.constData());
            (e.sent ? tx : rx) += e.bytes;
        }
    }
    QCOMPARE(tx, QByteArray("typed"));
    QCOMPARE(rx, board);
}

void tst_CaptureWriter::aFailedWriteStopsTheCaptureAndKeepsWhatWasWritten_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("disk full") << "/dev/full";
    QTest::newRow("file deleted during the capture") << m_dir.filePath("gone.bin");
}

void tst_CaptureWriter::aFailedWriteStopsTheCaptureAndKeepsWhatWasWritten()
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
    QVERIFY(failed.wait());
    QVERIFY(!writer.isRunning());
    QVERIFY(failed.at(0).at(0).toString().contains(path));
    QCOMPARE(writer.totalBytes(), deleteMidway ? qint64(5) : qint64(0));
    // the link goes on: more bytes are simply not captured
    writer.SltReceived("third");
    QCOMPARE(failed.size(), 1);
}

LARK_TEST_GUILESS_MAIN(tst_CaptureWriter)
#include "tst_capturewriter.moc"
