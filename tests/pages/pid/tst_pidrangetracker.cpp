#include "LarkTest.h"
#include "PidRangeTracker.h"

#include <QRandomGenerator>
#include <QTest>

#include <qcustomplot.h>

// The tracker must leave the value axis exactly where QCustomPlot's own rescale
// leaves it, sample after sample, whatever the data does.
class TstPidRangeTracker : public QObject
{
    Q_OBJECT

private slots:
    void axisEndsWhereTheLibraryRescaleWouldPutIt_data()
    {
        QTest::addColumn<int>("valueSpread"); // 1: constant data
        QTest::addColumn<int>("backJumpEvery"); // 0: the clock never goes back
        QTest::addColumn<quint32>("seed");
        QTest::newRow("noisy") << 2000 << 0 << 1u;
        QTest::newRow("few distinct values") << 3 << 0 << 2u;
        QTest::newRow("constant keeps the span") << 1 << 0 << 3u;
        QTest::newRow("clock jumps back") << 50 << 97 << 4u;
    }

    void axisEndsWhereTheLibraryRescaleWouldPutIt()
    {
        QFETCH(int, valueSpread);
        QFETCH(int, backJumpEvery);
        QFETCH(quint32, seed);

        QCustomPlot reference, tracked;
        for (QCustomPlot *p : {&reference, &tracked}) {
            p->yAxis->setRange(-700, 700);
            p->addGraph();
        }
        PidRangeTracker tracker;
        QRandomGenerator rng(seed);
        double t = 1000.0;
        for (int n = 1; n <= 6000; ++n) {
            t += rng.bounded(0, 4) * 0.004; // equal keys happen
            if (backJumpEvery && n % backJumpEvery == 0)
                t -= 30.0;
            const double v = valueSpread == 1 ? 42.0 : double(rng.bounded(valueSpread) - valueSpread / 2);
            for (QCustomPlot *p : {&reference, &tracked}) {
                p->graph(0)->data()->removeBefore(t - 10.0);
                p->graph(0)->addData(t, v);
            }
            reference.graph(0)->rescaleValueAxis(false, false);
            tracker.follow(tracked.graph(0), t - 10.0, t, v);
            QVERIFY(tracker.rescaleValueAxis(tracked.yAxis));
            QVERIFY2(reference.yAxis->range() == tracked.yAxis->range(), qPrintable(QString::number(n)));
            // now and then something else moves the axis, as a drag would
            if (n % 500 == 0) {
                reference.yAxis->setRange(-5, 5 + n);
                tracked.yAxis->setRange(-5, 5 + n);
            }
        }
    }

    // an empty tracker leaves the axis alone; a new graph is followed from its own data
    void aNewGraphIsFollowedFromItsOwnData()
    {
        QCustomPlot plot;
        plot.yAxis->setRange(-700, 700);
        PidRangeTracker tracker;
        QVERIFY(!tracker.rescaleValueAxis(plot.yAxis));
        QCOMPARE(plot.yAxis->range(), QCPRange(-700, 700));
        plot.addGraph()->addData(1.0, 10.0);
        tracker.follow(plot.graph(0), -9.0, 1.0, 10.0);
        plot.removeGraph(0);
        plot.addGraph()->addData(2.0, -3.0);
        tracker.follow(plot.graph(0), -8.0, 2.0, -3.0);
        double lo = 0, hi = 0;
        QVERIFY(tracker.valueRange(lo, hi) && lo == -3.0 && hi == -3.0);
    }
};

LARK_TEST_MAIN(TstPidRangeTracker)
#include "tst_pidrangetracker.moc"
