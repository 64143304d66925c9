#include "LarkTestCore.h"
#include "PlotCsvWriter.h"
#include "PlotSampleStore.h"

#include <QtTest>

class tst_PlotCsvWriter : public QObject
{
    Q_OBJECT
private slots:
    // read back by python's csv module, the way a spreadsheet or a script would
    void theTableReadsBackWithEmptyCellsForMissingValues()
    {
        PlotSampleStore store;
        store.setNames({"温度", "a,b"});
        PlotBatch batch;
        batch.add(0, 21.5), batch.add(1, -1e-7), batch.endRecord();
        batch.add(1, 3), batch.endRecord();
        store.append(0.000123, batch);
        batch.clear();
        batch.add(0, 1.0 / 3), batch.endRecord();
        store.append(12.5, batch);
        QTemporaryDir dir;
        QString error, written;
        QVERIFY2(PlotCsvWriter::write(store, dir.filePath("rec"), &error, &written), qPrintable(error));
        QProcess py;
        py.start("python3", {"-c", "import csv,sys\nfor r in csv.reader(open(sys.argv[1], encoding='utf-8')): print('|'.join(r))", written});
        QVERIFY(py.waitForFinished(10000));
        QCOMPARE(QString::fromUtf8(py.readAllStandardOutput()),
                 QString("time_s|温度|a,b\n0.000123|21.5|-1e-07\n0.000123||3\n12.500000|0.3333333333333333|\n"));
        QVERIFY(!PlotCsvWriter::write(store, "/nonexistent-folder/x.csv", &error));
        QVERIFY(error.contains("/nonexistent-folder/x.csv")); // an unwritable place is named
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotCsvWriter)
#include "tst_plotcsvwriter.moc"
