#include "AutoReplyRunner.h"
#include "LarkTestCore.h"
#include "LarkTapSpy.h"
#include "LinkTapRig.h"
#include "ScriptRuntime.h"
#include "../sim/SimProcess.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextCodec>

static const auto Text = ReplyRule::MatchText;

// Rules and scripts answering a board through the tap, as they would on a page: a
// socat pty the test writes into, and larksim on a pty and as a TCP server.
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

    // larksim's GB18030 lines and its counter: every line asked for is answered once,
    // wherever the link cut it, and larksim's echo of each answer comes back
    void rulesAndScriptsAnswerLarksim_data()
    {
        QTest::addColumn<QStringList>("board");
        QTest::addColumn<QString>("asked");
        QTest::addColumn<QString>("script");
        QTest::newRow("a regex rule, larksim on a pty") << QStringList{"text", "--pty"} << "第\\d+行" << "";
        QTest::newRow("a script, larksim over TCP")
            << QStringList{"text", "--kind", "counter", "--tcp-server", "0"} << "count=\\d+\r\n"
            << "var rest = '';\nfunction onData(b) {\n    var lines = (rest + text(b)).split('\\r\\n');\n"
               "    rest = lines.pop();\n    lines.forEach(function (l) { if (/^count=\\d+$/.test(l)) send('ACK\\r\\n'); });\n}\n";
    }
    void rulesAndScriptsAnswerLarksim()
    {
        QFETCH(QStringList, board);
        QFETCH(QString, asked);
        QFETCH(QString, script);
        SimProcess sim;
        QVERIFY(sim.start(board << "--echo" << "--lines-per-s" << "200"));
        LinkTapRig rig;
        QVERIFY(board.contains("--pty") ? rig.openPort(sim.ptyName()) : rig.connectTcp(sim.serverPort()));
        LarkTapSpy spy(&rig.tap);
        AutoReplyRunner runner;
        ScriptRuntime runtime;
        if (script.isEmpty()) {
            runner.setTap(&rig.tap);
            runner.setCodec("GB18030");
            runner.setRules({ReplyRule(ReplyRule::MatchRegex, asked, ReplyRule::ReplyText, "ACK\\r\\n")});
            runner.setActive(true);
        } else {
            runtime.setTap(&rig.tap);
            QVERIFY(runtime.start(script, "board.js"));
        }
        QTRY_VERIFY_WITH_TIMEOUT(spy.received().count("ACK\r\n") >= 10, 10000);
        const QString seen = QTextCodec::codecForName("GB18030")->toUnicode(spy.received());
        const int lines = seen.count(QRegularExpression(asked));
        QVERIFY(lines >= 10);
        QCOMPARE(spy.sent(), QByteArray("ACK\r\n").repeated(lines));
        QVERIFY(script.isEmpty() ? runner.fireCount(0) == lines : runtime.isRunning());
        QVERIFY(sim.stop());
    }
};

LARK_TEST_GUILESS_MAIN(TstAutoReplyRunner)
#include "tst_autoreplyrunner.moc"
