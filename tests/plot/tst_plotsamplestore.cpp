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
        QCOMPARE(store.name(1), QString("CH2"));
        batch.clear();
        for (int i = 0; i < 4; ++i)
            batch.add(0, i), batch.endRecord();
        store.append(1.0, 2.0, batch);
        QCOMPARE(store.times(), QVector<double>({0.5, 0.5, 1.25, 1.5, 1.75, 2.0}));
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotSampleStore)
#include "tst_plotsamplestore.moc"
