#include "SimProcess.h"
#include "pages/serial/SerialPageRig.h"

// The serial page against larksim over a pty: GB18030 lines shown as text and echoed,
// and a recording of a board's output replayed into the page shows the same text. Also
// how the simulator ends on a bad command line.
class TstSimSerial : public QObject
{
    Q_OBJECT

    // the page on the pty that sim prints
    static bool open(SerialPageRig &rig, SimProcess &sim)
    {
        const QString pty = sim.ptyName();
        return pty.startsWith("/dev/") && rig.openOn(pty.mid(5));
    }
    // the page's text with its line breaks as one: how many a "\r\n" makes depends
    // on whether the pair arrives in one read
    static QString shown(SerialPageRig &rig) { return rig.shown().replace(QRegularExpression("\n+"), "\n"); }
    static QString lines(const QList<int> &numbers)
    {
        const QStringList texts{"temp=25.3 状态正常 <ok> 计数 %1", "电机转速 1500 rpm, 电流 0.42 A, 第%1行",
                                "ADC: 1023 2047 3071 警告：电压偏低 #%1", "[info] 传感器初始化完成 (id=%1)"};
        QStringList out;
        for (int n : numbers)
            out << texts[n % 4].arg(n);
        return out.join('\n');
    }

private slots:
    void init() { SerialPageRig::reset(); }

    // the board's lines, then what the page sends comes back from the board's echo
    void gb18030LinesAndEcho()
    {
        SimProcess sim;
        QVERIFY(sim.start({"text", "--pty", "--encoding", "gb18030", "--lines-per-s", "40", "--echo"}));
        SerialPageRig rig;
        QVERIFY(open(rig, sim));
        QTRY_VERIFY_WITH_TIMEOUT(shown(rig).contains(lines({5})), 10000);
        QVERIFY2(shown(rig).contains(lines({0, 1, 2, 3, 4, 5})), qPrintable(shown(rig)));
        const QByteArray hello = MyApp::strToUnicode("你好, board\r\n");
        QCOMPARE(rig.page.serialport()->write(hello), qint64(hello.size()));
        QTRY_VERIFY(shown(rig).contains("你好, board"));
    }

    // a board's output recorded off TCP, then replayed into the page
    void recordingReplayed()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath("board.rec");
        SimProcess board, recorder;
        QVERIFY(board.start({"text", "--tcp-server", "0", "--lines-per-s", "50", "--count", "8"}));
        QVERIFY(recorder.start({"record", QString("tcp-client:127.0.0.1:%1").arg(board.serverPort()), file}));
        QTRY_VERIFY_WITH_TIMEOUT(board.proc.state() == QProcess::NotRunning, 10000);
        QTRY_VERIFY2(LarkTest::readFile(file).contains("(id=7)"), LarkTest::readFile(file).toHex().constData());
        QVERIFY(recorder.stop());

        SimProcess replay;
        QVERIFY(replay.start({"replay", file, "pty", "--speed", "4"}));
        SerialPageRig rig;
        QVERIFY(open(rig, replay));
        QTRY_VERIFY2_WITH_TIMEOUT(shown(rig).contains(lines({0, 1, 2, 3, 4, 5, 6, 7})), qPrintable(shown(rig)), 10000);
        QTRY_VERIFY(replay.proc.state() == QProcess::NotRunning);
        QCOMPARE(replay.proc.exitCode(), 0);
    }

    // the wording of every error is the command line's own test; here the process
    // says it once on stderr and ends with 2, for a bad line and for a bad recording
    void badArguments_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("bad number") << QStringList{"camera", "--pty", "--fps", "fast"};
        QTest::newRow("not a recording") << QStringList{"replay", "/dev/null", "pty"};
    }
    void badArguments()
    {
        QFETCH(QStringList, args);
        QProcess p;
        p.start(LARKSIM_PATH, args);
        QVERIFY(p.waitForFinished(5000));
        QCOMPARE(p.exitCode(), 2);
        const QString err = QString::fromUtf8(p.readAllStandardError());
        QVERIFY2(err.startsWith("larksim: error: ") && err.count('\n') == 1, qPrintable(err));
    }
};

LARK_TEST_MAIN(TstSimSerial)
#include "tst_simserial.moc"
