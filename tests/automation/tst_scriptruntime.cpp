#include "LarkTestCore.h"
#include "LinkTapRig.h"
#include "ScriptRuntime.h"

#include <QtTest>

// Scripts on a loopback TCP link: the runtime fed by the tap, writing through it.
class TstScriptRuntime : public QObject
{
    Q_OBJECT

    LinkTapRig *m_rig = nullptr;
    ScriptRuntime *m_runtime = nullptr;

private slots:
    void init()
    {
        m_rig = new LinkTapRig;
        QVERIFY(m_rig->openTcp());
        m_runtime = new ScriptRuntime;
        m_runtime->setCodec("GB18030");
        m_runtime->setTap(&m_rig->tap);
    }
    void cleanup() { delete m_runtime, delete m_rig; }

    // what the board sends, what the script sends back, and the first line it logs
    void scriptsAnswerTheBoardThroughTheirFunctions_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QByteArray>("board");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("log");
        QTest::newRow("a request answered in the page codec")
            << "function onData(bytes) {\n"
               "    if (text(bytes) === '温度?') send('温度=' + bytes.length + '\\r\\n');\n}\n"
            << QByteArray("\xce\xc2\xb6\xc8?") << QByteArray("\xce\xc2\xb6\xc8=5\r\n") << "";
        QTest::newRow("timers run a ten step sequence")
            << "var step = 0;\nvar id = setInterval(function (tag) {\n    send([0x30 + step]);\n"
               "    if (++step === 10) { clearInterval(id); setTimeout(log, 5, 'done', tag); }\n}, 2, 'seq');\n"
            << QByteArray() << QByteArray("0123456789") << "done seq";
        QTest::newRow("crc and hex helpers")
            << "var frame = fromHex('01 03 00 00 00 01');\nvar crc = crc16modbus(frame);\n"
               "send(new Uint8Array([crc & 0xff, crc >> 8]));\n"
               "log(toHex(frame), crc16modbus('123456789').toString(16), crc16modbus([]), codec);\n"
            << QByteArray() << QByteArray("\x84\x0a") << "01 03 00 00 00 01 4b37 65535 GB18030";
        QTest::newRow("nothing but their functions is reachable")
            << "log([typeof Qt, typeof XMLHttpRequest, typeof require, typeof importScripts, typeof print,\n"
               "     typeof gc, typeof sleep].join(','));\n"
            << QByteArray() << QByteArray() << QString("undefined,").repeated(7).chopped(1);
    }
    void scriptsAnswerTheBoardThroughTheirFunctions()
    {
        QFETCH(QString, source);
        QFETCH(QByteArray, board);
        QFETCH(QByteArray, answer);
        QFETCH(QString, log);
        QSignalSpy logged(m_runtime, SIGNAL(logLine(QString)));
        QSignalSpy finished(m_runtime, SIGNAL(finished(QString)));
        QVERIFY2(m_runtime->start(source, "test.js"), qPrintable(finished.value(0).value(0).toString()));
        m_rig->boardWrite(board);
        QCOMPARE(m_rig->boardReadAtLeast(answer.size()), answer);
        QTRY_COMPARE(logged.value(0).value(0).toString(), log);
    }

    // a script that fails, reaches for modules (they would read files) or never ends
    // stops at once, saying where and why; the link lives on
    void aFailingScriptStopsAndTheLinkLivesOn_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("reason"); // a pattern of what the script's end says
        QTest::newRow("syntax") << "var a = 1;\nvar b = (2;\n" << "test.js:2: SyntaxError";
        QTest::newRow("in onData")
            << "function onData(b) {\n\n    undefinedThing();\n}\n" << "test.js:3: ReferenceError";
        QTest::newRow("in a helper") << "function onData(b) {\n    send({});\n}\n" << "test.js:2: TypeError";
        QTest::newRow("bad hex") << "function onData(b) {\n    fromHex('0G');\n}\n" << "fromHex";
        QTest::newRow("thrown in a timer")
            << "setTimeout(function () {\n    throw new Error('boom');\n}, 0);\n" << "test.js:2: Error: boom";
        QTest::newRow("import()") << "import('/etc/hostname');" << "SyntaxError";
        QTest::newRow("import from") << "import * as m from '/etc/hostname';" << "SyntaxError";
        QTest::newRow("endless in onData, its loop named")
            << "var n = 0;\nfunction onData(b) {\n    for (;;) {}\n}\n" << "^onData（test.js:2）.*200 ms.*于 test.js:3 的循环";
        QTest::newRow("endless, caught and retried")
            << "onData = function (b) {\n    for (;;) { try { while (true) {} } catch (e) {} }\n}\n"
            << "^onData（test.js:1）.*200 ms";
        QTest::newRow("endless in a timer")
            << "\nsetTimeout(function () { for (;;) {} }, 0);\n" << "^setTimeout 回调（test.js:2 设置）.*200 ms";
        QTest::newRow("endless at the top") << "var i = 0;\nwhile (true) ++i;\n" << "^顶层代码（test.js）.*200 ms";
        // the loop named is the one looping, not the first in the text
        QTest::newRow("the inner of two loops at the top")
            << "var i, j;\nfor (i = 0; i < 3; ++i) {\n    j = 0;\n    while (j < 10) { if (i == 1) continue; ++j; }\n}\n"
            << "于 test.js:4 的循环";
        QTest::newRow("do-while in a timer, after text, a comment and a regex holding loop words")
            << "var s = 'while (x)', t = `for (;;) ${s}`; // while (\nvar r = /for\\(/;\nsetTimeout(function () {\n"
               "    do { s += ''; } while (r.test('for('));\n}, 0);\n"
            << "于 test.js:4 的循环";
    }
    void aFailingScriptStopsAndTheLinkLivesOn()
    {
        QFETCH(QString, source);
        QFETCH(QString, reason);
        QSignalSpy finished(m_runtime, SIGNAL(finished(QString)));
        QElapsedTimer t;
        t.start();
        if (m_runtime->start(source, "test.js"))
            m_rig->boardWrite("x");
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY2(t.elapsed() < 1000, qPrintable(QString::number(t.elapsed())));
        const QString why = finished.at(0).at(0).toString();
        QVERIFY2(why.contains(QRegularExpression(reason)), qPrintable(why));
        QVERIFY(!m_runtime->isRunning() && m_runtime->start("function onData(b) { send(b); }", "test.js"));
        m_rig->boardWrite("echo");
        QCOMPARE(m_rig->boardReadAtLeast(4), QByteArray("echo"));
    }
};

LARK_TEST_GUILESS_MAIN(TstScriptRuntime)
#include "tst_scriptruntime.moc"
