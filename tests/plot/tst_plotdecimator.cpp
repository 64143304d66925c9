#include "LarkTestCore.h"
#include "PlotDecimator.h"
#include "PlotSampleStore.h"

#include <algorithm>
#include <cmath>

class tst_PlotDecimator : public QObject
{
    Q_OBJECT
private slots:
    // a sine at 1 kHz with one spike of a single sample at 0.5 s
    void theLineKeepsEverySampleOrEachColumnsExtremes_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<double>("t0");
        QTest::addColumn<double>("t1");
        QTest::addColumn<int>("rowLimit");
        QTest::newRow("few samples: every one") << 400 << 0.1 << 0.3 << 400;
        QTest::newRow("many samples: the spike stays") << 200000 << 0.0 << 200.0 << 200000;
        QTest::newRow("a range inside the recording") << 200000 << 0.45 << 120.0 << 200000;
        QTest::newRow("rows past a pause are not drawn") << 200000 << 0.0 << 200.0 << 100000;
    }
    void theLineKeepsEverySampleOrEachColumnsExtremes()
    {
        QFETCH(int, rows);
        QFETCH(double, t0);
        QFETCH(double, t1);
        QFETCH(int, rowLimit);
        const int columns = 1000;
        PlotSampleStore store;
        PlotBatch batch;
        for (int r = 0; r < rows; ++r)
            batch.add(0, r == 500 ? 1000 : std::sin(r * 0.01)), batch.endRecord();
        store.append(0.001, rows / 1000.0, batch);
        QVector<double> keys, values;
        PlotDecimator::points(store, 0, PlotDecimator::columnRows(store, t0, t1, columns, rowLimit), keys, values);

        // the rows drawn: those in the range, one beyond either end, none past the limit
        const int first = qMax(0, store.rowAtTime(t0) - 1);
        const int last = qMin(rowLimit, store.rowAtTime(t1) + 1);
        QVERIFY(std::is_sorted(keys.begin(), keys.end()));
        QCOMPARE(keys.first(), store.time(first));
        QCOMPARE(keys.last(), store.time(last - 1));
        if (last - first <= 2 * columns) {
            QCOMPARE(keys.size(), last - first);
            QCOMPARE(values.at(5), store.value(0, first + 5));
            return;
        }
        QVERIFY2(keys.size() <= 2 * (columns + 2), qPrintable(QString::number(keys.size())));
        double low = qInf(), high = -qInf();
        for (int r = first; r < last; ++r)
            low = qMin(low, store.value(0, r)), high = qMax(high, store.value(0, r));
        QCOMPARE(*std::min_element(values.begin(), values.end()), low);
        QCOMPARE(*std::max_element(values.begin(), values.end()), high);
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotDecimator)
#include "tst_plotdecimator.moc"
