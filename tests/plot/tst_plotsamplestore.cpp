#include "LarkTestCore.h"
#include "PlotSampleStore.h"

#include <cmath>

class tst_PlotSampleStore : public QObject
{
    Q_OBJECT
private slots:
    void theOldestRowsGoWhenTheCapIsReached()
    {
        PlotSampleStore store(16);
        PlotBatch batch;
        for (int i = 0; i < 40; ++i) {
            batch.clear();
            batch.add(0, i);
            batch.endRecord();
            store.append(i, batch);
        }
        QVERIFY(store.rows() <= 16);
        QCOMPARE(store.totalRows(), qint64(40));
        QCOMPARE(store.firstRow() + store.rows(), qint64(40));
        QCOMPARE(store.value(0, store.rows() - 1), 39.0);
        QCOMPARE(store.time(0), double(store.firstRow()));
    }

    // missing values, late channels and channels beyond sixteen; the records of one
    // read are spread up to its time
    void recordsKeepTheirPlacesAndTimes()
    {
        PlotSampleStore store;
        PlotBatch batch;
        batch.add(0, 1), batch.endRecord();
        batch.add(2, 5), batch.add(16, 9), batch.endRecord();
        store.append(0.5, batch);
        QVERIFY(store.rows() == 2 && store.channelCount() == 3 && store.ignoredValues() == 1);
        QVERIFY(std::isnan(store.value(2, 0)) && std::isnan(store.value(1, 1)) && std::isnan(store.value(0, 1)));
        QCOMPARE(store.value(2, 1), 5.0);
        batch.clear();
        for (int i = 0; i < 4; ++i)
            batch.add(0, i), batch.endRecord();
        store.append(1.0, 2.0, batch);
        QCOMPARE(store.times(), QVector<double>({0.5, 0.5, 1.25, 1.5, 1.75, 2.0}));
    }

    // small random values, every seventh row without one, and a high and a low spike
    // where a block of the summaries must be read; checked against every row covered.
    // A falling line makes the first kept row the highest: a summary still counting
    // dropped rows would show.
    void envelopesMatchTheRowsTheyCover_data()
    {
        QTest::addColumn<int>("capacity");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QVector<int>>("spikes");
        const int chunk = PlotSampleStore::ChunkRows;
        QTest::newRow("inside one block") << 1000 << 100 << 3 << 9 << QVector<int>{4, 8};
        QTest::newRow("only rows without a value") << 1000 << 100 << 7 << 8 << QVector<int>{};
        QTest::newRow("blocks at the start of a run") << 1000 << 1000 << 17 << 999 << QVector<int>{40, 300};
        QTest::newRow("blocks at the end of a run") << 4 * chunk << chunk + 1000 << 0 << chunk + 1000 << QVector<int>{chunk + 980, chunk + 700};
        QTest::newRow("across three chunks") << 4 * chunk << 3 * chunk << 4095 << 2 * chunk + 4097 << QVector<int>{5000, 2 * chunk + 4000};
        QTest::newRow("after the oldest rows went") << chunk + 100 << 3 * chunk << 0 << 3 * chunk << QVector<int>{-1};
    }
    void envelopesMatchTheRowsTheyCover()
    {
        QFETCH(int, capacity);
        QFETCH(int, rows);
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QVector<int>, spikes);
        PlotSampleStore store(capacity);
        PlotBatch batch;
        quint32 seed = 1;
        for (int r = 0; r < rows; ++r) {
            seed = seed * 1664525u + 1013904223u;
            if (spikes == QVector<int>{-1})
                batch.add(0, -r);
            else if (spikes.contains(r))
                batch.add(0, spikes.indexOf(r) ? -1e9 : 1e9);
            else if (r % 7)
                batch.add(0, int(seed >> 16));
            batch.endRecord();
            if (batch.records() == 1000 || r == rows - 1)
                store.append(r, batch), batch.clear();
        }
        to = qMin(to, store.rows());
        double low = qInf(), high = -qInf();
        for (int r = from; r < to; ++r) {
            if (!std::isnan(store.value(0, r)))
                low = qMin(low, store.value(0, r)), high = qMax(high, store.value(0, r));
        }
        const PlotSampleStore::Span span = store.envelope(0, from, to);
        QCOMPARE(span.isEmpty(), low > high);
        if (low <= high)
            QCOMPARE((QVector<double>{span.low, span.high}), (QVector<double>{low, high}));
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotSampleStore)
#include "tst_plotsamplestore.moc"
