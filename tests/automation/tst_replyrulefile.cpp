#include "LarkTestCore.h"
#include "ReplyRuleFile.h"

#include <QTemporaryDir>

// Rule files: what a good file gives, and the message a bad one gives instead.
class TstReplyRuleFile : public QObject
{
    Q_OBJECT

private slots:
    void badFilesAreRefusedWithTheirReason_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        QTest::newRow("not json") << QByteArray("{\"rules\": [\n  {\"pattern\": }]}") << "不是有效的 JSON（第 2 行";
        QTest::newRow("an array") << QByteArray("[]") << "JSON 对象";
        QTest::newRow("no rules") << QByteArray("{}") << "\"rules\"";
        QTest::newRow("unknown top field") << QByteArray("{\"rules\": [], \"version\": 2}") << "\"version\"";
        QTest::newRow("unknown rule field") << QByteArray("{\"rules\": [{\"pattern\": \"a\"}, {\"pattern\": \"b\", \"replay\": \"x\"}]}") << "第 2 条规则：未知字段 \"replay\"";
        QTest::newRow("rule not an object") << QByteArray("{\"rules\": [3]}") << "第 1 条规则";
        QTest::newRow("no pattern") << QByteArray("{\"rules\": [{\"reply\": \"x\"}]}") << "\"pattern\"";
        QTest::newRow("unknown match kind") << QByteArray("{\"rules\": [{\"pattern\": \"a\", \"match\": \"glob\"}]}") << "\"match\"";
        QTest::newRow("enabled as text") << QByteArray("{\"rules\": [{\"pattern\": \"a\", \"enabled\": \"yes\"}]}") << "\"enabled\"";
        QTest::newRow("negative delay") << QByteArray("{\"rules\": [{\"pattern\": \"a\", \"delayMs\": -5}]}") << "\"delayMs\"";
        QTest::newRow("fractional interval") << QByteArray("{\"rules\": [{\"pattern\": \"a\", \"minIntervalMs\": 1.5}]}") << "\"minIntervalMs\"";
        QTest::newRow("bad hex pattern") << QByteArray("{\"rules\": [{\"pattern\": \"AA 5\", \"match\": \"hex\"}]}") << "匹配内容";
        QTest::newRow("bad regex") << QByteArray("{\"rules\": [{\"pattern\": \"(a\", \"match\": \"regex\"}]}") << "正则表达式";
        QTest::newRow("bad reply escape") << QByteArray("{\"rules\": [{\"pattern\": \"a\", \"reply\": \"\\\\x1\"}]}") << "应答内容";
        QTest::newRow("empty pattern") << QByteArray("{\"rules\": [{\"pattern\": \"\"}]}") << "为空";
    }
    void badFilesAreRefusedWithTheirReason()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        QList<ReplyRule> rules{ReplyRule()};
        QString why;
        QVERIFY(!ReplyRuleFile::parse(json, &rules, &why));
        QVERIFY2(why.contains(error), qPrintable(why));
        QCOMPARE(rules.size(), 1); // the caller's rules are untouched
    }

    // only the pattern is required; a place that cannot be written or read is named
    void aSavedSetLoadsBackTheSameAndUnreachablePlacesAreNamed()
    {
        const ReplyRule a(ReplyRule::MatchText, "AT\\r\\n", ReplyRule::ReplyText, "OK\\r\\n");
        ReplyRule b(ReplyRule::MatchRegex, "TEMP=(\\d+)", ReplyRule::ReplyHex, "06", 1000, 20);
        b.enabled = false;
        QTemporaryDir dir;
        QString why;
        QVERIFY(ReplyRuleFile::save(dir.filePath("rules.json"), {a, b}, &why));
        QList<ReplyRule> back;
        QVERIFY2(ReplyRuleFile::load(dir.filePath("rules.json"), &back, &why), qPrintable(why));
        QCOMPARE(back, (QList<ReplyRule>{a, b}));
        QVERIFY(ReplyRuleFile::parse("{\"rules\": [{\"pattern\": \"AT\"}]}", &back, &why));
        QCOMPARE(back, QList<ReplyRule>{ReplyRule(ReplyRule::MatchText, "AT")});
        QVERIFY(!ReplyRuleFile::save("/nonexistent/rules.json", {a}, &why) && why.contains("/nonexistent/rules.json"));
        QVERIFY(!ReplyRuleFile::load("/nonexistent/rules.json", nullptr, &why) && why.contains("/nonexistent/rules.json"));
    }
};

LARK_TEST_GUILESS_MAIN(TstReplyRuleFile)
#include "tst_replyrulefile.moc"
