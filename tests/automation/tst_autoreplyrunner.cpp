#include "AutoReplyRunner.h"
#include "LarkTestCore.h"
#include "LinkTapRig.h"

#include <QSignalSpy>

static ReplyRule rule(ReplyRule::MatchKind match, const QString &pattern, ReplyRule::ReplyKind as, const QString &reply,
                      int minIntervalMs = 0, int delayMs = 0)
{
    ReplyRule r;
    r.matchKind = match;
    r.pattern = pattern;
    r.replyKind = as;
    r.reply = reply;
    r.minIntervalMs = minIntervalMs;
    r.delayMs = delayMs;
    return r;
}

// Rules answering a board on a socat pty through the tap, as they would on a page.
class TstAutoReplyRunner : public QObject
{
    Q_OBJECT

private slots:
    void rulesAnswerTheBoardOverAPty()
    {
        LinkTapRig rig;
        QVERIFY(rig.openPty());
        AutoReplyRunner runner;
        runner.setTap(&rig.tap);
        runner.setRules({rule(ReplyRule::MatchText, "AT\\r\\n", ReplyRule::ReplyText, "OK\\r\\n"),
                         rule(ReplyRule::MatchHex, "AA 55 01", ReplyRule::ReplyHex, "55 AA 81"),
                         rule(ReplyRule::MatchText, "END", ReplyRule::ReplyText, "DONE")});
        QSignalSpy received(&rig.tap, SIGNAL(received(QByteArray)));
        QSignalSpy sent(&rig.tap, SIGNAL(sent(QByteArray)));

        rig.boardWrite("AT\r\n"); // nothing while switched off
        QVERIFY(received.wait());
        runner.setActive(true);
        rig.boardWrite("AT\r\n");
        QCOMPARE(rig.boardReadAtLeast(4), QByteArray("OK\r\n"));

        // the handshake arrives as two reads of the link
        received.clear();
        rig.boardWrite("\xaa\x55");
        QVERIFY(received.wait());
        rig.boardWrite("\x01");
        QCOMPARE(rig.boardReadAtLeast(3), QByteArray("\x55\xaa\x81"));
        QVERIFY(received.count() >= 2);
        QCOMPARE(runner.fireCount(1), 1);
        QCOMPARE(sent.count(), 2); // replies are the page's own writes
    }

    void theMinimumIntervalHoldsAndDelaysApply()
    {
        LinkTapRig rig;
        QVERIFY(rig.openPty());
        AutoReplyRunner runner;
        runner.setTap(&rig.tap);
        runner.setRules({rule(ReplyRule::MatchText, "AT", ReplyRule::ReplyText, "OK", 60000),
                         rule(ReplyRule::MatchText, "END", ReplyRule::ReplyText, "DONE", 0, 30)});
        runner.setActive(true);
        QSignalSpy received(&rig.tap, SIGNAL(received(QByteArray)));
        for (int i = 0; i < 5; ++i) {
            rig.boardWrite("AT");
            QVERIFY(received.wait());
        }
        rig.boardWrite("END");
        QCOMPARE(rig.boardReadAtLeast(6), QByteArray("OKDONE"));
        QCOMPARE(runner.fireCount(0), 1);
    }

    void delayedRepliesDieWithTheLink()
    {
        LinkTapRig rig;
        QVERIFY(rig.openPty());
        AutoReplyRunner runner;
        runner.setTap(&rig.tap);
        runner.setRules({rule(ReplyRule::MatchText, "A", ReplyRule::ReplyText, "late", 0, 50),
                         rule(ReplyRule::MatchText, "B", ReplyRule::ReplyText, "now"),
                         rule(ReplyRule::MatchText, "C", ReplyRule::ReplyText, "end", 0, 100)});
        runner.setActive(true);
        QSignalSpy received(&rig.tap, SIGNAL(received(QByteArray)));
        rig.boardWrite("A");
        QVERIFY(received.wait());
        rig.tap.reportClosed();
        rig.tap.reportOpened("again");
        rig.boardWrite("BC"); // "end" leaves after the time "late" would have
        QCOMPARE(rig.boardReadAtLeast(6), QByteArray("nowend"));
    }
};

LARK_TEST_GUILESS_MAIN(TstAutoReplyRunner)
#include "tst_autoreplyrunner.moc"
