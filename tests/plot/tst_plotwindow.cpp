#include "../automation/LinkTapRig.h"
#include "../sim/SimProcess.h"
#include "LarkTest.h"
#include "LinkTap.h"
#include "PlotDefinitionFormDialog.h"
#include "PlotWindow.h"

#include <QtNetwork>
#include <QtTest>
#include <QtWidgets>
#include <qcustomplot.h>

#include <cmath>

// The window as a page gives it its link: a LinkTap that the test feeds from a real
// link to larksim, a pty read by QSerialPort or a loopback UDP socket.
class tst_PlotWindow : public QObject
{
    Q_OBJECT

    // the CSV the window exports, checked by python: columns, rows, times never going back
    static QString exportSummary(PlotWindow &w)
    {
        QTemporaryDir dir;
        QString error, written;
        if (!w.exportCsv(dir.filePath("plot"), &error, &written))
            return error;
        QProcess py;
        py.start("python3", {"-c", "import csv,sys\nrows=list(csv.reader(open(sys.argv[1],encoding='utf-8')))\n"
                                   "t=[float(r[0]) for r in rows[1:]]\n"
                                   "print(len(rows[0]), len(rows)-1, all(a<=b for a,b in zip(t,t[1:])), set(len(r) for r in rows))",
                             written});
        py.waitForFinished(10000);
        return QString::fromUtf8(py.readAllStandardOutput()).trimmed();
    }

private slots:
    void csvLinesFromLarksimOverAPtyArePlottedAndExported()
    {
        // the board runs until stopped: one that ended by itself would hang up the pty
        // and take with it whatever the test had not read yet
        SimProcess sim;
        QVERIFY(sim.start({"text", "--kind", "csv", "--pty", "--lines-per-s", "400"}));
        LinkTapRig board;
        QVERIFY(board.openPort(sim.ptyName()));
        PlotWindow w(&board.tap, "plot");
        w.show();
        QTRY_VERIFY_WITH_TIMEOUT(w.store().totalRows() >= 60, 10000);
        QVERIFY(sim.stop() && w.textParser().badLines() == 0 && w.store().channelCount() == 3);
        // the third column counts lines modulo 100: none lost, none doubled
        const int rows = w.store().rows();
        for (int r = 1; r < rows; ++r)
            QCOMPARE(w.store().value(2, r), double((int(w.store().value(2, r - 1)) + 1) % 100));
        // the plot catches up, then nothing is left to do while the link is quiet
        QTRY_VERIFY(!w.redrawPending());
        QCOMPARE(w.plot()->graph(2)->dataCount(), rows);
        QCOMPARE(exportSummary(w), QString("4 %1 True {4}").arg(rows));
    }

    void sensorFramesFromLarksimOverUdpArePlotted()
    {
        QUdpSocket socket;
        QVERIFY(socket.bind(QHostAddress(QHostAddress::LocalHost), 0));
        LinkTap tap;
        connect(&socket, &QUdpSocket::readyRead, [&] {
            while (socket.hasPendingDatagrams())
                tap.reportReceived(socket.receiveDatagram().data());
        });
        PlotWindow w(&tap, "plot");
        QString error;
        QVERIFY2(w.loadDefinition(QDir::cleanPath(LARK_PLOT_EXAMPLES "/larksim_sensor.json"), &error), qPrintable(error));
        w.setMode(PlotWindow::BinaryFrames);
        SimProcess sim;
        QVERIFY(sim.start({"text", "--kind", "frame", "--udp", QString("127.0.0.1:%1").arg(socket.localPort()),
                           "--lines-per-s", "400", "--count", "50"}));
        QTRY_COMPARE_WITH_TIMEOUT(w.frameParser().counts().good, qint64(50), 10000);
        QCOMPARE(w.frameParser().counts().badChecksum + w.frameParser().counts().dropped, qint64(0));
        QCOMPARE(w.store().value(0, 49), 49.0);
        QCOMPARE(w.store().value(1, 20), std::lround(1000 * std::sin(20 * 0.05)) / 1000.0);
        QCOMPARE(exportSummary(w), QString("5 50 True {5}"));
    }

    void pausedPlotKeepsRecordingAndCatchesUpOnResume()
    {
        LinkTap tap;
        PlotWindow w(&tap, "plot");
        tap.reportReceived("1,2\n");
        QTRY_COMPARE(w.redraws(), qint64(1));
        LarkTest::click(&w, "btnPlotPause");
        tap.reportReceived("3,4\n5,6\n");
        QTRY_VERIFY(!w.redrawPending());
        QVERIFY(w.store().rows() == 3 && w.redraws() == 1 && w.plot()->graph(0)->dataCount() == 1);
        QCOMPARE(exportSummary(w), QString("3 3 True {3}"));
        LarkTest::click(&w, "btnPlotPause");
        QTRY_COMPARE(w.plot()->graph(0)->dataCount(), 3);
    }

    // a read of several megabytes is parsed a slice per turn of the event loop, and
    // every line of it still arrives, in order
    void aLargeBurstIsParsedOverSeveralTurnsWithNothingLost()
    {
        LinkTap tap;
        PlotWindow w(&tap, "plot");
        QByteArray burst;
        for (int i = 0; i < 200000; ++i)
            burst += QByteArray::number(i) + ",1\n";
        tap.reportReceived(burst);
        QVERIFY(w.store().rows() < 200000 && w.redrawPending());
        QTRY_VERIFY(!w.redrawPending());
        QCOMPARE(w.store().rows(), 200000);
        QCOMPARE(w.store().value(0, 123456), 123456.0);
    }

    // "编辑帧定义…", then "表单编辑…": a bad marker keeps the form open; a channel added and
    // moved up reaches the JSON text, then the window
    void theFormEditorChangesTheDefinitionThroughTheJsonText()
    {
        LinkTap tap;
        PlotWindow w(&tap, "plot");
        QString error;
        QVERIFY2(w.loadDefinition(QDir::cleanPath(LARK_PLOT_EXAMPLES "/larksim_sensor.json"), &error), qPrintable(error));
        w.setMode(PlotWindow::BinaryFrames);
        const int channels = w.definition().channels.size();
        LarkTest::onNextModal([](QWidget *json) {
            LarkTest::onNextModal([](QWidget *form) {
                QVERIFY(qobject_cast<PlotDefinitionFormDialog *>(form));
                form->findChild<QLineEdit *>("edtFormStart")->setText("GG");
                LarkTest::click(form, "btnFormOk");
                QVERIFY(form->isVisible());
                form->findChild<QLineEdit *>("edtFormStart")->setText("AB CD");
                LarkTest::click(form, "btnFormAdd");
                LarkTest::click(form, "btnFormUp");
                LarkTest::click(form, "btnFormOk");
            });
            LarkTest::click(json, "btnDefinitionForm");
            LarkTest::click(json, "确定");
        });
        LarkTest::click(&w, "编辑帧定义…");
        QCOMPARE(w.definition().start, QByteArray::fromHex("ABCD"));
        QCOMPARE(w.definition().channels.size(), channels + 1);
        QCOMPARE(w.definition().channels.at(channels - 1).name, QString("CH%1").arg(channels + 1));
        QCOMPARE(w.definition().channels.at(channels).name, QString("temp"));
    }
};

LARK_TEST_MAIN(tst_PlotWindow)
#include "tst_plotwindow.moc"
