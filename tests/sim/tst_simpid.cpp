#include "SimProcess.h"
#include "pages/pid/PidPageRig.h"

// The PID page against larksim's motor board over a pty: a step response that
// settles, and the parameters a reset reports.
class TstSimPid : public QObject
{
    Q_OBJECT

    PidDebugWidget *m_page = nullptr;
    SimProcess *m_sim = nullptr;

    QLineEdit *edit(int k) const { return PidPage::edit(m_page, k); }
    QPushButton *button(const QString &text) const { return PidPage::button(m_page, text); }
    // CH1's samples with their times, over the last `seconds` of a run of that length
    QVector<double> run(const QStringList &gains, double seconds)
    {
        for (int k = 0; k < 5; ++k) // target 1000, period 10 ms
            edit(k)->setText((gains + QStringList{"1000", "10"})[k]);
        for (const char *b : {"发送PID", "发送目标值", "发送周期", "启动"})
            button(b)->click();
        QCPGraph *actual = m_page->customPlot()->graph(5);
        const auto span = [actual] {
            return actual->dataCount() < 2 ? 0.0 : (actual->data()->constEnd() - 1)->key - actual->data()->constBegin()->key;
        };
        if (!QTest::qWaitFor([&] { return span() >= seconds; }, int(seconds * 1000) + 10000))
            return {};
        QVector<double> values;
        const double from = (actual->data()->constEnd() - 1)->key - seconds / 2;
        for (auto it = actual->data()->constBegin(); it != actual->data()->constEnd(); ++it)
            if (it->key >= from)
                values << it->value;
        return values;
    }

private slots:
    void init()
    {
        m_sim = new SimProcess;
        QVERIFY(m_sim->start({"pid", "--pty"}));
        m_page = new PidDebugWidget;
        QVERIFY(PidPage::open(m_page, m_sim->ptyName().mid(5))); // past "/dev/", or the open fails
    }
    void cleanup()
    {
        delete m_page;
        QVERIFY(m_sim->stop());
        delete m_sim;
    }

    // the second half of a four-second step response to 1000 settles with sensible
    // gains; a reset then stops the channel and reports what the board keeps, over
    // what the page shows but never sent
    void stepResponseSettlesAndResetReportsTheBoardsParameters()
    {
        const QVector<double> tail = run({"1", "5", "0"}, 4.0);
        QVERIFY(tail.size() > 20);
        const auto [lo, hi] = std::minmax_element(tail.begin(), tail.end());
        QVERIFY2(*lo > 980 && *hi < 1020, qPrintable(QString("%1..%2").arg(*lo).arg(*hi)));
        edit(0)->setText("9");
        edit(3)->setText("77");
        button("复位")->click();
        QTRY_COMPARE(PidPage::shown(m_page), QString("1|5|0|1000|10"));
        QTRY_VERIFY(button("启动"));
    }
};

LARK_TEST_MAIN(TstSimPid)
#include "tst_simpid.moc"
