#include "GraphConfigWidget.h"
#include "LarkPtyPair.h"
#include "LarkTest.h"
#include "PidDebugWidget.h"
#include "PidFrame.h"
#include "QtSerialPort.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QElapsedTimer>

#include <qcustomplot.h>

#include <cstring>

// What the board puts on the wire, written independently of the program's builder.
static QByteArray boardFrame(int channel, int cmd, const QByteArray &payload = QByteArray(), int sumDelta = 0)
{
    QByteArray f("LARK");
    f.append(char(channel));
    const qint32 len = payload.size() + 11;
    f.append(reinterpret_cast<const char *>(&len), 4); // x86: little-endian
    f.append(char(cmd));
    f.append(payload);
    int sum = 0;
    for (char ch : qAsConst(f))
        sum += uchar(ch);
    f.append(char((sum + sumDelta) & 0xFF));
    return f;
}

static QByteArray le32(qint32 v)
{
    return QByteArray(reinterpret_cast<const char *>(&v), 4);
}

static QByteArray leFloats(float p, float i, float d)
{
    QByteArray b;
    for (float f : {p, i, d})
        b.append(reinterpret_cast<const char *>(&f), 4);
    return b;
}

static QByteArray withLength(QByteArray frame, qint32 len)
{
    std::memcpy(frame.data() + 5, &len, 4);
    return frame;
}

class TstPidDebugWidget : public QObject
{
    Q_OBJECT

private:
    // "CH<n>:p/i/d/target/period" for every channel that is not all zero
    static QString channels(PidDebugWidget &w)
    {
        QStringList out;
        for (int c = 0; c < 5; ++c) {
            const PidChannelState &s = w.m_channels[c];
            if (s.p == 0 && s.i == 0 && s.d == 0 && s.target == 0 && s.period == 0)
                continue;
            out << QString("CH%1:%2/%3/%4/%5/%6").arg(c + 1).arg(double(s.p)).arg(double(s.i))
                       .arg(double(s.d)).arg(s.target).arg(s.period);
        }
        return out.join(' ');
    }

    static QString edits(PidDebugWidget &w)
    {
        return QStringList{w.m_edtP->text(), w.m_edtI->text(), w.m_edtD->text(),
                           w.m_edtTarget->text(), w.m_edtPeriod->text()}.join('|');
    }

    static void openOn(PidDebugWidget &w, LarkPtyPair &pty)
    {
        w.SltSerialportChanged({pty.programShortName()});
        w.m_btnOpen->click();
    }

    static QString exportText(PidDebugWidget &w, const QString &path)
    {
        w.ExportDataToFile(path);
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly))
            return QString();
        return QTextCodec::codecForName("GB18030")->toUnicode(f.readAll());
    }

    static QString emptyChannels(int from)
    {
        QString s;
        for (int n = from; n <= 5; ++n)
            s += QString("通道 %1 数据如下：\n序号,实际值,目标值,差值\n\n\n").arg(n);
        return s;
    }

private slots:
    void init()
    {
        LarkTest::cleanAppDirs();
    }

    void startsWithTheFixedDefaultsAndZeroedChannels()
    {
        PidDebugWidget w;
        QCOMPARE(edits(w), QString("0.567|0.567|0.567|200|200"));
        QCOMPARE(channels(w), QString());
        QCOMPARE(w.m_btnStart->text(), QString("启动"));
        QCOMPARE(w.m_btnOpen->text(), QString("打开串口"));
        QCOMPARE(w.m_cbxBaudrate->currentText(), QString("115200"));
        QCOMPARE(w.m_cbxDataBits->currentText(), QString("8"));
        QCOMPARE(w.m_cbxStopBits->currentText(), QString("1"));
        QCOMPARE(w.m_cbxParity->currentText(), QString("无"));
        QCOMPARE(w.m_cbxPortName->count(), 0);
        QCOMPARE(w.m_startTime, qint64(-1));
        QVERIFY(w.getCounts().isEmpty());

        // reselecting a channel shows the stored values, three decimals, period kept
        w.m_cbxChannel->setCurrentIndex(1);
        w.m_cbxChannel->setCurrentIndex(0);
        QCOMPARE(edits(w), QString("0.000|0.000|0.000|0|200"));
    }

    void openAndCloseReportAndFlipTheButton()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        QSignalSpy notes(&w, SIGNAL(signalNotify(QString,int)));
        w.m_cbxParity->setCurrentText("奇"); // no effect: parity is always none
        openOn(w, pty);
        QVERIFY(w.m_serialPort->isOpen());
        QCOMPARE(w.m_btnOpen->text(), QString("关闭串口"));
        QCOMPARE(notes.count(), 1);
        QCOMPARE(notes.at(0).at(0).toString(), QString("串口[%1]打开成功!").arg(pty.programPath()));
        QCOMPARE(notes.at(0).at(1).toInt(), 0);

        w.m_btnOpen->click();
        QVERIFY(!w.m_serialPort->isOpen());
        QCOMPARE(w.m_btnOpen->text(), QString("打开串口"));
        QCOMPARE(notes.at(1).at(0).toString(), QString("串口[%1]已关闭!!").arg(pty.programShortName()));
    }

    void failedOpenIsAnError()
    {
        PidDebugWidget w;
        QSignalSpy notes(&w, SIGNAL(signalNotify(QString,int)));
        w.SltSerialportChanged({"lark-no-such-tty"});
        w.m_btnOpen->click();
        QCOMPARE(w.m_btnOpen->text(), QString("打开串口"));
        QCOMPARE(notes.count(), 1);
        QCOMPARE(notes.at(0).at(0).toString(), QString("串口[/dev/lark-no-such-tty]打开失败!!!"));
        QCOMPARE(notes.at(0).at(1).toInt(), 255);
    }

    // Every button on the wire: header, channel from the combo, length, command,
    // payload in the board's byte order, checksum.
    void buttonsPutTheirFramesOnTheWire_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<QStringList>("texts"); // P, I, D, target, period
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("wire");
        QTest::addColumn<QString>("stored"); // channels() afterwards

        const QStringList defaults{"0.567", "0.567", "0.567", "200", "200"};
        QTest::newRow("pid CH1") << 0 << QStringList{"1.5", "0.25", "2.0", "200", "200"} << "发送PID"
                                 << QByteArray::fromHex("4c41524b0117000000100000c03f0000803e000000404f")
                                 << "CH1:1.5/0.25/2/0/0";
        QTest::newRow("pid CH3 integer text") << 2 << QStringList{"3", "0.5", "0.125", "200", "200"} << "发送PID"
                                              << QByteArray::fromHex("4c41524b031700000010000040400000003f0000003e51")
                                              << "CH3:3/0.5/0.125/0/0";
        QTest::newRow("target CH2 negative") << 1 << QStringList{"0.567", "0.567", "0.567", "-200", "200"} << "发送目标值"
                                             << QByteArray::fromHex("4c41524b020f0000001138ffffff81")
                                             << "CH2:0/0/0/-200/0";
        QTest::newRow("target CH5") << 4 << QStringList{"0.567", "0.567", "0.567", "123456", "200"} << "发送目标值"
                                    << QByteArray::fromHex("4c41524b050f0000001140e2010072")
                                    << "CH5:0/0/0/123456/0";
        QTest::newRow("target unparsable is 0") << 0 << QStringList{"0.567", "0.567", "0.567", "abc", "200"} << "发送目标值"
                                                << QByteArray::fromHex("4c41524b010f00000011000000004b") << "";
        QTest::newRow("period CH4 not stored") << 3 << QStringList{"0.567", "0.567", "0.567", "200", "20"} << "发送周期"
                                               << QByteArray::fromHex("4c41524b040f000000151400000066") << "";
        QTest::newRow("start CH1") << 0 << defaults << "启动" << QByteArray::fromHex("4c41524b010b0000001248") << "";
        QTest::newRow("reset CH2") << 1 << defaults << "复位" << QByteArray::fromHex("4c41524b020b000000144b") << "";
    }

    void buttonsPutTheirFramesOnTheWire()
    {
        QFETCH(int, channel);
        QFETCH(QStringList, texts);
        QFETCH(QString, button);
        QFETCH(QByteArray, wire);
        QFETCH(QString, stored);

        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        QVERIFY(w.m_serialPort->isOpen());
        w.m_cbxChannel->setCurrentIndex(channel);
        const QList<QLineEdit *> fields{w.m_edtP, w.m_edtI, w.m_edtD, w.m_edtTarget, w.m_edtPeriod};
        for (int k = 0; k < 5; ++k)
            fields[k]->setText(texts[k]);
        QPushButton *btn = nullptr;
        for (QPushButton *b : w.findChildren<QPushButton *>()) {
            if (b->text() == button)
                btn = b;
        }
        QVERIFY(btn);
        QTest::mouseClick(btn, Qt::LeftButton);
        QCOMPARE(pty.boardReadAtLeast(wire.size()), wire);
        QCOMPARE(channels(w), stored);
    }

    void startButtonFlipsAtOnceAndStopsOnSecondPress()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        w.m_btnStart->click();
        QCOMPARE(w.m_btnStart->text(), QString("停止"));
        w.m_btnStart->click();
        QCOMPARE(w.m_btnStart->text(), QString("启动"));
        QCOMPARE(pty.boardReadAtLeast(22), QByteArray::fromHex("4c41524b010b0000001248" "4c41524b010b0000001349"));
    }

    void closedPortSendsNothingButStoresValues()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        w.SltSerialportChanged({pty.programShortName()});
        w.m_edtP->setText("1.5");
        w.m_edtTarget->setText("42");
        w.m_btnSendPid->click();
        w.m_btnSendValue->click();
        w.m_btnSendInterval->click();
        w.m_btnReset->click();
        QCOMPARE(channels(w), QString("CH1:1.5/0.567/0.567/42/0"));
        QTest::qWait(100);
        QCOMPARE(pty.boardRead(), QByteArray());
    }

    void emptyBaudTextStillTriesTheOpen()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        QSignalSpy notes(&w, SIGNAL(signalNotify(QString,int)));
        w.SltSerialportChanged({pty.programShortName()});
        w.m_cbxBaudrate->setEditText("");
        w.m_btnOpen->click();
        QCOMPARE(notes.count(), 1);
        QCOMPARE(notes.at(0).at(1).toInt(), w.m_serialPort->isOpen() ? 0 : 255);
        QCOMPARE(w.m_btnOpen->text(), QString(w.m_serialPort->isOpen() ? "关闭串口" : "打开串口"));
    }

    void closingTheProgramWhileRunningSendsNoStop()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        {
            PidDebugWidget w;
            openOn(w, pty);
            w.m_btnStart->click();
            QCOMPARE(pty.boardReadAtLeast(11).size(), 11);
        }
        QTest::qWait(100);
        QCOMPARE(pty.boardRead(), QByteArray());
    }

    void startOnClosedPortWarnsAndChangesNothing()
    {
        PidDebugWidget w;
        QString text;
        LarkTest::onNextModal([&](QWidget *dlg) {
            for (QLabel *l : dlg->findChildren<QLabel *>()) {
                if (!l->text().isEmpty())
                    text += l->text();
            }
            dlg->close();
        });
        w.m_btnStart->click();
        QVERIFY(text.contains("请确认是否打开串口！"));
        QCOMPARE(w.m_btnStart->text(), QString("启动"));
    }

    void closingWhileRunningSendsStopFirst()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        w.m_cbxChannel->setCurrentIndex(2);
        w.m_btnStart->click();
        QCOMPARE(pty.boardReadAtLeast(11), PidFrame::build(0x12, 3, QByteArray()));
        w.m_btnOpen->click();
        QCOMPARE(w.m_btnStart->text(), QString("启动"));
        QCOMPARE(pty.boardReadAtLeast(11), QByteArray::fromHex("4c41524b030b000000134b"));
    }

    // Receptions fed in chunks as the port might deliver them; each row ends with the
    // page's stored channels, its five edits, the start button and the buffer.
    void receivedFramesUpdateThePage_data()
    {
        QTest::addColumn<QList<QByteArray>>("chunks");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("rest");

        const QString defaults = "0.567|0.567|0.567|200|200";
        const QByteArray target77 = boardFrame(1, 1, le32(77));
        const QByteArray period20 = boardFrame(1, 6, le32(20));
        const QByteArray target5ch2 = boardFrame(2, 1, le32(5));
        const QByteArray pid = boardFrame(1, 3, leFloats(1.25f, 0.5f, -3.75f));

        QTest::newRow("target selected") << QList<QByteArray>{target77} << "CH1:0/0/0/77/0"
                                         << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
        QTest::newRow("target other channel") << QList<QByteArray>{target5ch2} << "CH2:0/0/0/5/0" << defaults << "启动" << QByteArray();
        QTest::newRow("period") << QList<QByteArray>{period20} << "CH1:0/0/0/0/20" << "0.567|0.567|0.567|200|20" << "启动" << QByteArray();
        QTest::newRow("pid values") << QList<QByteArray>{pid} << "CH1:1.25/0.5/-3.75/0/0"
                                    << "1.25|0.5|-3.75|200|200" << "启动" << QByteArray();
        QTest::newRow("pid other channel") << QList<QByteArray>{boardFrame(4, 3, leFloats(1, 2, 3))}
                                           << "CH4:1/2/3/0/0" << defaults << "启动" << QByteArray();
        QTest::newRow("garbage before header") << QList<QByteArray>{QByteArray("\x00\x01\xffLA", 5) + target77}
                                               << "CH1:0/0/0/77/0" << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
        QTest::newRow("header split after LAR") << QList<QByteArray>{QByteArray::fromHex("004c4152"), target77.mid(3)}
                                                << "CH1:0/0/0/77/0" << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
        QTest::newRow("two frames one read") << QList<QByteArray>{target77 + period20} << "CH1:0/0/0/77/20"
                                             << "0.567|0.567|0.567|77|20" << "启动" << QByteArray();
        // the parser does not wait for the whole length: byte by byte, the frame is
        // cut at 11 bytes like a split one
        QTest::newRow("frame byte by byte") << [&] {
            QList<QByteArray> l;
            for (char ch : target77)
                l << QByteArray(1, ch);
            return l;
        }() << "" << "0.567|0.567|0.567|0|200" << "启动" << target77.right(3);
        // cut at 11 bytes: the short payload reads 0, its tail falls to the hunt
        QTest::newRow("frame split 11 and 4") << QList<QByteArray>{target77.left(11), target77.mid(11)}
                                              << "" << "0.567|0.567|0.567|0|200" << "启动" << target77.right(3);
        QTest::newRow("false checksum acts") << QList<QByteArray>{boardFrame(1, 1, le32(77), 9)}
                                             << "CH1:0/0/0/77/0" << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
        QTest::newRow("channel 6 holds the rest") << QList<QByteArray>{boardFrame(6, 1, le32(5)) + target77}
                                                  << "" << defaults << "启动" << target77;
        QTest::newRow("channel 6 rest on next read") << QList<QByteArray>{boardFrame(6, 1, le32(5)) + target77, QByteArray()}
                                                     << "CH1:0/0/0/77/0" << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
        QTest::newRow("channel 0 holds the rest") << QList<QByteArray>{boardFrame(0, 1, le32(5)) + target77}
                                                  << "" << defaults << "启动" << target77;
        QTest::newRow("command 7 holds the rest") << QList<QByteArray>{boardFrame(1, 7, le32(5)) + target77}
                                                  << "" << defaults << "启动" << target77;
        QTest::newRow("command 0 is skipped") << QList<QByteArray>{boardFrame(1, 0, le32(5)) + target77}
                                              << "CH1:0/0/0/77/0" << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
        QTest::newRow("started") << QList<QByteArray>{boardFrame(1, 4)} << "" << defaults << "停止" << QByteArray();
        QTest::newRow("started then stopped") << QList<QByteArray>{boardFrame(1, 4) + boardFrame(3, 5)} << "" << defaults << "启动" << QByteArray();
        QTest::newRow("stopped while stopped") << QList<QByteArray>{boardFrame(1, 5)} << "" << defaults << "启动" << QByteArray();
        QTest::newRow("length 3 eats LAR") << QList<QByteArray>{withLength(target77, 3)} << "" << defaults << "启动" << withLength(target77, 3).mid(3);
        QTest::newRow("length 3 then more") << QList<QByteArray>{withLength(target77, 3), target77}
                                            << "CH1:0/0/0/77/0" << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
        QTest::newRow("length 0 stalls") << QList<QByteArray>{withLength(target77, 0), target77}
                                         << "" << defaults << "启动" << withLength(target77, 0) + target77;
        QTest::newRow("negative length stalls") << QList<QByteArray>{withLength(target77, -15), period20}
                                                << "" << defaults << "启动" << withLength(target77, -15) + period20;
        // a length beyond the buffer takes what is there
        QTest::newRow("length too big takes all") << QList<QByteArray>{withLength(target77, 1000) + period20}
                                                  << "CH1:0/0/0/77/0" << "0.567|0.567|0.567|77|200" << "启动" << QByteArray();
    }

    void receivedFramesUpdateThePage()
    {
        QFETCH(QList<QByteArray>, chunks);
        QFETCH(QString, stored);
        QFETCH(QString, shown);
        QFETCH(QString, button);
        QFETCH(QByteArray, rest);

        PidDebugWidget w;
        for (const QByteArray &chunk : qAsConst(chunks))
            w.SltRecvFromSerialport(chunk);
        QCOMPARE(channels(w), stored);
        QCOMPARE(edits(w), shown);
        QCOMPARE(w.m_btnStart->text(), button);
        QCOMPARE(w.m_recvBuffer, rest);
    }

    void headerSplitKeepsLastThreeBytes()
    {
        PidDebugWidget w;
        w.SltRecvFromSerialport(QByteArray::fromHex("004c4152"));
        QCOMPARE(w.m_recvBuffer, QByteArray("LAR"));
    }

    void startTimeIsSetOnlyByABoardStartWhileStopped()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        w.m_btnStart->click(); // the button already reads "停止"
        w.SltRecvFromSerialport(boardFrame(1, 4));
        QCOMPARE(w.m_startTime, qint64(-1));
        w.SltRecvFromSerialport(boardFrame(1, 5));
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        w.SltRecvFromSerialport(boardFrame(1, 4));
        QVERIFY(w.m_startTime >= before);
        const qint64 first = w.m_startTime;
        w.SltRecvFromSerialport(boardFrame(1, 5) + boardFrame(1, 4));
        QCOMPARE(w.m_startTime, first);
        // only a new opening resets it
        w.m_btnOpen->click();
        w.m_btnOpen->click();
        QCOMPARE(w.m_startTime, qint64(-1));
    }

    void channelSwitchShowsStoredValuesInItsOwnFormat()
    {
        PidDebugWidget w;
        w.SltRecvFromSerialport(boardFrame(2, 3, leFloats(1.25f, 0.5f, 2)) + boardFrame(2, 1, le32(-9)) + boardFrame(2, 6, le32(33)));
        QCOMPARE(edits(w), QString("0.567|0.567|0.567|200|200"));
        w.m_cbxChannel->setCurrentIndex(1);
        QCOMPARE(edits(w), QString("1.250|0.500|2.000|-9|200"));
        w.SltRecvFromSerialport(boardFrame(2, 3, leFloats(1.25f, 0.5f, 2)));
        QCOMPARE(w.m_edtP->text(), QString("1.25"));
    }

    void stoppedDisplayDropsOneSamplePerReception()
    {
        PidDebugWidget w;
        w.m_chkStopShow->setChecked(true);
        const QByteArray sample = boardFrame(1, 2, le32(10));
        const QByteArray target = boardFrame(1, 1, le32(77));
        const QCPRange xBefore = w.m_customPlot->xAxis->range();
        w.SltRecvFromSerialport(sample + target + sample);
        QCOMPARE(w.m_customPlot->graph(5)->dataCount(), 0);
        QCOMPARE(w.m_customPlot->xAxis->range(), xBefore);
        QCOMPARE(w.m_recvBuffer, target + sample);
        w.SltRecvFromSerialport(QByteArray());
        QCOMPARE(w.m_channels[0].target, 77); // the next reception goes on to the next sample
        QCOMPARE(w.m_recvBuffer, QByteArray());
        w.m_chkStopShow->setChecked(false);
        w.SltRecvFromSerialport(sample);
        QCOMPARE(w.m_customPlot->graph(5)->dataCount(), 1);
    }

    void plotHasTenCurvesColouredLikeTheLegend()
    {
        PidDebugWidget w;
        QCOMPARE(w.m_customPlot->graphCount(), 10);
        for (int g = 0; g < 10; ++g) {
            QCOMPARE(w.m_customPlot->graph(g)->pen().color(), w.m_graphConfig->getGraphColor(g));
            QCOMPARE(w.m_customPlot->graph(g)->visible(), g == 0 || g == 5);
        }
        QCOMPARE(w.m_customPlot->yAxis->range(), QCPRange(-700, 700));
        QCOMPARE(w.m_customPlot->axisRect()->rangeZoom(), Qt::Horizontal);
        w.m_cbxScale->setCurrentIndex(1);
        QCOMPARE(w.m_customPlot->axisRect()->rangeZoom(), Qt::Vertical);
        w.m_cbxScale->setCurrentIndex(0);
        QCOMPARE(w.m_customPlot->axisRect()->rangeZoom(), Qt::Horizontal);
    }

    void samplesFollowTheNewestInATenSecondWindow()
    {
        PidDebugWidget w;
        w.SltRecvFromSerialport(boardFrame(2, 1, le32(50)));
        w.m_startTime = QDateTime::currentMSecsSinceEpoch();
        w.SltRecvFromSerialport(boardFrame(2, 2, le32(-30)) + boardFrame(2, 2, le32(90)));
        QCPGraph *target = w.m_customPlot->graph(1);
        QCPGraph *actual = w.m_customPlot->graph(6);
        QCOMPARE(target->dataCount(), 2);
        QCOMPARE(actual->dataCount(), 2);
        QCOMPARE(target->data()->at(0)->value, 50.0);
        QCOMPARE(actual->data()->at(1)->value, 90.0);
        const double t = actual->data()->at(1)->key;
        QVERIFY(t >= 0 && t < 5);
        QCOMPARE(w.m_customPlot->xAxis->range().upper, t + 0.25);
        QCOMPARE(w.m_customPlot->xAxis->range().size(), 10.0);
        QCOMPARE(w.m_customPlot->yAxis->range(), QCPRange(-30, 90));

        // twenty seconds later the old points have left the window
        w.m_startTime -= 20000;
        w.SltRecvFromSerialport(boardFrame(2, 2, le32(7)));
        QCOMPARE(target->dataCount(), 1);
        QCOMPARE(actual->dataCount(), 1);
        QVERIFY(w.m_customPlot->xAxis->range().upper > 20);
        // a single value keeps the span and centres on it
        QCOMPARE(w.m_customPlot->yAxis->range().center(), 7.0);
        QCOMPARE(w.m_customPlot->yAxis->range().size(), 120.0);
    }

    void clearKeepsEveryOtherCurveAsRequired()
    {
        PidDebugWidget w;
        w.SltRecvFromSerialport(boardFrame(2, 1, le32(50)) + boardFrame(2, 2, le32(10)) + boardFrame(1, 2, le32(3)));
        const QList<int> counts{15, 17, 18, 19, 19};
        w.m_btnClear->click();
        QCOMPARE(w.m_customPlot->graphCount(), counts[0]);
        // CH1 target is gone; the old CH2 target is now first, in CH1's colour
        QCOMPARE(w.m_customPlot->graph(0)->dataCount(), 1);
        QCOMPARE(w.m_customPlot->graph(0)->data()->at(0)->value, 50.0);
        QCOMPARE(w.m_customPlot->graph(0)->pen().color(), QColor("#D9001B"));
        QCOMPARE(w.m_customPlot->graph(2)->data()->at(0)->value, 3.0); // old CH1 actual
        for (int g = 0; g < 10; ++g)
            QCOMPARE(w.m_customPlot->graph(g)->visible(), g == 0 || g == 5);
        QCOMPARE(w.m_customPlot->graph(5)->dataCount(), 0);
        QVERIFY(w.m_customPlot->graph(12)->visible());
        // the fresh actual curve alone sets the scale, not the points before the clear
        w.SltRecvFromSerialport(boardFrame(2, 2, le32(-4)) + boardFrame(2, 2, le32(6)));
        QCOMPARE(w.m_customPlot->yAxis->range(), QCPRange(-4, 6));
        for (int k = 1; k < counts.size(); ++k) {
            w.m_btnClear->click();
            QCOMPARE(w.m_customPlot->graphCount(), counts[k]);
        }
        // reset clears the same way, whether or not a port is open
        w.m_btnReset->click();
        QCOMPARE(w.m_customPlot->graphCount(), 19);
    }

    void legendClicksShowAndHideCurves()
    {
        PidDebugWidget w;
        w.resize(1100, 700);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        GraphConfigWidget *legend = w.m_graphConfig;
        const int half = legend->height() / 2;
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(60 + 70 * 2 + 10, half + 2));
        QVERIFY(w.m_customPlot->graph(7)->visible());
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(70, 2));
        QVERIFY(!w.m_customPlot->graph(0)->visible());
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(70, half + 2));
        QTest::mouseClick(legend, Qt::LeftButton, Qt::NoModifier, QPoint(60 + 70 * 2 + 10, half + 2));
        // the last shown curve stays
        QVERIFY(!w.m_customPlot->graph(5)->visible());
        QVERIFY(w.m_customPlot->graph(7)->visible());
        QVERIFY(legend->isVisible(7));
        // a clear copies the legend's state into the new graphs
        w.m_btnClear->click();
        for (int g = 0; g < 10; ++g)
            QCOMPARE(w.m_customPlot->graph(g)->visible(), g == 7);
    }

    void exportWritesEveryChannelInGb18030()
    {
        QTemporaryDir dir;
        PidDebugWidget w;
        QSignalSpy notes(&w, SIGNAL(signalNotify(QString,int)));
        w.SltRecvFromSerialport(boardFrame(1, 1, le32(200)) + boardFrame(1, 2, le32(150)) + boardFrame(1, 2, le32(1234567))
                                + boardFrame(3, 2, le32(-5)));
        const QString path = dir.filePath("pid.csv");
        const QString expected = QString("PID调试数据\n"
                                         "通道 1 数据如下：\n序号,实际值,目标值,差值\n"
                                         "1,150,200,-50\n2,1.23457e+06,200,1.23437e+06\n\n\n"
                                         "通道 2 数据如下：\n序号,实际值,目标值,差值\n\n\n"
                                         "通道 3 数据如下：\n序号,实际值,目标值,差值\n1,-5,0,-5\n\n\n")
                                 + emptyChannels(4);
        QCOMPARE(exportText(w, path), expected);
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll().left(12), QByteArray::fromHex("504944b5f7cad4cafdbedd0a"));
        QCOMPARE(notes.count(), 1);
        QCOMPARE(notes.at(0).at(0).toString(), "文件已导出：" + path);
        QCOMPARE(notes.at(0).at(1).toInt(), 0);
    }

    void exportWithoutDataStillWritesAllChannels()
    {
        QTemporaryDir dir;
        PidDebugWidget w;
        const QString path = dir.filePath("empty.csv");
        // a longer older file is truncated
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(4096, 'x'));
        old.close();
        QCOMPARE(exportText(w, path), "PID调试数据\n" + emptyChannels(1));
    }

    void exportAfterAClearFollowsGraphPositions()
    {
        QTemporaryDir dir;
        PidDebugWidget w;
        w.SltRecvFromSerialport(boardFrame(2, 1, le32(50)) + boardFrame(2, 2, le32(10)) + boardFrame(1, 2, le32(3)));
        w.m_btnClear->click();
        // positions 0 (old CH2 target) and 2 (old CH1 actual) kept their points, the
        // fresh actual curves are empty and read 0
        const QString expected = QString("PID调试数据\n"
                                         "通道 1 数据如下：\n序号,实际值,目标值,差值\n1,0,50,-50\n\n\n"
                                         "通道 2 数据如下：\n序号,实际值,目标值,差值\n\n\n"
                                         "通道 3 数据如下：\n序号,实际值,目标值,差值\n1,0,3,-3\n\n\n")
                                 + emptyChannels(4);
        QCOMPARE(exportText(w, dir.filePath("clear.csv")), expected);
    }

    void exportThroughTheDialog()
    {
        QTemporaryDir dir;
        PidDebugWidget w;
        const QString path = dir.filePath("dialog.csv");
        bool sawFileDialog = false;
        // a file dialog can take a while to come up on a busy machine
        LarkTest::onNextModal([&](QWidget *dlg) {
            auto *fd = qobject_cast<QFileDialog *>(dlg);
            sawFileDialog = fd != nullptr;
            if (fd) {
                LarkTest::chooseFileInDialog(fd, path);
            } else if (auto *d = qobject_cast<QDialog *>(dlg)) {
                d->reject();
            } else {
                dlg->close();
            }
        }, 60000);
        w.m_btnExport->click();
        QVERIFY(sawFileDialog);
        QVERIFY(QFile::exists(path));

        // cancelled: nothing written, nothing said
        QSignalSpy notes(&w, SIGNAL(signalNotify(QString,int)));
        LarkTest::onNextModal([](QWidget *dlg) {
            if (auto *d = qobject_cast<QDialog *>(dlg))
                d->reject();
            else
                dlg->close();
        }, 60000);
        w.m_btnExport->click();
        QCOMPARE(notes.count(), 0);
    }

    void exportToAnUnwritablePlaceWarns()
    {
        PidDebugWidget w;
        QSignalSpy notes(&w, SIGNAL(signalNotify(QString,int)));
        bool warned = false;
        LarkTest::onNextModal([&](QWidget *dlg) {
            for (QLabel *l : dlg->findChildren<QLabel *>())
                warned = warned || l->text().contains("文件保存失败!");
            dlg->close();
        });
        w.ExportDataToFile("/nonexistent-lark-dir/pid.csv");
        QVERIFY(warned);
        QCOMPARE(notes.count(), 0);
    }

    void boardFramesThroughThePty()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        QVERIFY(pty.boardWrite(QByteArray("noise") + boardFrame(1, 4) + boardFrame(1, 1, le32(321))
                               + boardFrame(1, 3, leFloats(0.5f, 0.25f, 0.125f))));
        QTRY_COMPARE(w.m_edtD->text(), QString("0.125"));
        QCOMPARE(w.m_edtTarget->text(), QString("321"));
        QCOMPARE(w.m_btnStart->text(), QString("停止"));
        QVERIFY(w.m_startTime != -1);
        QVERIFY(pty.boardWrite(boardFrame(1, 5)));
        QTRY_COMPARE(w.m_btnStart->text(), QString("启动"));
    }

    // 1 MB of samples in one reception is taken in one pass, without deep calls
    void megabyteReceptionIsParsedCompletely()
    {
        PidDebugWidget w;
        QByteArray big;
        int n = 0;
        while (big.size() < (1 << 20)) {
            big += boardFrame(n % 5 + 1, n % 7 == 0 ? 1 : 2, le32(n));
            ++n;
        }
        w.SltRecvFromSerialport(big);
        QCOMPARE(w.m_recvBuffer, QByteArray());
        int points = 0;
        for (int g = 5; g < 10; ++g)
            points += w.m_customPlot->graph(g)->dataCount();
        QCOMPARE(points, n - (n + 6) / 7);
    }

    void megabyteStreamThroughThePty()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        QByteArray big;
        int n = 0;
        while (big.size() < (1 << 20)) {
            big += boardFrame(n % 5 + 1, 1, le32(n));
            ++n;
        }
        big += boardFrame(2, 6, le32(4242));
        QVERIFY(pty.boardWrite(big));
        QTRY_COMPARE_WITH_TIMEOUT(w.m_channels[1].period, 4242, 20000);
        QCOMPARE(w.m_recvBuffer, QByteArray());
        QCOMPARE(w.m_channels[(n - 1) % 5].target, n - 1);
    }

    void zeroLengthStallsWithoutHarm()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        QVERIFY(pty.boardWrite(withLength(boardFrame(1, 1, le32(5)), 0)));
        QTRY_COMPARE(w.m_recvBuffer.size(), 15);
        QByteArray more;
        for (int i = 0; i < 2000; ++i)
            more += boardFrame(1, 1, le32(i));
        QVERIFY(pty.boardWrite(more));
        QTRY_COMPARE_WITH_TIMEOUT(w.m_recvBuffer.size(), 15 + more.size(), 10000);
        QCOMPARE(w.m_channels[0].target, 0);
        // the page still works the other way
        w.m_btnSendValue->click();
        QCOMPARE(pty.boardReadAtLeast(15).size(), 15);
    }

    void randomBytesNeverCrash()
    {
        PidDebugWidget w;
        w.show();
        QRandomGenerator rng(20261122);
        QElapsedTimer timer;
        timer.start();
        qint64 fed = 0;
        while (timer.elapsed() < 8000) {
            QByteArray chunk;
            const int parts = rng.bounded(1, 8);
            for (int k = 0; k < parts; ++k) {
                if (rng.bounded(3) == 0) {
                    QByteArray junk(rng.bounded(0, 40), 0);
                    for (char &ch : junk)
                        ch = char(rng.bounded(256));
                    chunk += junk;
                } else {
                    QByteArray payload(rng.bounded(0, 14), 0);
                    for (char &ch : payload)
                        ch = char(rng.bounded(256));
                    QByteArray f = boardFrame(rng.bounded(0, 8), rng.bounded(0, 9), payload);
                    if (rng.bounded(4) == 0)
                        f = withLength(f, qint32(rng.bounded(-3, 40)));
                    chunk += f.left(rng.bounded(1, f.size() + 1));
                }
            }
            w.SltRecvFromSerialport(chunk);
            fed += chunk.size();
            // a stalled link never recovers; start over as a reopened program would
            if (w.m_recvBuffer.size() > 4096)
                w.m_recvBuffer.clear();
            if (rng.bounded(50) == 0)
                w.m_btnClear->click();
            QCoreApplication::processEvents();
        }
        QVERIFY(fed > 10000);
        QVERIFY(w.m_customPlot->graphCount() <= 19);
    }

    void vanishedPortIsClosedWithAMessage()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        QSignalSpy notes(&w, SIGNAL(signalNotify(QString,int)));
        openOn(w, pty);
        w.m_btnStart->click();
        QVERIFY(pty.boardWrite(boardFrame(1, 2, le32(1))));
        QTRY_COMPARE(w.m_customPlot->graph(5)->dataCount(), 1);
        pty.stop();
        QTest::qWait(50);
        // the watcher's next report no longer lists the port
        w.SltSerialportChanged(QStringList{"ttyS0"});
        QCOMPARE(w.m_cbxPortName->count(), 1);
        QVERIFY(!w.m_serialPort->isOpen());
        QCOMPARE(w.m_btnStart->text(), QString("启动"));
        QCOMPARE(w.m_btnOpen->text(), QString("打开串口"));
        QCOMPARE(notes.last().at(0).toString(), QString("当前串口已拔出，请重新打开!"));
        QCOMPARE(notes.last().at(1).toInt(), 255);
    }

    void watcherListKeepsTheOpenPortSelected()
    {
        LarkPtyPair pty;
        QVERIFY(pty.start());
        PidDebugWidget w;
        openOn(w, pty);
        w.SltSerialportChanged({"ttyS0", pty.programShortName(), "ttyUSB0"});
        QVERIFY(w.m_serialPort->isOpen());
        QCOMPARE(w.m_cbxPortName->currentText(), pty.programShortName());
        QCOMPARE(w.m_cbxPortName->count(), 3);
    }
};

LARK_TEST_MAIN(TstPidDebugWidget)
#include "tst_piddebugwidget.moc"
