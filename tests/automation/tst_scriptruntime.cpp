#include "LarkTestCore.h"
#include "LinkTapRig.h"
#include "ScriptRuntime.h"

#include <QElapsedTimer>
#include <QSignalSpy>

// Scripts on a loopback TCP link: the runtime fed by the tap, writing through it.
class TstScriptRuntime : public QObject
{
    Q_OBJECT

    LinkTapRig *m_rig = nullptr;
    ScriptRuntime *m_runtime = nullptr;

    void start(const QString &source)
    {
        QSignalSpy finished(m_runtime, SIGNAL(finished(QString)));
        QVERIFY2(m_runtime->start(source, "test.js"), qPrintable(finished.value(0).value(0).toString()));
    }

private slots:
    void init()
    {
        m_rig = new LinkTapRig;
        QVERIFY(m_rig->openTcp());
        m_runtime = new ScriptRuntime;
        m_runtime->setCodec("GB18030");
        LinkTap *tap = &m_rig->tap;
        m_runtime->setSender([tap](const QByteArray &b) { return tap->write(b); });
        connect(tap, &LinkTap::received, m_runtime, &ScriptRuntime::feed);
    }
    void cleanup()
    {
        delete m_runtime;
        delete m_rig;
    }

    void aScriptAnswersARequestInThePageCodec()
    {
        start("function onData(bytes) {\n"
              "    if (text(bytes) === '温度?') send('温度=' + bytes.length + '\\r\\n');\n"
              "}\n");
        m_rig->boardWrite(QByteArray("\xce\xc2\xb6\xc8?"));
        QCOMPARE(m_rig->boardReadAtLeast(8), QByteArray("\xce\xc2\xb6\xc8=5\r\n"));
    }

    void timersRunATenStepSequence()
    {
        QSignalSpy log(m_runtime, SIGNAL(logLine(QString)));
        start("var step = 0;\n"
              "var id = setInterval(function (tag) {\n"
              "    send([0x30 + step]);\n"
              "    if (++step === 10) { clearInterval(id); setTimeout(log, 5, 'done', tag); }\n"
              "}, 2, 'seq');\n");
        QTRY_COMPARE(log.count(), 1);
        QCOMPARE(log.at(0).at(0).toString(), QString("done seq"));
        QCOMPARE(m_rig->boardReadAtLeast(10), QByteArray("0123456789"));
    }

    void helpersComputeCrcAndHex()
    {
        QSignalSpy log(m_runtime, SIGNAL(logLine(QString)));
        QSignalSpy plot(m_runtime, SIGNAL(plotValue(QString, double)));
        start("var frame = fromHex('01 03 00 00 00 01');\n"
              "var crc = crc16modbus(frame);\n"
              "send(new Uint8Array([crc & 0xff, crc >> 8]));\n"
              "log(toHex(frame), crc16modbus('123456789').toString(16), crc16modbus([]), codec);\n"
              "plot('crc', crc);\n");
        QCOMPARE(m_rig->boardReadAtLeast(2), QByteArray("\x84\x0a"));
        QCOMPARE(log.at(0).at(0).toString(), QString("01 03 00 00 00 01 4b37 65535 GB18030"));
        QCOMPARE(plot.at(0), (QList<QVariant>{"crc", 0x0a84}));
    }

    void errorsNameTheScriptLine_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("reason");
        QTest::newRow("syntax") << "var a = 1;\nvar b = (2;\n" << "test.js:2: SyntaxError";
        QTest::newRow("in onData") << "function onData(b) {\n\n    undefinedThing();\n}\n" << "test.js:3: ReferenceError";
        QTest::newRow("in a helper") << "function onData(b) {\n    send({});\n}\n" << "test.js:2: TypeError";
        QTest::newRow("bad hex") << "function onData(b) {\n    fromHex('0G');\n}\n" << "fromHex";
        QTest::newRow("thrown in a timer") << "setTimeout(function () {\n    throw new Error('boom');\n}, 0);\n" << "test.js:2: Error: boom";
    }
    void errorsNameTheScriptLine()
    {
        QFETCH(QString, source);
        QFETCH(QString, reason);
        QSignalSpy finished(m_runtime, SIGNAL(finished(QString)));
        if (m_runtime->start(source, "test.js"))
            m_rig->boardWrite("x");
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY2(finished.at(0).at(0).toString().contains(reason), qPrintable(finished.at(0).at(0).toString()));
        QVERIFY(!m_runtime->isRunning());
    }

    void anEndlessLoopIsInterruptedAndTheLinkLivesOn_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("entry");
        QTest::newRow("in onData") << "var n = 0;\nfunction onData(b) {\n    for (;;) {}\n}\n" << "onData（test.js:2）";
        QTest::newRow("caught and retried") << "onData = function (b) {\n    for (;;) { try { while (true) {} } catch (e) {} }\n}\n" << "onData（test.js:1）";
        QTest::newRow("in a timer") << "\nsetTimeout(function () { for (;;) {} }, 0);\n" << "setTimeout 回调（test.js:2 设置）";
        QTest::newRow("at the top") << "var i = 0;\nwhile (true) ++i;\n" << "顶层代码（test.js）";
    }
    void anEndlessLoopIsInterruptedAndTheLinkLivesOn()
    {
        QFETCH(QString, source);
        QFETCH(QString, entry);
        QSignalSpy finished(m_runtime, SIGNAL(finished(QString)));
        QElapsedTimer t;
        t.start();
        if (m_runtime->start(source, "test.js"))
            m_rig->boardWrite("loop");
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY2(t.elapsed() < 1000, qPrintable(QString::number(t.elapsed())));
        const QString reason = finished.at(0).at(0).toString();
        QVERIFY2(reason.startsWith(entry) && reason.contains("200 ms"), qPrintable(reason));

        // the link still receives, and a script started again works
        start("function onData(b) { send(b); }");
        m_rig->boardWrite("echo");
        QCOMPARE(m_rig->boardReadAtLeast(4), QByteArray("echo"));
    }

    void scriptsReachNothingButTheirFunctions()
    {
        QSignalSpy log(m_runtime, SIGNAL(logLine(QString)));
        start("log([typeof Qt, typeof XMLHttpRequest, typeof require, typeof importScripts, typeof print,\n"
              "     typeof gc, typeof sleep].join(','));\n");
        QCOMPARE(log.at(0).at(0).toString(), QString("undefined,undefined,undefined,undefined,undefined,undefined,undefined"));
        // modules would read files: both forms of import are refused
        m_runtime->stop();
        QSignalSpy finished(m_runtime, SIGNAL(finished(QString)));
        QVERIFY(!m_runtime->start("import('/etc/hostname');", "test.js"));
        QVERIFY(!m_runtime->start("import * as m from '/etc/hostname';", "test.js"));
        QCOMPARE(finished.count(), 2);
        for (const auto &args : qAsConst(finished))
            QVERIFY2(args.at(0).toString().contains("SyntaxError"), qPrintable(args.at(0).toString()));
    }

    void anInterruptedScriptNamesTheLineOfItsLoop_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("loop");
        QTest::newRow("for in onData") << "var n = 0;\nfunction onData(b) {\n    for (;;) {}\n}\n" << "test.js:3";
        QTest::newRow("the inner of two, at the top")
            << "var i, j;\nfor (i = 0; i < 3; ++i) {\n    j = 0;\n    while (j < 10) { if (i == 1) continue; ++j; }\n}\n"
            << "test.js:4";
        QTest::newRow("do-while in a timer, after text, a comment and a regex holding loop words")
            << "var s = 'while (x)', t = `for (;;) ${s}`; // while (\nvar r = /for\\(/;\nsetTimeout(function () {\n"
               "    do { s += ''; } while (r.test('for('));\n}, 0);\n"
            << "test.js:4";
    }

    void anInterruptedScriptNamesTheLineOfItsLoop()
    {
        QFETCH(QString, source);
        QFETCH(QString, loop);
        QSignalSpy finished(m_runtime, SIGNAL(finished(QString)));
        if (m_runtime->start(source, "test.js"))
            m_rig->boardWrite("loop");
        QTRY_COMPARE(finished.count(), 1);
        const QString reason = finished.at(0).at(0).toString();
        QVERIFY2(reason.contains(QString("中断于 %1 的循环").arg(loop)), qPrintable(reason));
    }
};

LARK_TEST_GUILESS_MAIN(TstScriptRuntime)
#include "tst_scriptruntime.moc"
