#include "LarkTestCore.h"
#include "PidExport.h"

#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

using Curve = QVector<double>;

class TstPidExport : public QObject
{
    Q_OBJECT

    // the expected file for these point lines of channels 1 to 5: GB18030, no BOM
    static QByteArray file(const QStringList &rows)
    {
        QString text = "PID调试数据\n";
        for (int n = 1; n <= 5; ++n)
            text += QString("通道 %1 数据如下：\n序号,实际值,目标值,差值\n").arg(n) + rows.value(n - 1) + "\n\n";
        return QTextCodec::codecForName("GB18030")->fromUnicode(text);
    }

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
        QCOMPARE(exporter.text(), file(all));
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
        QCOMPARE(old.readAll(), file({"1,2,1,1\n"}));
        QVERIFY(!exporter.write(dir.filePath("missing/pid.csv")));
    }

    void aFullDiskOrAFolderGoneFailsAndKeepsTheOldFile()
    {
        LARK_VERIFY_DISK_FAULTS([](const QString &path) { return PidExport().write(path); });
    }
};

LARK_TEST_GUILESS_MAIN(TstPidExport)
#include "tst_pidexport.moc"
