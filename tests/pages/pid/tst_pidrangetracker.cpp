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
        QTest::addColumn<int>("newGraphEvery"); // as a clear of the plot does
        QTest::newRow("noisy") << 2000 << 0 << 0;
        QTest::newRow("few distinct values") << 3 << 0 << 0;
        QTest::newRow("constant keeps the span") << 1 << 0 << 0;
        QTest::newRow("clock jumps back") << 50 << 97 << 0;
        QTest::newRow("graph replaced") << 60 << 0 << 333;
    }

    void axisEndsWhereTheLibraryRescaleWouldPutIt()
    {
        QFETCH(int, valueSpread);
        QFETCH(int, backJumpEvery);
        QFETCH(int, newGraphEvery);
        QCustomPlot reference, tracked;
        for (QCustomPlot *p : {&reference, &tracked}) {
            p->yAxis->setRange(-700, 700);
            p->addGraph();
        }
        PidRangeTracker tracker;
        QVERIFY(!tracker.rescaleValueAxis(tracked.yAxis)); // nothing followed: axis left alone
        QRandomGenerator rng(valueSpread);
        double t = 1000.0;
        for (int n = 1; n <= 6000; ++n) {
            t += rng.bounded(0, 4) * 0.004; // equal keys happen
            if (backJumpEvery && n % backJumpEvery == 0)
                t -= 30.0;
            const double v = valueSpread == 1 ? 42.0 : double(rng.bounded(valueSpread) - valueSpread / 2);
            for (QCustomPlot *p : {&reference, &tracked}) {
                if (newGraphEvery && n % newGraphEvery == 0) {
                    p->removeGraph(0);
                    p->addGraph();
                }
                p->graph(0)->data()->removeBefore(t - 10.0);
                p->graph(0)->addData(t, v);
            }
            reference.graph(0)->rescaleValueAxis(false, false);
            tracker.follow(tracked.graph(0), t - 10.0, t, v);
            QVERIFY(tracker.rescaleValueAxis(tracked.yAxis));
            QVERIFY2(reference.yAxis->range() == tracked.yAxis->range(), qPrintable(QString::number(n)));
        }
    }
};

LARK_TEST_MAIN(TstPidRangeTracker)
#include "tst_pidrangetracker.moc"
