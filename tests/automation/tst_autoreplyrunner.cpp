#include "AutoReplyRunner.h"
#include "LarkTestCore.h"
#include "LinkTapRig.h"

#include <QSignalSpy>

static const auto Text = ReplyRule::MatchText;

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
        runner.setRules({ReplyRule(Text, "AT\\r\\n", ReplyRule::ReplyText, "OK\\r\\n"),
                         ReplyRule(ReplyRule::MatchHex, "AA 55 01", ReplyRule::ReplyHex, "55 AA 81"),
                         ReplyRule(Text, "END", ReplyRule::ReplyText, "DONE")});
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

        // the minimum interval holds, and delayed replies die with the link's life
        runner.setRules({ReplyRule(Text, "AT", ReplyRule::ReplyText, "OK", 60000),
                         ReplyRule(Text, "X", ReplyRule::ReplyText, "late", 0, 1000),
                         ReplyRule(Text, "END", ReplyRule::ReplyText, "DONE", 0, 1200)});
        for (int i = 0; i < 5; ++i) {
            rig.boardWrite("AT");
            QVERIFY(received.wait());
        }
        // a new life of the link drops the waiting "late"; DONE's timer is due after it
        rig.boardWrite("X");
        QVERIFY(received.wait());
        rig.tap.reportClosed();
        rig.tap.reportOpened("again");
        rig.boardWrite("END");
        QCOMPARE(rig.boardReadAtLeast(6), QByteArray("OKDONE"));
        QCOMPARE(runner.fireCount(0), 1);
    }
};

LARK_TEST_GUILESS_MAIN(TstAutoReplyRunner)
#include "tst_autoreplyrunner.moc"
