#include "LarkTest.h"
#include "WaitingSpinnerWidget.h"

#include <QtTest>

class TstWaitingSpinnerWidget : public QObject
{
    Q_OBJECT

private slots:
    void timerIntervalIsOneStepOfOneRevolution_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<double>("revolutions");
        QTest::addColumn<int>("interval");
        QTest::newRow("defaults") << 20 << 1.5707963267948966 << 31;
        QTest::newRow("truncated, not rounded") << 3 << 1.0 << 333;
        QTest::newRow("zero speed keeps the last interval") << 0 << 0.0 << 31;
    }

    void timerIntervalIsOneStepOfOneRevolution()
    {
        QFETCH(int, lines);
        QFETCH(double, revolutions);
        QFETCH(int, interval);
        WaitingSpinnerWidget spinner;
        spinner.setNumberOfLines(lines);
        spinner.setRevolutionsPerSecond(revolutions);
        QCOMPARE(spinner.timerInterval(), interval);
    }

    void lineColourFadesAlongTheTrail_data()
    {
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("primary");
        QTest::addColumn<int>("total");
        QTest::addColumn<double>("fade");
        QTest::addColumn<double>("minOpacity");
        QTest::addColumn<double>("expected");
        const double pi = 3.141592653589793;
        // 20 lines at 80 %: threshold ceil(19 * 0.8) = 16, so 17 steps share the fade
        QTest::newRow("leading line keeps its colour") << 4 << 4 << 20 << 80.0 << pi << 1.0;
        QTest::newRow("ahead wraps to the threshold") << 4 << 0 << 20 << 80.0 << pi << 1.0 - 16 * (1.0 - pi / 100) / 17;
        QTest::newRow("past the threshold") << 4 << 1 << 20 << 80.0 << pi << pi / 100;
        // 11 lines at 50 %: threshold exactly 5, no rounding up
        QTest::newRow("exact threshold") << 0 << 5 << 11 << 50.0 << 15.0 << 1.0 - 5 * 0.85 / 6;
        QTest::newRow("one past exact threshold") << 0 << 6 << 11 << 50.0 << 15.0 << 0.15;
    }

    void lineColourFadesAlongTheTrail()
    {
        QFETCH(int, current);
        QFETCH(int, primary);
        QFETCH(int, total);
        QFETCH(double, fade);
        QFETCH(double, minOpacity);
        QFETCH(double, expected);
        const int distance = WaitingSpinnerWidget::lineCountDistanceFromPrimary(current, primary, total);
        const QColor base(10, 20, 30);
        const QColor c = WaitingSpinnerWidget::currentLineColor(distance, total, fade, minOpacity, base);
        QCOMPARE(c.rgb(), base.rgb());
        QVERIFY2(qAbs(c.alphaF() - expected) < 1e-3, qPrintable(QString::number(c.alphaF())));
    }

    void startDisablesTheParentAndTurns()
    {
        QWidget host;
        host.resize(200, 100);
        host.show();
        WaitingSpinnerWidget *spinner = new WaitingSpinnerWidget(&host, true, true);
        spinner->setRevolutionsPerSecond(5.0);
        spinner->start();
        QVERIFY(spinner->isVisible());
        QVERIFY(!host.isEnabled());
        QCOMPARE(spinner->pos(), QPoint(80, 30)); // centred with integer halves
        QTRY_VERIFY(spinner->currentCounter() > 0);
        spinner->setNumberOfLines(8);
        QCOMPARE(spinner->currentCounter(), 0);
        spinner->stop();
        QVERIFY(!spinner->isVisible());
        QVERIFY(host.isEnabled());
    }
};

LARK_TEST_MAIN(TstWaitingSpinnerWidget)
#include "tst_waitingspinnerwidget.moc"
