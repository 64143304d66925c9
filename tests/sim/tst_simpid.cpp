#include "SimProcess.h"
#include "pages/pid/PidPageRig.h"

// The PID page against larksim's motor board over a pty: a step response that
// settles with sensible gains and swings with a large P; the run-state answers and
// the parameters a reset reports.
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

    // the second half of a four-second step response to 1000
    void stepResponse_data()
    {
        QTest::addColumn<QStringList>("gains");
        QTest::addColumn<bool>("settles");
        QTest::newRow("sensible gains settle") << QStringList{"1", "5", "0"} << true;
        QTest::newRow("a large P swings") << QStringList{"20", "0", "0"} << false;
    }
    void stepResponse()
    {
        QFETCH(QStringList, gains);
        QFETCH(bool, settles);
        const QVector<double> tail = run(gains, 4.0);
        QVERIFY(tail.size() > 20);
        const auto [lo, hi] = std::minmax_element(tail.begin(), tail.end());
        int crossings = 0;
        for (int k = 1; k < tail.size(); ++k)
            crossings += (tail[k - 1] < 1000) != (tail[k] < 1000);
        if (settles) {
            QVERIFY2(*lo > 980 && *hi < 1020, qPrintable(QString("%1..%2").arg(*lo).arg(*hi)));
        } else {
            QVERIFY2(*hi - *lo > 300 && crossings >= 4, qPrintable(QString("%1..%2, %3 crossings").arg(*lo).arg(*hi).arg(crossings)));
        }
        // stop is answered: the button reads "启动" again, and the samples stop
        button("停止")->click();
        QTRY_VERIFY(button("启动"));
    }

    // a reset stops the channel and reports what the board keeps, over what the
    // page shows but never sent
    void resetReportsTheBoardsParameters()
    {
        QVERIFY(!run({"1.5", "2", "0.25"}, 0.5).isEmpty());
        edit(0)->setText("9");
        edit(3)->setText("77");
        button("复位")->click();
        QTRY_COMPARE(PidPage::shown(m_page), QString("1.5|2|0.25|1000|10"));
        QTRY_VERIFY(button("启动"));
    }
};

LARK_TEST_MAIN(TstSimPid)
#include "tst_simpid.moc"
