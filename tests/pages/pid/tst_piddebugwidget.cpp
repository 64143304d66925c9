#include "LarkLineSettings.h"
#include "LarkPtyPair.h"
#include "LarkTapSpy.h"
#include "LinkTap.h"
#include "PidBoardFrame.h"
#include "PidPageRig.h"

#include <QSerialPort>

// The page on one end of a pty pair, the test as the board on the other.
class TstPidDebugWidget : public QObject
{
    Q_OBJECT

    LarkPtyPair *m_pty = nullptr;
    PidDebugWidget *m_page = nullptr;
    QSignalSpy *m_notes = nullptr;
    QSignalSpy *m_reads = nullptr;
    QCustomPlot *m_plot = nullptr;

    QComboBox *channel() const { return PidPage::channel(m_page); }
    QLineEdit *edit(int k) const { return PidPage::edit(m_page, k); }
    QString shown() const { return PidPage::shown(m_page); }
    QPushButton *button(const QString &text) const { return PidPage::button(m_page, text); }
    bool openPort()
    {
        button("打开串口")->click();
        return m_page->serialPort()->isOpen();
    }
    void makePage()
    {
        m_page = new PidDebugWidget;
        m_notes = new QSignalSpy(m_page, SIGNAL(signalNotify(QString,int)));
        m_reads = new QSignalSpy(m_page->serialPort(), SIGNAL(bytesRead(QByteArray)));
        m_notes->setParent(m_page); // both go with the page
        m_reads->setParent(m_page);
        m_plot = m_page->customPlot();
        m_page->SltSerialportChanged({m_pty->programShortName()});
    }
    // the board writes; true once the page has taken every byte (its slot runs before
    // the spy's, so the parser is done by then) and drawn a frame
    bool boardSends(const QByteArray &data)
    {
        auto received = [this] { return LarkTapSpy::joined(*m_reads).size(); };
        const int want = received() + data.size();
        const bool taken = m_pty->boardWrite(data) && QTest::qWaitFor([&] { return received() >= want; }, 5000);
        return taken && QMetaObject::invokeMethod(m_page, "SltReplotFrame");
    }

    // the bytes the page exports (how the file is written: the exporter's own test)
    QByteArray exported()
    {
        QTemporaryDir dir;
        m_page->ExportDataToFile(dir.filePath("pid.csv"));
        return LarkTest::fileBytes(dir.filePath("pid.csv"));
    }

private slots:
    void init()
    {
        LarkTest::cleanAppDirs();
        m_pty = new LarkPtyPair;
        QVERIFY(m_pty->start());
        makePage();
    }
    void cleanup()
    {
        delete m_page;
        delete m_pty;
    }

    // the button asks for a name and writes what the plot holds, port open or not; a
    // cancelled dialog does nothing, an unwritable file is refused in a box
    void exportGoesThroughTheDialog()
    {
        QTemporaryDir dir;
        LarkTest::answerNextFileDialog(dir.filePath("dialog.csv"));
        button("导出数据")->click();
        QCOMPARE(LarkTest::fileBytes(dir.filePath("dialog.csv")), pidCsv({}));
        LarkTest::onNextModal([](QWidget *dlg) { dlg->close(); });
        button("导出数据")->click();
        QVERIFY(LarkTest::modalText([&] { m_page->ExportDataToFile("/nonexistent-lark-dir/pid.csv"); }).contains("文件保存失败!"));
        QCOMPARE(QList<QVariantList>(*m_notes), (QList<QVariantList>{{"文件已导出：" + dir.filePath("dialog.csv"), 0}}));
    }

    // what the user is told on open (of a port the system does not list, typed in and
    // opened as "/dev/" + the text), close, failed open, start on a closed port and a
    // vanished port
    void userIsToldOfOpenCloseAndFailures()
    {
        auto *ports = qobject_cast<QComboBox *>(LarkTest::inGroup(m_page, "串口配置", 0));
        m_page->SltSerialportChanged({});
        QTest::keyClicks(ports->lineEdit(), m_pty->programShortName());
        QVERIFY(openPort());
        button("关闭串口")->click();
        QVERIFY(!m_page->serialPort()->isOpen());
        m_page->SltSerialportChanged({"lark-no-such-tty"});
        QVERIFY(!openPort() && button("打开串口"));
        QVERIFY(LarkTest::modalText([&] { button("启动")->click(); }).contains("请确认是否打开串口！") && button("启动"));
        // the watcher keeps the open port, closes a vanished one
        m_page->SltSerialportChanged({m_pty->programShortName()});
        QVERIFY(openPort());
        m_page->SltSerialportChanged({"ttyS0", m_pty->programShortName(), "ttyUSB0"});
        QVERIFY(m_page->serialPort()->isOpen() && ports->currentText() == m_pty->programShortName());
        button("启动")->click();
        m_pty->stop();
        m_page->SltSerialportChanged({"ttyS0"});
        QVERIFY(!m_page->serialPort()->isOpen() && ports->count() == 1 && button("启动") && button("打开串口"));
        const QList<QVariantList> expected{{QString("串口[%1]打开成功!").arg(m_pty->programPath()), 0},
                                           {QString("串口[%1]已关闭!!").arg(m_pty->programShortName()), 0},
                                           {QString("串口[/dev/lark-no-such-tty]打开失败!!!"), 255},
                                           {QString("串口[%1]打开成功!").arg(m_pty->programPath()), 0},
                                           {"当前串口已拔出，请重新打开!", 255}};
        QCOMPARE(QList<QVariantList>(*m_notes), expected);
    }

    // Each press on the wire (header, channel from the combo, length, command, payload
    // in the board's byte order, checksum); then what the channel stored, as a switch
    // away and back shows it ("quit": the program closes and starts again).
    void buttonsPutTheirFramesOnTheWire_data()
    {
        QTest::addColumn<int>("ch");
        QTest::addColumn<QString>("texts"); // P, I, D, target, period
        QTest::addColumn<QString>("presses"); // the port opens first unless one of them opens it
        QTest::addColumn<QString>("wire");
        QTest::addColumn<QString>("stored"); // "" for the zeros of a channel never set
        const QString d = "0.567|0.567|0.567|200|200", start = "4c41524b010b0000001248";
        QTest::newRow("pid CH3") << 2 << "3|0.5|0.125|200|200" << "发送PID" << "4c41524b031700000010000040400000003f0000003e51"
                                 << "3.000|0.500|0.125|0|200";
        QTest::newRow("target CH2") << 1 << "0|0|0|-200|200" << "发送目标值" << "4c41524b020f0000001138ffffff81" << "0.000|0.000|0.000|-200|200";
        QTest::newRow("period CH4") << 3 << "0|0|0|200|20" << "发送周期" << "4c41524b040f000000151400000066" << "0.000|0.000|0.000|0|20";
        QTest::newRow("start, stop") << 0 << d << "启动,停止" << start + "4c41524b010b0000001349" << "";
        QTest::newRow("closing while running stops first") << 2 << d << "启动,关闭串口" << "4c41524b030b000000124a4c41524b030b000000134b" << "";
        QTest::newRow("quit sends no stop; reset") << 0 << d << "打开串口,启动,quit,打开串口,复位" << start + "4c41524b010b000000144a" << "";
        // nothing leaves a closed port, yet the values are stored: the board's first
        // bytes are those of the press after the opening
        QTest::newRow("closed port") << 0 << "1.5|0.567|0.567|42|20" << "发送PID,发送目标值,发送周期,复位,打开串口,发送周期"
                                     << "4c41524b010f000000151400000063" << "1.500|0.567|0.567|42|20";
    }

    void buttonsPutTheirFramesOnTheWire()
    {
        QFETCH(int, ch);
        QFETCH(QString, texts);
        QFETCH(QString, presses);
        QFETCH(QString, wire);
        QFETCH(QString, stored);
        QVERIFY(presses.contains("打开串口") || openPort());
        channel()->setCurrentIndex(ch);
        for (int k = 0; k < 5; ++k)
            edit(k)->setText(texts.split('|')[k]);
        for (const QString &text : presses.split(',')) {
            if (text == "quit") {
                delete m_page;
                makePage();
            } else {
                button(text)->click();
            }
        }
        QCOMPARE(m_pty->boardReadAtLeast(wire.size() / 2).toHex(), wire.toLatin1());
        channel()->setCurrentIndex((ch + 1) % 5);
        channel()->setCurrentIndex(ch);
        QCOMPARE(shown(), stored.isEmpty() ? "0.000|0.000|0.000|0|200" : stored);
    }

    // frames both ways and raw bytes through the tap; a running board hears the stop
    // before the close when the port watcher closes the port (a press goes the same way)
    void theTapSeesFramesBytesAndTheWatchersClose()
    {
        LarkTapSpy tap(m_page->linkTap());
        const QByteArray started = boardFrame(1, 4), stop = boardFrame(1, 0x13);
        QVERIFY(openPort() && boardSends("junk" + started));
        QCOMPARE(tap.received(), "junk" + started);
        QCOMPARE(m_page->linkTap()->write("ping"), qint64(4));
        QCOMPARE(m_pty->boardReadAtLeast(4), QByteArray("ping"));
        m_page->SltSerialportChanged({});
        QCOMPARE(m_pty->boardReadAtLeast(stop.size()), stop);
        QCOMPARE(tap.sent(), "ping" + stop);
        QCOMPARE(tap.life(), "open " + m_pty->programPath() + " closed x1");
    }

    // What the board reports reaches the edits of the selected channel (another channel's
    // values show, in three decimals, when it is selected). Samples plot the stored target
    // and the actual value at seconds since the board's start, in a ten-second window
    // that follows the newest sample.
    void boardReportsReachTheEditsAndThePlot()
    {
        QVERIFY(openPort());
        const QByteArray pid = le(1.25f) + le(0.5f) + le(-3.75f);
        QVERIFY(boardSends("noise" + boardFrame(1, 1, le(77)) + boardFrame(1, 6, le(20)) + boardFrame(1, 3, pid)
                           + boardFrame(2, 3, pid) + boardFrame(2, 1, le(-9)) + boardFrame(1, 4)));
        QCOMPARE(shown(), QString("1.25|0.5|-3.75|77|20"));
        channel()->setCurrentIndex(1);
        QCOMPARE(shown(), QString("1.250|0.500|-3.750|-9|20")); // the period edit is not per channel
        QVERIFY(boardSends(boardFrame(3, 5)) && button("启动")); // any channel's stop report
        QVERIFY(boardSends(boardFrame(2, 1, le(50)) + boardFrame(2, 4) + boardFrame(2, 2, le(-30))));
        QTest::qWait(30); // the time base set by the first start stays over a restart
        QVERIFY(boardSends(boardFrame(2, 5) + boardFrame(2, 4) + boardFrame(2, 2, le(90))));
        QCPGraph *target = m_plot->graph(1), *actual = m_plot->graph(6);
        QCOMPARE(actual->data()->at(1)->value, 90.0);
        const double t = actual->data()->at(1)->key;
        QVERIFY(t >= 0.03 && t < 60);
        // reopening unsets the start: keys become epoch seconds, and the old points,
        // far out of the window now, go
        button("关闭串口")->click();
        QVERIFY(openPort());
        QVERIFY(boardSends(boardFrame(2, 2, le(7))));
        QCOMPARE(target->dataCount() + actual->dataCount(), 2);
        QVERIFY(actual->data()->at(0)->key > 1e9);
        // a start the user pressed first finds "停止": the board's report sets nothing
        button("启动")->click();
        QVERIFY(boardSends(boardFrame(2, 4) + boardFrame(2, 2, le(8))));
        QVERIFY(actual->data()->at(1)->key > 1e9);
        // display stopped: a sample is dropped, the next reception goes on
        const QCPRange x = m_plot->xAxis->range();
        m_page->findChild<QCheckBox *>()->setChecked(true);
        QVERIFY(boardSends(boardFrame(2, 2, le(10))));
        QVERIFY(boardSends(boardFrame(2, 1, le(77)))); // CH2 is selected
        QCOMPARE(edit(3)->text(), QString("77"));
        QCOMPARE(actual->dataCount(), 2);
        QCOMPARE(m_plot->xAxis->range(), x);
    }

    // Removing by rising index takes every other graph: the odd ones survive at 0 to 4.
    // The file holds what the plot holds, by graph position: actual, target, difference.
    void clearKeepsEveryOtherCurveAsRequired()
    {
        QVERIFY(openPort());
        QCOMPARE(m_plot->graphCount(), 10);
        QVERIFY(boardSends(boardFrame(2, 1, le(50)) + boardFrame(2, 2, le(10)) + boardFrame(1, 2, le(3)) + boardFrame(1, 2, le(1234567))));
        QCOMPARE(exported(), pidCsv({"1,3,0,3\n2,1.23457e+06,0,1.23457e+06\n", "1,10,50,-40\n", "", "", ""}));
        button("清空显示")->click();
        QCOMPARE(m_plot->graphCount(), 15);
        // CH1 target is gone; the old CH2 target is now first
        QCOMPARE(m_plot->graph(0)->data()->at(0)->value, 50.0);
        QCOMPARE(m_plot->graph(2)->data()->at(0)->value, 3.0); // old CH1 actual
        for (int g = 0; g < 13; ++g)
            QCOMPARE(m_plot->graph(g)->visible(), g == 0 || g == 5 || g > 9);
        QCOMPARE(m_plot->graph(5)->dataCount(), 0);
        // the survivors go in the file under their new positions; fresh actual curves read 0
        QCOMPARE(exported(), pidCsv({"1,0,50,-50\n", "", "1,0,3,-3\n2,0,1.23457e+06,-1.23457e+06\n", "", ""}));
        int k = 0;
        for (int count : {17, 18, 19, 19, 19}) { // the last press is a reset, which clears too
            button(++k < 5 ? "清空显示" : "复位")->click();
            QCOMPARE(m_plot->graphCount(), count);
        }
    }

    // What the curves hold for a stream, whatever the reads it arrives in: per graph,
    // its values in order (target curves 0-4 draw the stored target beside each
    // sample, actual curves 5-9 the sample), keys rising and shared by each pair; the
    // value axis fits the channel of the newest sample.
    void samplesBecomeTheSamePoints_data()
    {
        QTest::addColumn<QList<QByteArray>>("reads");
        QTest::addColumn<QString>("points"); // "graph:values" of every non-empty graph, then the value axis
        const QByteArray one = boardFrame(1, 1, le(50)) + boardFrame(1, 2, le(10)) + boardFrame(1, 2, le(-20)) + boardFrame(1, 2, le(30));
        QTest::newRow("frames cut anywhere") << QList<QByteArray>{one.left(3), one.mid(3, 17), one.mid(20)}
                                             << "0:50,50,50 5:10,-20,30 y:-20,30";
        QByteArray five;
        for (int k = 0; k < 15; ++k) // targets of CH1 to CH5, then samples from CH5 down, twice
            five += k < 5 ? boardFrame(k + 1, 1, le(k * 10 + 10)) : boardFrame(5 - k % 5, 2, le((5 - k % 5) * 100 + k / 10));
        QTest::newRow("five channels interleaved") << QList<QByteArray>{five}
            << "0:10,10 1:20,20 2:30,30 3:40,40 4:50,50 5:100,101 6:200,201 7:300,301 8:400,401 9:500,501 y:100,101";
        QTest::newRow("target changes between samples") // one value: the span of 120 stays
            << QList<QByteArray>{boardFrame(3, 2, le(-5)), boardFrame(3, 1, le(8)) + boardFrame(3, 2, le(-5))}
            << "2:0,8 7:-5,-5 y:-65,55";
        // in the second frame a channel of one value takes the span its neighbour left
        QTest::newRow("frames of many samples") << QList<QByteArray>{boardFrame(1, 2, le(5)) + boardFrame(2, 2, le(7)),
                boardFrame(1, 2, le(10)) + boardFrame(1, 2, le(-20)) + boardFrame(1, 2, le(30)) + boardFrame(2, 2, le(7)) + boardFrame(2, 2, le(7))}
            << "0:0,0,0,0 1:0,0,0 5:5,10,-20,30 6:7,7,7 y:-18,32";
        QTest::newRow("frames within a millisecond") << QList<QByteArray>{boardFrame(1, 2, le(5)), QByteArray(), boardFrame(1, 2, le(10))}
                                                     << "0:0,0 5:5,10 y:5,10";
    }
    void samplesBecomeTheSamePoints()
    {
        QFETCH(QList<QByteArray>, reads);
        m_plot->yAxis->setRange(-60, 60);
        // a frame after each read, a millisecond apart unless an empty read follows
        for (int k = 0; k < reads.size(); ++k) {
            if (reads[k].isEmpty())
                continue;
            emit m_page->serialPort()->bytesRead(reads[k]);
            QMetaObject::invokeMethod(m_page, "SltReplotFrame");
            for (const qint64 ms = QDateTime::currentMSecsSinceEpoch(); reads.value(k + 1, "x").size() > 0 && ms == QDateTime::currentMSecsSinceEpoch();) {
            }
        }
        QStringList got;
        for (int g = 0; g < m_plot->graphCount(); ++g) {
            QStringList values;
            const auto data = m_plot->graph(g)->data();
            for (int i = 0; i < data->size(); ++i) {
                values << QString::number(data->at(i)->value);
                QCOMPARE(data->at(i)->key, m_plot->graph(g < 5 ? g + 5 : g - 5)->data()->at(i)->key);
                QVERIFY(i == 0 || data->at(i)->key >= data->at(i - 1)->key);
            }
            if (!values.isEmpty())
                got << QString::number(g) + ':' + values.join(',');
        }
        got << QString("y:%1,%2").arg(m_plot->yAxis->range().lower).arg(m_plot->yAxis->range().upper);
        QTEST(got.join(' '), "points");
    }

    // every option of the four boxes reaches the tty as this page passes it on: the
    // parity texts read as no number (no parity), the second stop bit as one and a half
    void everySerialOptionReachesTheTty()
    {
        QCOMPARE(LarkTest::sweepSerialOptions(
                     m_page, m_pty->programPath(), [this] { return LarkTest::serialFrame(m_page->serialPort()->findChild<QSerialPort *>()); }, [&] { return openPort(); },
                     [&] { if (m_page->serialPort()->isOpen()) button("关闭串口")->click(); }),
                 QStringList({"2400 4800 9600 19200 38400 57600 115200 128000 230400 256000 460800", "5 6 7 8",
                              "N N N", "1 1"}));
    }

};

LARK_TEST_MAIN(TstPidDebugWidget)
#include "tst_piddebugwidget.moc"
