#include "LarkTestCore.h"
#include "ReplyMatcher.h"

#include <QtTest>

static ReplyRule rule(ReplyRule::MatchKind kind, const QString &pattern, int minIntervalMs = 0)
{
    return ReplyRule(kind, pattern, ReplyRule::ReplyText, QString(), minIntervalMs);
}

// The matcher on streams cut into chunks at every awkward place.
class TstReplyMatcher : public QObject
{
    Q_OBJECT

private slots:
    void patternsAreFoundWhereverTheStreamIsCut_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QByteArrayList>("chunks");
        QTest::addColumn<int>("hits");
        const int text = ReplyRule::MatchText, regex = ReplyRule::MatchRegex, hex = ReplyRule::MatchHex;
        QTest::newRow("whole") << text << "AT\\r\\n" << QByteArray("UTF-8") << QByteArrayList{"AT\r\n"} << 1;
        QTest::newRow("split in the middle") << text << "AT\\r\\n" << QByteArray("UTF-8") << QByteArrayList{"xxA", "T\r", "\nyy"} << 1;
        QTest::newRow("one byte at a time") << text << "AT\\r\\n" << QByteArray("UTF-8") << QByteArrayList{"A", "T", "\r", "\n"} << 1;
        QTest::newRow("twice in one chunk") << text << "AT" << QByteArray("UTF-8") << QByteArrayList{"ATAT"} << 2;
        QTest::newRow("overlap is one match") << text << "AA" << QByteArray("UTF-8") << QByteArrayList{"A", "A", "A"} << 1;
        QTest::newRow("a match's bytes are not reused") << text << "ABA" << QByteArray("UTF-8") << QByteArrayList{"ABA", "BA"} << 1;
        QTest::newRow("hex handshake split") << hex << "AA 55 01" << QByteArray("UTF-8") << QByteArrayList{"\xaa", "\x55\x01"} << 1;
        QTest::newRow("near miss") << hex << "AA 55" << QByteArray("UTF-8") << QByteArrayList{"\xaa\x54", "\x55"} << 0;
        QTest::newRow("regex split") << regex << "TEMP=\\d+;" << QByteArray("UTF-8") << QByteArrayList{"TE", "MP=2", "3;"} << 1;
        QTest::newRow("regex twice") << regex << "OK" << QByteArray("UTF-8") << QByteArrayList{"OK OK", "O", "K"} << 3;
        QTest::newRow("regex on a character split over chunks") << regex << "温度" << QByteArray("GB18030")
                                                                << QByteArrayList{"\xce", "\xc2\xb6", "\xc8"} << 1;
        QTest::newRow("lookbehind sees text a match used") << regex << "(?<=A)A" << QByteArray("UTF-8") << QByteArrayList{"AA", "A"} << 2;
        // a partial match never ends; the window keeps only its last 4096 characters
        QTest::newRow("a match needing more than the window is never found")
            << regex << "<[^>]*>" << QByteArray("UTF-8")
            << QByteArrayList{"<" + QByteArray(ReplyMatcher::RegexWindow, 'x'), ">", "<short>"} << 1;
        QTest::newRow("empty regex match fires nothing") << regex << "x*" << QByteArray("UTF-8") << QByteArrayList{"abc"} << 0;
    }
    void patternsAreFoundWhereverTheStreamIsCut()
    {
        QFETCH(int, kind);
        QFETCH(QString, pattern);
        QFETCH(QByteArray, codec);
        QFETCH(QByteArrayList, chunks);
        ReplyMatcher m;
        m.setRules({rule(ReplyRule::MatchKind(kind), pattern)}, QTextCodec::codecForName(codec));
        int fired = 0;
        for (const QByteArray &c : chunks)
            fired += m.feed(c, 0).size();
        QTEST(fired, "hits");
    }

    void theMinimumIntervalHoldsPerRule()
    {
        ReplyMatcher m;
        m.setRules({rule(ReplyRule::MatchText, "A", 100), rule(ReplyRule::MatchText, "B")}, nullptr);
        QCOMPARE(m.feed("AAB", 1000), (QVector<int>{0, 1}));
        QCOMPARE(m.feed("A", 1099), QVector<int>());
        QCOMPARE(m.feed("AB", 1100), (QVector<int>{0, 1}));
    }

    void aRunawayRegexIsStoppedAndReported()
    {
        ReplyMatcher m;
        m.setRules({rule(ReplyRule::MatchRegex, "(a+)+b"), rule(ReplyRule::MatchText, "a")}, nullptr);
        QElapsedTimer t;
        t.start();
        const QVector<int> hits = m.feed(QByteArray(4000, 'a') + "c", 0);
        QVERIFY2(t.elapsed() < 200, qPrintable(QString::number(t.elapsed())));
        QCOMPARE(hits.size(), 4000); // the literal rule still works
        QCOMPARE(m.takeStopped(), QVector<int>{0});
        QVERIFY(m.problem(0).contains("回溯"));
        QCOMPARE(m.feed("aab", 0), QVector<int>({1, 1}));
    }
};

LARK_TEST_GUILESS_MAIN(TstReplyMatcher)
#include "tst_replymatcher.moc"
