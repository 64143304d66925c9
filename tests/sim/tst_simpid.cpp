#include "SimProcess.h"
#include "pages/pid/PidPageRig.h"

// The PID page against larksim's motor board over a pty: a step response that
// settles, and the parameters a reset reports.
class TstSimPid : public QObject
{
    Q_OBJECT

private slots:
    // the second half of a four-second step response to 1000 (period 10 ms) settles with
    // sensible gains; a reset then stops the channel and reports what the board keeps,
    // over what the page shows but never sent
    void stepResponseSettlesAndResetReportsTheBoardsParameters()
    {
        SimProcess sim;
        QVERIFY(sim.start({"pid", "--pty"}));
        PidDebugWidget page;
        QVERIFY(PidPage::open(&page, sim.ptyName().mid(5))); // past "/dev/", or the open fails
        const QStringList texts{"1", "5", "0", "1000", "10"};
        for (int k = 0; k < 5; ++k)
            PidPage::edit(&page, k)->setText(texts[k]);
        for (const char *b : {"发送PID", "发送目标值", "发送周期", "启动"})
            PidPage::button(&page, b)->click();
        const auto samples = page.customPlot()->graph(5)->data(); // CH1's actual values
        const auto newest = [&] { return (samples->constEnd() - 1)->key; };
        QVERIFY(QTest::qWaitFor([&] { return samples->size() > 1 && newest() - samples->constBegin()->key >= 4; }, 14000));
        QVector<double> tail;
        for (auto it = samples->constBegin(); it != samples->constEnd(); ++it)
            if (it->key >= newest() - 2)
                tail << it->value;
        QVERIFY(tail.size() > 20);
        const auto [lo, hi] = std::minmax_element(tail.begin(), tail.end());
        QVERIFY2(*lo > 980 && *hi < 1020, qPrintable(QString("%1..%2").arg(*lo).arg(*hi)));
        PidPage::edit(&page, 0)->setText("9");
        PidPage::edit(&page, 3)->setText("77");
        PidPage::button(&page, "复位")->click();
        QTRY_COMPARE(PidPage::shown(&page), QString("1|5|0|1000|10"));
        QTRY_VERIFY(PidPage::button(&page, "启动"));
        PidPage::button(&page, "关闭串口")->click();
        QVERIFY(sim.stop());
    }
};

LARK_TEST_MAIN(TstSimPid)
#include "tst_simpid.moc"
