#include "CaptureLog.h"

#include <QtTest>

class tst_CaptureLog : public QObject
{
    Q_OBJECT
private slots:
    void everyChunkParsesBackToItsBytes_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("payload");
        QByteArray all;
        for (int i = 0; i < 256; ++i)
            all.append(char(i));
        QTest::newRow("ascii line with CR LF") << QByteArray("UTF-8") << QByteArray("ok 1\r\n") << QByteArray("T ok 1\\r\\n");
        QTest::newRow("backslash and controls") << QByteArray("UTF-8") << QByteArray("a\\b\x01\t\x7f")
                                                << QByteArray("T a\\\\b\\x01\\t\\x7F");
        QTest::newRow("GB18030 text") << QByteArray("GB18030") << QByteArray("\xc4\xe3\xba\xc3") << QByteArray("T 你好");
        QTest::newRow("UTF-8 split in the middle of a character becomes hex")
            << QByteArray("UTF-8") << QByteArray("\xe4\xbd") << QByteArray("H E4 BD");
        QTest::newRow("all byte values, UTF-8") << QByteArray("UTF-8") << all << QByteArray();
        QTest::newRow("all byte values, GB18030") << QByteArray("GB18030") << all << QByteArray();
        QTest::newRow("hexadecimal log") << QByteArray() << QByteArray("\x00\xff", 2) << QByteArray("H 00 FF");
    }
    void everyChunkParsesBackToItsBytes()
    {
        QFETCH(QByteArray, codec);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, payload);
        QTextCodec *c = codec.isEmpty() ? nullptr : QTextCodec::codecForName(codec);
        CaptureLog::Entry e;
        e.sent = true;
        e.time = QDateTime(QDate(2026, 11, 25), QTime(17, 30, 1, 23));
        e.sinceStartMs = 62005;
        e.bytes = bytes;
        const QByteArray line = CaptureLog::formatLine(e, c);
        QVERIFY(line.startsWith("TX 2026-11-25 17:30:01.023 +62.005 ") && line.indexOf('\n') == line.size() - 1);
        if (!payload.isEmpty())
            QCOMPARE(line.mid(35), payload + '\n');
        CaptureLog::Entry back;
        QVERIFY(CaptureLog::parseLine(line, c ? c : QTextCodec::codecForName("UTF-8"), &back));
        QVERIFY(back.bytes == bytes && back.sent && back.time == e.time && back.sinceStartMs == e.sinceStartMs);
    }

    void linesThatAreNotCaptureLinesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("unknown direction") << QByteArray("XX 2026-11-25 17:30:01.023 +0.000 T a");
        QTest::newRow("bad time") << QByteArray("RX 2026-13-25 17:30:01.023 +0.000 T a");
        QTest::newRow("odd hex") << QByteArray("RX 2026-11-25 17:30:01.023 +0.000 H 0");
        QTest::newRow("short hex escape") << QByteArray("RX 2026-11-25 17:30:01.023 +0.000 T \\x4");
    }
    void linesThatAreNotCaptureLinesAreRefused()
    {
        QFETCH(QByteArray, line);
        CaptureLog::Entry e;
        QVERIFY(!CaptureLog::parseLine(line, QTextCodec::codecForName("UTF-8"), &e));
    }
};

QTEST_GUILESS_MAIN(tst_CaptureLog)
#include "tst_capturelog.moc"
