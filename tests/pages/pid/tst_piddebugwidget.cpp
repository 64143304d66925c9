#include "GraphConfigWidget.h"
#include "LarkPtyPair.h"
#include "LarkTest.h"
#include "PidDebugWidget.h"
#include "QtSerialPort.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#include <qcustomplot.h>

// What the board puts on the wire (x86: little-endian), independent of the program.
static QByteArray frame(int channel, int cmd, const QByteArray &payload = QByteArray())
{
    const qint32 len = payload.size() + 11;
    QByteArray f = "LARK" + QByteArray(1, char(channel)) + QByteArray(reinterpret_cast<const char *>(&len), 4)
                   + QByteArray(1, char(cmd)) + payload;
    int sum = 0;
    for (char ch : qAsConst(f))
        sum += uchar(ch);
    return f.append(char(sum & 0xFF));
}

template <class T>
static QByteArray le(T v) { return QByteArray(reinterpret_cast<const char *>(&v), sizeof v); }

static QString emptyChannels(int from)
{
    QString s;
    for (int n = from; n <= 5; ++n)
        s += QString("通道 %1 数据如下：\n序号,实际值,目标值,差值\n\n\n").arg(n);
    return s;
}

// The page on one end of a pty pair, the test as the board on the other.
class TstPidDebugWidget : public QObject
{
    Q_OBJECT

    LarkPtyPair *m_pty = nullptr;
    PidDebugWidget *m_page = nullptr;
    QSignalSpy *m_notes = nullptr;
    QSignalSpy *m_reads = nullptr;
    QList<QLineEdit *> m_edits; // P, I, D, target, period
    QComboBox *m_channel = nullptr;
    QComboBox *m_baud = nullptr;
    QComboBox *m_parity = nullptr;
    QCustomPlot *m_plot = nullptr;

    QGridLayout *grid(const QString &title) const
    {
        for (QGroupBox *g : m_page->findChildren<QGroupBox *>()) {
            if (g->title() == title)
                return qobject_cast<QGridLayout *>(g->layout());
        }
        return nullptr;
    }

    template <class W>
    W *at(const QString &group, int row) const { return qobject_cast<W *>(grid(group)->itemAtPosition(row, 1)->widget()); }

    void makePage()
    {
        m_page = new PidDebugWidget;
        m_notes = new QSignalSpy(m_page, SIGNAL(signalNotify(QString,int)));
        m_reads = new QSignalSpy(m_page->serialPort(), SIGNAL(bytesRead(QByteArray)));
        m_edits.clear();
        for (int row : {1, 2, 3, 5, 6})
            m_edits << at<QLineEdit>("PID值配置", row);
        m_channel = at<QComboBox>("PID值配置", 0);
        m_baud = at<QComboBox>("串口配置", 1);
        m_parity = at<QComboBox>("串口配置", 2);
        m_plot = m_page->customPlot();
        m_page->SltSerialportChanged({m_pty->programShortName()});
    }

    void dropPage()
    {
        delete m_reads;
        delete m_notes;
        delete m_page;
        m_page = nullptr;
    }

    QPushButton *button(const QString &text) const
    {
        for (QPushButton *b : m_page->findChildren<QPushButton *>()) {
            if (b->text() == text)
                return b;
        }
        return nullptr;
    }

    QString edits() const
    {
        QStringList texts;
        for (QLineEdit *e : m_edits)
            texts << e->text();
        return texts.join('|');
    }

    bool openPort()
    {
        button("打开串口")->click();
        return m_page->serialPort()->isOpen();
    }

    // the board writes; true once the page has taken every byte (the page's slot
    // runs before the spy's, so the parser is done by then)
    bool boardSends(const QByteArray &data)
    {
        auto received = [this] {
            int n = 0;
            for (const QList<QVariant> &args : qAsConst(*m_reads))
                n += args.at(0).toByteArray().size();
            return n;
        };
        const int want = received() + data.size();
        return m_pty->boardWrite(data) && QTest::qWaitFor([&] { return received() >= want; }, 5000);
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
        dropPage();
        delete m_pty;
    }

    void openAndCloseReport_data()
    {
        QTest::addColumn<QString>("port"); // empty: the pty
        QTest::addColumn<QString>("parity");
        QTest::addColumn<QString>("note");
        QTest::addColumn<int>("level");
        QTest::newRow("opens, parity has no effect") << "" << "奇" << "串口[%1]打开成功!" << 0;
        QTest::newRow("missing port") << "lark-no-such-tty" << "无" << "串口[/dev/lark-no-such-tty]打开失败!!!" << 255;
    }

    void openAndCloseReport()
    {
        QFETCH(QString, port);
        QFETCH(QString, parity);
        QFETCH(QString, note);
        QFETCH(int, level);
        if (!port.isEmpty())
            m_page->SltSerialportChanged({port});
        m_parity->setCurrentText(parity);
        QCOMPARE(openPort(), level == 0);
        QCOMPARE(m_notes->count(), 1);
        QCOMPARE(m_notes->at(0).at(0).toString(), port.isEmpty() ? note.arg(m_pty->programPath()) : note);
        QCOMPARE(m_notes->at(0).at(1).toInt(), level);
        QVERIFY(button(level == 0 ? "关闭串口" : "打开串口"));
        if (level != 0)
            return;
        button("关闭串口")->click();
        QVERIFY(!m_page->serialPort()->isOpen());
        QCOMPARE(m_notes->at(1).at(0).toString(), QString("串口[%1]已关闭!!").arg(m_pty->programShortName()));
        QVERIFY(button("打开串口"));
    }

    // Every button on the wire: header, channel from the combo, length, command,
    // payload in the board's byte order, checksum; then what the channel stored, as a
    // switch away and back shows it.
    void buttonsPutTheirFramesOnTheWire_data()
    {
        QTest::addColumn<bool>("open");
        QTest::addColumn<int>("channel");
        QTest::addColumn<QStringList>("texts"); // P, I, D, target, period
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<QByteArray>("wire");
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("stored");

        const QStringList defaults{"0.567", "0.567", "0.567", "200", "200"};
        QTest::newRow("pid CH1") << true << 0 << QStringList{"1.5", "0.25", "2.0", "200", "200"} << QStringList{"发送PID"}
                                 << QByteArray::fromHex("4c41524b0117000000100000c03f0000803e000000404f") << "启动" << "1.500|0.250|2.000|0|200";
        QTest::newRow("pid CH3 integer text") << true << 2 << QStringList{"3", "0.5", "0.125", "200", "200"} << QStringList{"发送PID"}
                                              << QByteArray::fromHex("4c41524b031700000010000040400000003f0000003e51") << "启动" << "3.000|0.500|0.125|0|200";
        QTest::newRow("target CH2 negative") << true << 1 << QStringList{"0.567", "0.567", "0.567", "-200", "200"} << QStringList{"发送目标值"}
                                             << QByteArray::fromHex("4c41524b020f0000001138ffffff81") << "启动" << "0.000|0.000|0.000|-200|200";
        QTest::newRow("target CH5") << true << 4 << QStringList{"0.567", "0.567", "0.567", "123456", "200"} << QStringList{"发送目标值"}
                                    << QByteArray::fromHex("4c41524b050f0000001140e2010072") << "启动" << "0.000|0.000|0.000|123456|200";
        QTest::newRow("target unparsable is 0") << true << 0 << QStringList{"0.567", "0.567", "0.567", "abc", "200"} << QStringList{"发送目标值"}
                                                << QByteArray::fromHex("4c41524b010f00000011000000004b") << "启动" << "0.000|0.000|0.000|0|200";
        QTest::newRow("period CH4 not stored") << true << 3 << QStringList{"0.567", "0.567", "0.567", "200", "20"} << QStringList{"发送周期"}
                                               << QByteArray::fromHex("4c41524b040f000000151400000066") << "启动" << "0.000|0.000|0.000|0|20";
        QTest::newRow("start") << true << 0 << defaults << QStringList{"启动"} << QByteArray::fromHex("4c41524b010b0000001248")
                               << "停止" << "0.000|0.000|0.000|0|200";
        QTest::newRow("start, stop") << true << 0 << defaults << QStringList{"启动", "停止"}
                                     << QByteArray::fromHex("4c41524b010b0000001248" "4c41524b010b0000001349") << "启动" << "0.000|0.000|0.000|0|200";
        QTest::newRow("closing while running stops first") << true << 2 << defaults << QStringList{"启动", "关闭串口"}
                                                           << QByteArray::fromHex("4c41524b030b000000124a" "4c41524b030b000000134b") << "启动" << "0.000|0.000|0.000|0|200";
        QTest::newRow("reset CH2") << true << 1 << defaults << QStringList{"复位"} << QByteArray::fromHex("4c41524b020b000000144b")
                                   << "启动" << "0.000|0.000|0.000|0|200";
        // a closed port sends nothing but the values are stored: the board's first
        // bytes are those of the press after the opening
        QTest::newRow("closed port") << false << 0 << QStringList{"1.5", "0.567", "0.567", "42", "20"}
                                     << QStringList{"发送PID", "发送目标值", "发送周期", "复位", "打开串口", "发送周期"}
                                     << QByteArray::fromHex("4c41524b010f000000151400000063") << "启动" << "1.500|0.567|0.567|42|20";
    }

    void buttonsPutTheirFramesOnTheWire()
    {
        QFETCH(bool, open);
        QFETCH(int, channel);
        QFETCH(QStringList, texts);
        QFETCH(QStringList, buttons);
        QFETCH(QByteArray, wire);
        QFETCH(QString, start);
        QFETCH(QString, stored);
        if (open)
            QVERIFY(openPort());
        m_channel->setCurrentIndex(channel);
        for (int k = 0; k < 5; ++k)
            m_edits[k]->setText(texts[k]);
        for (const QString &text : buttons) {
            QVERIFY2(button(text), qPrintable(text));
            button(text)->click();
        }
        QCOMPARE(m_pty->boardReadAtLeast(wire.size()), wire);
        QVERIFY(button(start));
        m_channel->setCurrentIndex((channel + 1) % 5);
        m_channel->setCurrentIndex(channel);
        QCOMPARE(edits(), stored);
    }

    void startOnClosedPortWarns()
    {
        QString text;
        LarkTest::onNextModal([&](QWidget *dlg) {
            for (QLabel *l : dlg->findChildren<QLabel *>())
                text += l->text();
            dlg->close();
        });
        button("启动")->click();
        QVERIFY(text.contains("请确认是否打开串口！"));
        QVERIFY(button("启动"));
    }

    // P, I, D, target and period of the selected channel show what the board reports
    // (other channels show theirs when selected, in three decimals)
    void boardReportsReachTheEdits_data()
    {
        QTest::addColumn<QByteArray>("frames");
        QTest::addColumn<int>("select"); // -1: stay on CH1
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("start");

        const QByteArray pid = le(1.25f) + le(0.5f) + le(-3.75f);
        QTest::newRow("defaults") << QByteArray() << -1 << "0.567|0.567|0.567|200|200" << "启动";
        QTest::newRow("defaults are not stored") << QByteArray() << 2 << "0.000|0.000|0.000|0|200" << "启动";
        QTest::newRow("target") << frame(1, 1, le(77)) << -1 << "0.567|0.567|0.567|77|200" << "启动";
        QTest::newRow("period") << frame(1, 6, le(20)) << -1 << "0.567|0.567|0.567|200|20" << "启动";
        QTest::newRow("pid values") << frame(1, 3, pid) << -1 << "1.25|0.5|-3.75|200|200" << "启动";
        QTest::newRow("other channel waits") << frame(2, 3, pid) + frame(2, 1, le(-9)) + frame(2, 6, le(33)) << -1
                                             << "0.567|0.567|0.567|200|200" << "启动";
        QTest::newRow("other channel selected") << frame(2, 3, pid) + frame(2, 1, le(-9)) << 1
                                                << "1.250|0.500|-3.750|-9|200" << "启动";
        QTest::newRow("noise, started, values") << "noise" + frame(1, 4) + frame(1, 1, le(321)) << -1
                                                << "0.567|0.567|0.567|321|200" << "停止";
        QTest::newRow("started, stopped") << frame(1, 4) + frame(3, 5) << -1 << "0.567|0.567|0.567|200|200" << "启动";
    }

    void boardReportsReachTheEdits()
    {
        QFETCH(QByteArray, frames);
        QFETCH(int, select);
        QFETCH(QString, shown);
        QFETCH(QString, start);
        QVERIFY(openPort());
        if (!frames.isEmpty())
            QVERIFY(boardSends(frames));
        if (select >= 0)
            m_channel->setCurrentIndex(select);
        QCOMPARE(edits(), shown);
        QVERIFY(button(start));
    }

    // Samples plot the stored target and the actual value at seconds since the board's
    // start, in a ten-second window that follows the newest sample.
    void samplesFollowTheNewestInATenSecondWindow()
    {
        QVERIFY(openPort());
        QVERIFY(boardSends(frame(2, 1, le(50)) + frame(2, 4) + frame(2, 2, le(-30)) + frame(2, 2, le(90))));
        QCPGraph *target = m_plot->graph(1);
        QCPGraph *actual = m_plot->graph(6);
        QCOMPARE(target->dataCount(), 2);
        QCOMPARE(target->data()->at(0)->value, 50.0);
        QCOMPARE(actual->data()->at(1)->value, 90.0);
        const double t = actual->data()->at(1)->key;
        QVERIFY(t >= 0 && t < 60);
        QCOMPARE(m_plot->xAxis->range().upper, t + 0.25);
        QCOMPARE(m_plot->xAxis->range().size(), 10.0);
        QCOMPARE(m_plot->yAxis->range(), QCPRange(-30, 90));

        // reopening unsets the start: keys become epoch seconds, far beyond the window
        // of the old points, which go
        button("关闭串口")->click();
        QVERIFY(openPort());
        QVERIFY(boardSends(frame(2, 2, le(7))));
        QCOMPARE(target->dataCount(), 1);
        QCOMPARE(actual->dataCount(), 1);
        QVERIFY(actual->data()->at(0)->key > 1e9);
        QCOMPARE(m_plot->yAxis->range().center(), 7.0); // one value keeps the span
        QCOMPARE(m_plot->yAxis->range().size(), 120.0);

        // a start the user pressed first finds "停止": the board's report sets nothing
        button("启动")->click();
        QVERIFY(boardSends(frame(2, 4) + frame(2, 2, le(8))));
        QVERIFY(actual->data()->at(1)->key > 1e9);
    }

    void stoppedDisplayDropsOneSamplePerReception()
    {
        QVERIFY(openPort());
        m_page->findChild<QCheckBox *>()->setChecked(true);
        const QCPRange x = m_plot->xAxis->range();
        QVERIFY(boardSends(frame(1, 2, le(10))));
        QVERIFY(boardSends(frame(1, 1, le(77))));
        QCOMPARE(m_edits[3]->text(), QString("77"));
        QCOMPARE(m_plot->graph(5)->dataCount(), 0);
        QCOMPARE(m_plot->xAxis->range(), x);
        m_page->findChild<QCheckBox *>()->setChecked(false);
        QVERIFY(boardSends(frame(1, 2, le(10))));
        QCOMPARE(m_plot->graph(5)->dataCount(), 1);
    }

    // Removing by rising index takes every other graph: the odd ones survive at 0 to 4.
    void clearKeepsEveryOtherCurveAsRequired()
    {
        QVERIFY(openPort());
        QCOMPARE(m_plot->graphCount(), 10);
        QVERIFY(boardSends(frame(2, 1, le(50)) + frame(2, 2, le(10)) + frame(1, 2, le(3))));
        button("清空显示")->click();
        QCOMPARE(m_plot->graphCount(), 15);
        // CH1 target is gone; the old CH2 target is now first, in CH1's colour
        QCOMPARE(m_plot->graph(0)->data()->at(0)->value, 50.0);
        QCOMPARE(m_plot->graph(0)->pen().color(), QColor("#D9001B"));
        QCOMPARE(m_plot->graph(2)->data()->at(0)->value, 3.0); // old CH1 actual
        for (int g = 0; g < 10; ++g)
            QCOMPARE(m_plot->graph(g)->visible(), g == 0 || g == 5);
        QCOMPARE(m_plot->graph(5)->dataCount(), 0);
        QVERIFY(m_plot->graph(12)->visible());
        // the fresh actual curve alone sets the scale, not the points before the clear
        QVERIFY(boardSends(frame(2, 2, le(-4)) + frame(2, 2, le(6))));
        QCOMPARE(m_plot->yAxis->range(), QCPRange(-4, 6));
        for (int count : {17, 18, 19, 19}) {
            button("清空显示")->click();
            QCOMPARE(m_plot->graphCount(), count);
        }
        button("复位")->click(); // clears the same way
        QCOMPARE(m_plot->graphCount(), 19);
    }

    void legendAndScaleDriveThePlot()
    {
        m_page->resize(1100, 700);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_page));
        auto *legend = m_page->findChild<GraphConfigWidget *>();
        const int half = legend->height() / 2;
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(210, half + 2)); // CH3 actual on
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(70, 2));        // CH1 target off
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(70, half + 2));  // CH1 actual off
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(210, half + 2)); // refused: last one
        for (int g = 0; g < 10; ++g)
            QCOMPARE(m_plot->graph(g)->visible(), g == 7);
        // a clear copies the legend's state into the new graphs
        button("清空显示")->click();
        for (int g = 0; g < 10; ++g)
            QCOMPARE(m_plot->graph(g)->visible(), g == 7);

        auto *scale = at<QComboBox>("PID值配置", 8);
        QCOMPARE(m_plot->axisRect()->rangeZoom(), Qt::Horizontal);
        scale->setCurrentIndex(1);
        QCOMPARE(m_plot->axisRect()->rangeZoom(), Qt::Vertical);
    }

    void exportWritesWhatThePlotHolds_data()
    {
        QTest::addColumn<QByteArray>("frames");
        QTest::addColumn<bool>("clear");
        QTest::addColumn<QString>("text");
        const QString head = "PID调试数据\n通道 1 数据如下：\n序号,实际值,目标值,差值\n";
        QTest::newRow("no data") << QByteArray() << false << "PID调试数据\n" + emptyChannels(1);
        QTest::newRow("samples") << frame(1, 1, le(200)) + frame(1, 2, le(150)) + frame(1, 2, le(1234567)) + frame(3, 2, le(-5))
                                 << false
                                 << head + "1,150,200,-50\n2,1.23457e+06,200,1.23437e+06\n\n\n" + emptyChannels(2).replace(
                                        "通道 3 数据如下：\n序号,实际值,目标值,差值\n", "通道 3 数据如下：\n序号,实际值,目标值,差值\n1,-5,0,-5\n");
        // graphs go by position: the survivors of a clear are exported, with the fresh
        // (empty) actual curves reading 0
        QTest::newRow("after a clear") << frame(2, 1, le(50)) + frame(2, 2, le(10)) + frame(1, 2, le(3)) << true
                                       << head + "1,0,50,-50\n\n\n" + emptyChannels(2).replace(
                                              "通道 3 数据如下：\n序号,实际值,目标值,差值\n", "通道 3 数据如下：\n序号,实际值,目标值,差值\n1,0,3,-3\n");
    }

    void exportWritesWhatThePlotHolds()
    {
        QFETCH(QByteArray, frames);
        QFETCH(bool, clear);
        QFETCH(QString, text);
        QVERIFY(openPort());
        if (!frames.isEmpty())
            QVERIFY(boardSends(frames));
        if (clear)
            button("清空显示")->click();
        QTemporaryDir dir;
        const QString path = dir.filePath("pid.csv");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly)); // a longer older file is truncated
        file.write(QByteArray(4096, 'x'));
        file.close();
        m_notes->clear();
        m_page->ExportDataToFile(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith(QByteArray::fromHex("504944b5f7cad4cafdbedd0a"))); // GB18030, no BOM
        QCOMPARE(QTextCodec::codecForName("GB18030")->toUnicode(bytes), text);
        QCOMPARE(m_notes->count(), 1);
        QCOMPARE(m_notes->at(0).at(0).toString(), "文件已导出：" + path);
        QCOMPARE(m_notes->at(0).at(1).toInt(), 0);
    }

    void exportThroughTheDialog()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("dialog.csv");
        LarkTest::answerNextFileDialog(path);
        button("导出数据")->click();
        QVERIFY(QFile::exists(path));
        QCOMPARE(m_notes->count(), 1);
        // cancelled: nothing said; unwritable: a warning and nothing said
        LarkTest::onNextModal([](QWidget *dlg) { dlg->close(); });
        button("导出数据")->click();
        bool warned = false;
        LarkTest::onNextModal([&](QWidget *dlg) {
            for (QLabel *l : dlg->findChildren<QLabel *>())
                warned = warned || l->text().contains("文件保存失败!");
            dlg->close();
        });
        m_page->ExportDataToFile("/nonexistent-lark-dir/pid.csv");
        QVERIFY(warned);
        QCOMPARE(m_notes->count(), 1);
    }

    void watcherKeepsTheOpenPortAndClosesAVanishedOne()
    {
        QVERIFY(openPort());
        auto *ports = at<QComboBox>("串口配置", 0);
        m_page->SltSerialportChanged({"ttyS0", m_pty->programShortName(), "ttyUSB0"});
        QVERIFY(m_page->serialPort()->isOpen());
        QCOMPARE(ports->currentText(), m_pty->programShortName());
        button("启动")->click();
        m_pty->stop();
        m_page->SltSerialportChanged({"ttyS0"});
        QCOMPARE(ports->count(), 1);
        QVERIFY(!m_page->serialPort()->isOpen());
        QVERIFY(button("启动"));
        QVERIFY(button("打开串口"));
        QCOMPARE(m_notes->last().at(0).toString(), QString("当前串口已拔出，请重新打开!"));
        QCOMPARE(m_notes->last().at(1).toInt(), 255);
    }

    // closing the program while running leaves the board running: no SendStop
    void closingTheProgramSendsNoStop()
    {
        QVERIFY(openPort());
        button("启动")->click();
        QCOMPARE(m_pty->boardReadAtLeast(11), QByteArray::fromHex("4c41524b010b0000001248"));
        dropPage();
        makePage();
        QVERIFY(openPort());
        button("复位")->click();
        QCOMPARE(m_pty->boardReadAtLeast(11), QByteArray::fromHex("4c41524b010b000000144a"));
    }
};

LARK_TEST_MAIN(TstPidDebugWidget)
#include "tst_piddebugwidget.moc"
