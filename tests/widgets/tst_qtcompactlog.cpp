#include "LarkTestCore.h"
#include "NumberTool.h"
#include "QtCompactLog.h"

#include <QtTest>

class TstQtCompactLog : public QObject
{
    Q_OBJECT
private slots:
    void textComesBackWholeWhateverTheBlocks_data()
    {
        QTest::addColumn<int>("blockBytes");
        QTest::addColumn<QStringList>("pieces");
        const QString mixed = QString::fromUtf8("状态正常 temp=25.3 \xF0\x9F\x98\x80\r\n");
        // blocks of 1, 2 and 7 bytes cut through every multi-byte character somewhere
        QTest::newRow("one byte blocks") << 1 << QStringList{mixed, mixed};
        QTest::newRow("two byte blocks") << 2 << QStringList{mixed, "", mixed.repeated(3)};
        QTest::newRow("odd blocks") << 7 << QStringList{mixed.repeated(20), "5A A5 ", mixed};
        QTest::newRow("default blocks, several sealed")
            << int(QtCompactLog::DefaultBlockBytes) << QStringList{mixed.repeated(150000), "tail"};
        QTest::newRow("nothing") << 16 << QStringList{};
        // found by fuzzing: a board's NUL cut the saved text short
        QTest::newRow("NUL characters") << 4 << QStringList{QString("temp=215") + QChar(0) + "\x17", QString(QChar(0)), "ok"};
        const QString face = QString::fromUtf8("\xF0\x9F\x98\x80");
        QTest::newRow("a pair of surrogates over two appends") << 3 << QStringList{"a" + face.left(1), face.mid(1) + "b"};
    }

    void textComesBackWholeWhateverTheBlocks()
    {
        QFETCH(int, blockBytes);
        QFETCH(QStringList, pieces);
        QtCompactLog log(blockBytes);
        for (const QString &p : pieces)
            log.append(p);
        const QString all = pieces.join(QString());
        QCOMPARE(log.length(), qint64(all.size()));
        QCOMPARE(log.isEmpty(), all.isEmpty());
        QVERIFY(log.text() == all);
    }

    // what a long session holds: received text and hex take a fraction of their size
    void receivedTextIsHeldInAFractionOfItsSize_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("maxStored"); // besides the one open block
        const QString line = QString::fromUtf8("[12:00:00.000] ASCII >\ntemp=25.3 状态正常 0123456789\n");
        const QString lines = line.repeated((16 << 20) / line.size());
        // UTF-16 in a QString takes two bytes a character
        QTest::newRow("log lines") << lines << qint64(lines.size() / 10);
        // hex of bytes with no pattern: 8 bits in every three characters at best
        QByteArray noise(4 << 20, Qt::Uninitialized);
        quint32 x = 12345;
        for (char &c : noise) {
            x = x * 1103515245u + 12345u;
            c = char(x >> 23);
        }
        QTest::newRow("hex of noise") << NumberTool::byteToHex(noise) << qint64(noise.size() * 16 / 10);
    }

    void receivedTextIsHeldInAFractionOfItsSize()
    {
        QFETCH(QString, text);
        QFETCH(qint64, maxStored);
        QtCompactLog log;
        log.append(text);
        QVERIFY2(log.storedBytes() < maxStored + QtCompactLog::DefaultBlockBytes + 4096,
                 qPrintable(QString::number(log.storedBytes())));
    }

    // past its memory bound the log goes on in a temporary file, or in memory where
    // none can be made, and gives back the same text either way
    void aLongLogSpillsToAFileAndComesBackTheSame_data()
    {
        QTest::addColumn<qint64>("memoryBytes");
        QTest::addColumn<QByteArray>("tmpDir");
        QTest::addColumn<bool>("spilled");
        QTest::newRow("from the first block") << qint64(0) << QByteArray() << true;
        QTest::newRow("after some blocks") << qint64(200) << QByteArray() << true;
        QTest::newRow("no temporary folder") << qint64(0) << QByteArray("/nonexistent-lark") << false;
    }
    void aLongLogSpillsToAFileAndComesBackTheSame()
    {
        QFETCH(qint64, memoryBytes);
        QFETCH(QByteArray, tmpDir);
        const QByteArray oldTmp = qgetenv("TMPDIR");
        if (!tmpDir.isEmpty())
            qputenv("TMPDIR", tmpDir);
        QtCompactLog log(64, memoryBytes);
        QString all;
        for (int i = 0; i < 200; ++i) {
            const QString piece = QString("%1 温度=%2\r\n").arg(i).arg(i * 7919 % 1000);
            log.append(piece);
            all += piece;
            if (i == 100)
                QCOMPARE(log.text(), all); // reading does not disturb what follows
        }
        oldTmp.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", oldTmp);
        QTEST(log.spilledBytes() > 0, "spilled");
        QCOMPARE(log.text(), all);
        log.clear();
        QVERIFY(log.isEmpty() && log.text().isEmpty() && log.spilledBytes() == 0);
        log.append("again");
        QCOMPARE(log.text(), QString("again"));
    }
};

LARK_TEST_GUILESS_MAIN(TstQtCompactLog)
#include "tst_qtcompactlog.moc"
