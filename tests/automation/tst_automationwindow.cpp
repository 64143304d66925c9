#include "AutoReplyRunner.h"
#include "AutomationWindow.h"
#include "LarkTest.h"
#include "LinkTapRig.h"
#include "ScriptRuntime.h"

#include <QtTest>
#include <QtWidgets>

// The window's own wiring: table to runner, editor and buttons to the runtime, files
// to the table, all on a loopback TCP link through its tap.
class TstAutomationWindow : public QObject
{
    Q_OBJECT

private slots:
    void tableRulesAndTheScriptWorkTheLink()
    {
        LinkTapRig rig;
        QVERIFY(rig.openTcp());
        AutomationWindow window(&rig.tap, "网络调试助手");
        window.show();
        // a rule answers once switched on, and counts
        LarkTest::click(&window, "添加"); // AT\r\n -> OK\r\n
        window.table()->item(0, AutomationWindow::ColReply)->setText("OK\\x21\\r\\n");
        window.findChild<QCheckBox *>()->setChecked(true);
        rig.boardWrite("AT\r\n");
        QCOMPARE(rig.boardReadAtLeast(5), QByteArray("OK!\r\n"));
        QCOMPARE(window.table()->item(0, AutomationWindow::ColCount)->text(), QString("1"));
        // a broken reply is shown in the table and never sent
        window.table()->item(0, AutomationWindow::ColReply)->setText("\\q");
        QVERIFY(window.rulesMessage().contains("第 1 条规则"));

        window.setCurrentTab(1);
        window.editor()->setPlainText("function onData(b) { send(b); }");
        LarkTest::click(&window, "运行");
        rig.boardWrite("abc");
        QCOMPARE(rig.boardReadAtLeast(3), QByteArray("abc"));
        LarkTest::click(&window, "停止");
        QVERIFY(!window.runtime()->isRunning());
        // a flood of lines between two repaints shows its end and says what it left out
        for (int i = 0; i < 5200; ++i)
            window.SltScriptLog(QString("n %1").arg(i));
        QTRY_VERIFY(window.logView()->toPlainText().endsWith("n 5199"));
        QVERIFY(window.logView()->toPlainText().contains("…（201 行日志未显示）"));
        window.editor()->setPlainText("\nfunction onData(b) { for (;;) {} }\n");
        LarkTest::click(&window, "运行");
        rig.boardWrite("x");
        QTRY_VERIFY2(window.scriptState().contains("onData（script.js:2）"), qPrintable(window.scriptState()));
        // closing the window stops what it runs
        LarkTest::click(&window, "运行");
        QVERIFY(window.runtime()->isRunning());
        window.close();
        QVERIFY(!window.runtime()->isRunning());
    }

    // what the window holds is there again in the next run; a bad rule file changes nothing
    void rulesAndScriptAreKeptAndABadFileChangesNothing()
    {
        QTemporaryDir dir;
        const QString kept = dir.filePath("conf/automation/page2");
        {
            AutomationWindow window(nullptr, "");
            window.setStateFiles(kept + ".json", kept + ".js");
            window.editor()->setPlainText("// 温度\nlog(1);\n");
            LarkTest::click(&window, "添加");
        }
        AutomationWindow window(nullptr, "");
        window.setStateFiles(kept + ".json", kept + ".js");
        QCOMPARE(window.editor()->toPlainText(), QString("// 温度\nlog(1);\n"));
        QCOMPARE(window.rules().size(), 1);
        QVERIFY(window.saveScript(dir.filePath("a.js")) && window.loadScript(dir.filePath("a.js")));
        QVERIFY(!window.loadScript(dir.filePath("missing.js")));

        const QList<ReplyRule> before = window.rules();
        QFile bad(dir.filePath("bad.json"));
        QVERIFY(bad.open(QIODevice::WriteOnly) && bad.write("{\"rules\": [{\"pattern\": \"A\", \"answer\": \"B\"}]}") > 0);
        bad.close();
        QVERIFY(!window.loadRules(bad.fileName()));
        QVERIFY2(window.rulesMessage().contains("未知字段 \"answer\""), qPrintable(window.rulesMessage()));
        QCOMPARE(window.rules(), before);
        QCOMPARE(window.runner()->rules(), before);
    }
};

LARK_TEST_MAIN(TstAutomationWindow)
#include "tst_automationwindow.moc"
