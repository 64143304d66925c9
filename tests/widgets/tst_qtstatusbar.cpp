#include "LarkTest.h"
#include "QtCountLabel.h"

#include <QTest>

class TstQtStatusBar : public QObject
{
    Q_OBJECT
private slots:
    // Counts refreshed with every read of a busy link repaint far less often than they
    // change, yet the last counts always reach the screen.
    void aBurstOfCountsRepaintsSeldomButEndsOnTheLast()
    {
        QtCountLabel label;
        QVERIFY(LarkTest::showExposed(&label, {400, 28}));
        LarkTest::PaintCounter counter(&label);
        QStringList painted; // the counts shown by the latest paint
        counter.onPaint = [&] { painted = label.counts(); };
        QTest::qWait(100); // the label has been quiet
        for (int i = 1; i <= 200; ++i) {
            label.setCounts({QString("接收字节: %1").arg(i)});
            QCoreApplication::processEvents();
        }
        const int during = counter.count;
        QVERIFY2(during < 20, qPrintable(QString::number(during)));
        QCOMPARE(label.counts(), QStringList{"接收字节: 200"});
        // the due repaint comes, with the last counts
        QTRY_COMPARE(painted, QStringList{"接收字节: 200"});
    }
};

LARK_TEST_MAIN(TstQtStatusBar)
#include "tst_qtstatusbar.moc"
