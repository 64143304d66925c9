#include "GraphConfigWidget.h"
#include "LarkPtyPair.h"
#include "LarkTest.h"
#include "PidBoardFrame.h"
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

using Frames = QByteArray;

// The page on one end of a pty pair, the test as the board on the other.
class TstPidDebugWidget : public QObject
{
    Q_OBJECT

    LarkPtyPair *m_pty = nullptr;
    PidDebugWidget *m_page = nullptr;
    QSignalSpy *m_notes = nullptr;
    QSignalSpy *m_reads = nullptr;
    QCustomPlot *m_plot = nullptr;

    // the widget in column 1 of a row of a group box
    template <class W>
    W *at(const QString &group, int row) const
    {
        for (QGroupBox *g : m_page->findChildren<QGroupBox *>()) {
            if (g->title() == group)
                return qobject_cast<W *>(static_cast<QGridLayout *>(g->layout())->itemAtPosition(row, 1)->widget());
        }
        return nullptr;
    }
    QComboBox *channel() const { return at<QComboBox>("PID值配置", 0); }
    QList<QLineEdit *> edits() const // P, I, D, target, period
    {
        return {at<QLineEdit>("PID值配置", 1), at<QLineEdit>("PID值配置", 2), at<QLineEdit>("PID值配置", 3),
                at<QLineEdit>("PID值配置", 5), at<QLineEdit>("PID值配置", 6)};
    }
    QString shown() const
    {
        QStringList texts;
        for (QLineEdit *e : edits())
            texts << e->text();
        return texts.join('|');
    }
    QPushButton *button(const QString &text) const
    {
        for (QPushButton *b : m_page->findChildren<QPushButton *>()) {
            if (b->text() == text)
                return b;
        }
        return nullptr;
    }
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
        m_plot = m_page->customPlot();
        m_page->SltSerialportChanged({m_pty->programShortName()});
    }
    void dropPage()
    {
        delete m_reads;
        delete m_notes;
        delete m_page;
    }

    // the board writes; true once the page has taken every byte (its slot runs before
    // the spy's, so the parser is done by then)
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

    static QString modalText(std::function<void()> action)
    {
        QString text;
        LarkTest::onNextModal([&](QWidget *dlg) {
            for (QLabel *l : dlg->findChildren<QLabel *>())
                text += l->text();
            dlg->close();
        });
        action();
        return text;
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

    void openCloseAndFailureReport()
    {
        at<QComboBox>("串口配置", 2)->setCurrentText("奇"); // no effect: always no parity
        QVERIFY(openPort());
        QVERIFY(button("关闭串口"));
        button("关闭串口")->click();
        QVERIFY(!m_page->serialPort()->isOpen());
        m_page->SltSerialportChanged({"lark-no-such-tty"});
        QVERIFY(!openPort());
        QVERIFY(button("打开串口"));
        const QList<QVariantList> expected{{QString("串口[%1]打开成功!").arg(m_pty->programPath()), 0},
                                           {QString("串口[%1]已关闭!!").arg(m_pty->programShortName()), 0},
                                           {QString("串口[/dev/lark-no-such-tty]打开失败!!!"), 255}};
        QCOMPARE(QList<QVariantList>(*m_notes), expected);
        QVERIFY(modalText([&] { button("启动")->click(); }).contains("请确认是否打开串口！"));
        QVERIFY(button("启动"));
    }

    // Each press on the wire (header, channel from the combo, length, command, payload
    // in the board's byte order, checksum); then what the channel stored, as a switch
    // away and back shows it.
    void buttonsPutTheirFramesOnTheWire_data()
    {
        QTest::addColumn<bool>("open");
        QTest::addColumn<int>("ch");
        QTest::addColumn<QStringList>("texts"); // P, I, D, target, period
        QTest::addColumn<QStringList>("presses");
        QTest::addColumn<QString>("wire");
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("stored");

        const QStringList defaults{"0.567", "0.567", "0.567", "200", "200"};
        const QString zero = "0.000|0.000|0.000|0|200";
        QTest::newRow("pid CH3, integer text") << true << 2 << QStringList{"3", "0.5", "0.125", "200", "200"} << QStringList{"发送PID"}
                                               << "4c41524b031700000010000040400000003f0000003e51" << "启动" << "3.000|0.500|0.125|0|200";
        QTest::newRow("target CH2") << true << 1 << QStringList{"0.567", "0.567", "0.567", "-200", "200"} << QStringList{"发送目标值"}
                                    << "4c41524b020f0000001138ffffff81" << "启动" << "0.000|0.000|0.000|-200|200";
        QTest::newRow("target unparsable is 0") << true << 0 << QStringList{"0.567", "0.567", "0.567", "abc", "200"}
                                                << QStringList{"发送目标值"} << "4c41524b010f00000011000000004b" << "启动" << zero;
        QTest::newRow("period CH4") << true << 3 << QStringList{"0.567", "0.567", "0.567", "200", "20"} << QStringList{"发送周期"}
                                    << "4c41524b040f000000151400000066" << "启动" << "0.000|0.000|0.000|0|20";
        QTest::newRow("start flips at once") << true << 0 << defaults << QStringList{"启动"} << "4c41524b010b0000001248" << "停止" << zero;
        QTest::newRow("start, stop") << true << 0 << defaults << QStringList{"启动", "停止"}
                                     << "4c41524b010b0000001248" "4c41524b010b0000001349" << "启动" << zero;
        QTest::newRow("closing while running stops first") << true << 2 << defaults << QStringList{"启动", "关闭串口"}
                                                           << "4c41524b030b000000124a" "4c41524b030b000000134b" << "启动" << zero;
        QTest::newRow("reset CH2") << true << 1 << defaults << QStringList{"复位"} << "4c41524b020b000000144b" << "启动" << zero;
        // nothing leaves a closed port, yet the values are stored: the board's first
        // bytes are those of the press after the opening
        QTest::newRow("closed port") << false << 0 << QStringList{"1.5", "0.567", "0.567", "42", "20"}
                                     << QStringList{"发送PID", "发送目标值", "发送周期", "复位", "打开串口", "发送周期"}
                                     << "4c41524b010f000000151400000063" << "启动" << "1.500|0.567|0.567|42|20";
    }

    void buttonsPutTheirFramesOnTheWire()
    {
        QFETCH(bool, open);
        QFETCH(int, ch);
        QFETCH(QStringList, texts);
        QFETCH(QStringList, presses);
        QFETCH(QString, wire);
        QFETCH(QString, start);
        QFETCH(QString, stored);
        QVERIFY(!open || openPort());
        channel()->setCurrentIndex(ch);
        for (int k = 0; k < 5; ++k)
            edits()[k]->setText(texts[k]);
        for (const QString &text : presses)
            button(text)->click();
        QCOMPARE(m_pty->boardReadAtLeast(wire.size() / 2).toHex(), wire.toLatin1());
        QVERIFY(button(start));
        channel()->setCurrentIndex((ch + 1) % 5);
        channel()->setCurrentIndex(ch);
        QCOMPARE(shown(), stored);
    }

    // what the board reports reaches the edits of the selected channel; another
    // channel's values show, in three decimals, when it is selected
    void boardReportsReachThePage_data()
    {
        QTest::addColumn<Frames>("frames");
        QTest::addColumn<int>("select"); // -1: stay on CH1
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("start");
        const QByteArray pid = le(1.25f) + le(0.5f) + le(-3.75f);
        QTest::newRow("defaults") << Frames() << -1 << "0.567|0.567|0.567|200|200" << "启动";
        QTest::newRow("defaults are not stored") << Frames() << 2 << "0.000|0.000|0.000|0|200" << "启动";
        QTest::newRow("target, period, pid") << boardFrame(1, 1, le(77)) + boardFrame(1, 6, le(20)) + boardFrame(1, 3, pid)
                                             << -1 << "1.25|0.5|-3.75|77|20" << "启动";
        QTest::newRow("other channel waits") << boardFrame(2, 3, pid) + boardFrame(2, 1, le(-9)) << -1
                                             << "0.567|0.567|0.567|200|200" << "启动";
        QTest::newRow("other channel selected") << boardFrame(2, 3, pid) + boardFrame(2, 1, le(-9)) << 1
                                                << "1.250|0.500|-3.750|-9|200" << "启动";
        QTest::newRow("noise, started") << "noise" + boardFrame(1, 4) << -1 << "0.567|0.567|0.567|200|200" << "停止";
        QTest::newRow("started, stopped") << boardFrame(1, 4) + boardFrame(3, 5) << -1 << "0.567|0.567|0.567|200|200" << "启动";
    }

    void boardReportsReachThePage()
    {
        QFETCH(Frames, frames);
        QFETCH(int, select);
        QFETCH(QString, shown);
        QFETCH(QString, start);
        QVERIFY(openPort());
        QVERIFY(frames.isEmpty() || boardSends(frames));
        if (select >= 0)
            channel()->setCurrentIndex(select);
        QCOMPARE(this->shown(), shown);
        QVERIFY(button(start));
    }

    // Samples plot the stored target and the actual value at seconds since the board's
    // start, in a ten-second window that follows the newest sample.
    void samplesFollowTheNewestInATenSecondWindow()
    {
        QVERIFY(openPort());
        QVERIFY(boardSends(boardFrame(2, 1, le(50)) + boardFrame(2, 4) + boardFrame(2, 2, le(-30))));
        QTest::qWait(30); // the time base set by the first start stays over a restart
        QVERIFY(boardSends(boardFrame(2, 5) + boardFrame(2, 4) + boardFrame(2, 2, le(90))));
        QCPGraph *target = m_plot->graph(1);
        QCPGraph *actual = m_plot->graph(6);
        QCOMPARE(target->data()->at(1)->value, 50.0);
        QCOMPARE(actual->data()->at(1)->value, 90.0);
        const double t = actual->data()->at(1)->key;
        QVERIFY(t >= 0.03 && t < 60);
        QCOMPARE(m_plot->xAxis->range(), QCPRange(t - 9.75, t + 0.25));
        QCOMPARE(m_plot->yAxis->range(), QCPRange(-30, 90));
        // reopening unsets the start: keys become epoch seconds, and the old points,
        // far out of the window now, go
        button("关闭串口")->click();
        QVERIFY(openPort());
        QVERIFY(boardSends(boardFrame(2, 2, le(7))));
        QCOMPARE(target->dataCount() + actual->dataCount(), 2);
        QVERIFY(actual->data()->at(0)->key > 1e9);
        QCOMPARE(m_plot->yAxis->range(), QCPRange(-53, 67)); // one value keeps the span
        // a start the user pressed first finds "停止": the board's report sets nothing
        button("启动")->click();
        QVERIFY(boardSends(boardFrame(2, 4) + boardFrame(2, 2, le(8))));
        QVERIFY(actual->data()->at(1)->key > 1e9);
        // display stopped: a sample is dropped, the next reception goes on
        const QCPRange x = m_plot->xAxis->range();
        m_page->findChild<QCheckBox *>()->setChecked(true);
        QVERIFY(boardSends(boardFrame(2, 2, le(10))));
        QVERIFY(boardSends(boardFrame(1, 1, le(77))));
        QCOMPARE(edits()[3]->text(), QString("77"));
        QCOMPARE(actual->dataCount(), 2);
        QCOMPARE(m_plot->xAxis->range(), x);
    }

    // Removing by rising index takes every other graph: the odd ones survive at 0 to 4.
    void clearKeepsEveryOtherCurveAsRequired()
    {
        QVERIFY(openPort());
        QCOMPARE(m_plot->graphCount(), 10);
        QVERIFY(boardSends(boardFrame(2, 1, le(50)) + boardFrame(2, 2, le(10)) + boardFrame(1, 2, le(3))));
        button("清空显示")->click();
        QCOMPARE(m_plot->graphCount(), 15);
        // CH1 target is gone; the old CH2 target is now first, in CH1's colour
        QCOMPARE(m_plot->graph(0)->data()->at(0)->value, 50.0);
        QCOMPARE(m_plot->graph(0)->pen().color(), QColor("#D9001B"));
        QCOMPARE(m_plot->graph(2)->data()->at(0)->value, 3.0); // old CH1 actual
        for (int g = 0; g < 13; ++g)
            QCOMPARE(m_plot->graph(g)->visible(), g == 0 || g == 5 || g > 9);
        QCOMPARE(m_plot->graph(5)->dataCount(), 0);
        // the fresh actual curve alone sets the scale, not the points before the clear
        QVERIFY(boardSends(boardFrame(2, 2, le(-4)) + boardFrame(2, 2, le(6))));
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
        const int row2 = legend->height() / 2 + 2;
        // CH3 actual on, CH1 target off, CH1 actual off, CH3 actual refused (last one)
        for (const QPoint &p : {QPoint(210, row2), QPoint(70, 2), QPoint(70, row2), QPoint(210, row2)})
            QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, p);
        for (int g = 0; g < 10; ++g)
            QCOMPARE(m_plot->graph(g)->visible(), g == 7);
        button("清空显示")->click(); // copies the legend's state into the new graphs
        for (int g = 0; g < 10; ++g)
            QCOMPARE(m_plot->graph(g)->visible(), g == 7);
        at<QComboBox>("PID值配置", 8)->setCurrentIndex(1);
        QCOMPARE(m_plot->axisRect()->rangeZoom(), Qt::Vertical);
        at<QComboBox>("PID值配置", 8)->setCurrentIndex(0);
        QCOMPARE(m_plot->axisRect()->rangeZoom(), Qt::Horizontal);
    }

    // the file holds what the plot holds, by graph position, in GB18030 without BOM
    void exportWritesWhatThePlotHolds_data()
    {
        QTest::addColumn<Frames>("frames");
        QTest::addColumn<bool>("clear");
        QTest::addColumn<QStringList>("rows"); // point lines of channels 1 to 5
        QTest::newRow("no data") << Frames() << false << QStringList{"", "", "", "", ""};
        QTest::newRow("samples") << boardFrame(1, 1, le(200)) + boardFrame(1, 2, le(150)) + boardFrame(1, 2, le(1234567))
                                        + boardFrame(3, 2, le(-5))
                                 << false << QStringList{"1,150,200,-50\n2,1.23457e+06,200,1.23437e+06\n", "", "1,-5,0,-5\n", "", ""};
        // the survivors of a clear go under their new positions; fresh actual curves read 0
        QTest::newRow("after a clear") << boardFrame(2, 1, le(50)) + boardFrame(2, 2, le(10)) + boardFrame(1, 2, le(3)) << true
                                       << QStringList{"1,0,50,-50\n", "", "1,0,3,-3\n", "", ""};
    }

    void exportWritesWhatThePlotHolds()
    {
        QFETCH(Frames, frames);
        QFETCH(bool, clear);
        QFETCH(QStringList, rows);
        QVERIFY(openPort());
        QVERIFY(frames.isEmpty() || boardSends(frames));
        if (clear)
            button("清空显示")->click();
        QTemporaryDir dir;
        QFile file(dir.filePath("pid.csv"));
        QVERIFY(file.open(QIODevice::WriteOnly)); // a longer older file is truncated
        file.write(QByteArray(4096, 'x'));
        file.close();
        m_page->ExportDataToFile(file.fileName());
        QString text = "PID调试数据\n";
        for (int n = 1; n <= 5; ++n)
            text += QString("通道 %1 数据如下：\n序号,实际值,目标值,差值\n").arg(n) + rows[n - 1] + "\n\n";
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QTextCodec::codecForName("GB18030")->fromUnicode(text));
        QCOMPARE(m_notes->last(), (QVariantList{"文件已导出：" + file.fileName(), 0}));
    }

    // through the dialog; cancelled or unwritable, nothing is said
    void exportThroughTheDialog()
    {
        QTemporaryDir dir;
        LarkTest::answerNextFileDialog(dir.filePath("dialog.csv"));
        button("导出数据")->click();
        QVERIFY(QFile::exists(dir.filePath("dialog.csv")));
        LarkTest::onNextModal([](QWidget *dlg) { dlg->close(); });
        button("导出数据")->click();
        QVERIFY(modalText([&] { m_page->ExportDataToFile("/nonexistent-lark-dir/pid.csv"); }).contains("文件保存失败!"));
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
        QVERIFY(button("启动") && button("打开串口"));
        QCOMPARE(m_notes->last(), (QVariantList{"当前串口已拔出，请重新打开!", 255}));
    }

    // closing the program while running leaves the board running: no SendStop
    void closingTheProgramSendsNoStop()
    {
        QVERIFY(openPort());
        button("启动")->click();
        QCOMPARE(m_pty->boardReadAtLeast(11).toHex(), QByteArray("4c41524b010b0000001248"));
        dropPage();
        makePage();
        QVERIFY(openPort());
        button("复位")->click();
        QCOMPARE(m_pty->boardReadAtLeast(11).toHex(), QByteArray("4c41524b010b000000144a"));
    }
};

LARK_TEST_MAIN(TstPidDebugWidget)
#include "tst_piddebugwidget.moc"
