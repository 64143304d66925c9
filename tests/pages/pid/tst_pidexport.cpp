#include "LarkTestCore.h"
#include "PidBoardFrame.h"
#include "PidExport.h"

#include <QtTest>

using Curve = QVector<double>;

class TstPidExport : public QObject
{
    Q_OBJECT
private slots:
    // The target curve sets the row count; the actual one is read at the same position,
    // bounded to its last point, an empty one reading 0.
    void pointsBecomeRowsOfActualTargetAndDifference_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<Curve>("target");
        QTest::addColumn<Curve>("actual");
        QTest::addColumn<QString>("rows");
        QTest::newRow("nothing at all") << 1 << Curve{} << Curve{} << "";
        QTest::newRow("both curves") << 2 << Curve{50, 50} << Curve{10, -4} << "1,10,50,-40\n2,-4,50,-54\n";
        QTest::newRow("six significant digits") << 5 << Curve{0.5, 200} << Curve{1234567, 1e-7}
                                                << "1,1.23457e+06,0.5,1.23457e+06\n2,1e-07,200,-200\n";
        QTest::newRow("actual without target: no rows") << 3 << Curve{} << Curve{1, 2} << "";
        QTest::newRow("short actual repeats its last") << 4 << Curve{1, 2, 3} << Curve{7} << "1,7,1,6\n2,7,2,5\n3,7,3,4\n";
        QTest::newRow("empty actual reads 0") << 1 << Curve{3} << Curve{} << "1,0,3,-3\n";
    }

    void pointsBecomeRowsOfActualTargetAndDifference()
    {
        QFETCH(int, channel);
        QFETCH(Curve, target);
        QFETCH(Curve, actual);
        QFETCH(QString, rows);
        PidExport exporter;
        exporter.setCurves(channel, target, actual);
        QStringList all{"", "", "", "", ""};
        all[channel - 1] = rows;
        QCOMPARE(exporter.text(), pidCsv(all));
    }

    void writeReplacesTheWholeFileAndRefusesAFolderThatIsNotThere()
    {
        QTemporaryDir dir;
        QFile old(dir.filePath("pid.csv"));
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write(QByteArray(4096, 'x')) == 4096);
        old.close();
        PidExport exporter;
        exporter.setCurves(1, {1}, {2});
        QVERIFY(exporter.write(old.fileName()));
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), pidCsv({"1,2,1,1\n"}));
        QVERIFY(!exporter.write(dir.filePath("missing/pid.csv")));
    }

    void aFullDiskOrAFolderGoneFailsAndKeepsTheOldFile()
    {
        LARK_VERIFY_DISK_FAULTS([](const QString &path) { return PidExport().write(path); });
    }
};

LARK_TEST_GUILESS_MAIN(TstPidExport)
#include "tst_pidexport.moc"
