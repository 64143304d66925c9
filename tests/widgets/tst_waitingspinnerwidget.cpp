#include "LarkTest.h"
#include "WaitingSpinnerWidget.h"

#include <QtTest>

class TstWaitingSpinnerWidget : public QObject
{
    Q_OBJECT

private slots:
    void timerIntervalIsOneStepOfOneRevolution_data();
    void timerIntervalIsOneStepOfOneRevolution();
    void zeroSpeedKeepsTheLastInterval();
    void sizeFollowsRadiusAndLineLength_data();
    void sizeFollowsRadiusAndLineLength();
    void lineDistanceWrapsRoundTheRing_data();
    void lineDistanceWrapsRoundTheRing();
    void lineColourFadesAlongTheTrail_data();
    void lineColourFadesAlongTheTrail();
    void singleLineHasThresholdZeroAndOnlyDistanceZero();
    void roundnessIsClampedToPercent_data();
    void roundnessIsClampedToPercent();
    void startDisablesAndStopEnablesTheParent_data();
    void startDisablesAndStopEnablesTheParent();
    void spinnerTurnsAndNewLineCountRestartsTheCounter();
};

void TstWaitingSpinnerWidget::timerIntervalIsOneStepOfOneRevolution_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<double>("revolutions");
    QTest::addColumn<int>("interval");

    QTest::newRow("defaults") << 20 << 1.5707963267948966 << 31;
    QTest::newRow("wait dialog") << 17 << 1.0 << 58;
    QTest::newRow("truncated, not rounded") << 3 << 1.0 << 333;
    QTest::newRow("slow single line") << 1 << 0.5 << 2000;
}

void TstWaitingSpinnerWidget::timerIntervalIsOneStepOfOneRevolution()
{
    QFETCH(int, lines);
    QFETCH(double, revolutions);
    QFETCH(int, interval);

    WaitingSpinnerWidget spinner;
    spinner.setNumberOfLines(lines);
    spinner.setRevolutionsPerSecond(revolutions);
    QCOMPARE(spinner.timerInterval(), interval);
}

void TstWaitingSpinnerWidget::zeroSpeedKeepsTheLastInterval()
{
    WaitingSpinnerWidget spinner;
    spinner.setNumberOfLines(10);
    spinner.setRevolutionsPerSecond(2.0);
    QCOMPARE(spinner.timerInterval(), 50);
    spinner.setRevolutionsPerSecond(0.0);
    spinner.setNumberOfLines(0);
    QCOMPARE(spinner.timerInterval(), 50);
}

void TstWaitingSpinnerWidget::sizeFollowsRadiusAndLineLength_data()
{
    QTest::addColumn<int>("innerRadius");
    QTest::addColumn<int>("lineLength");
    QTest::addColumn<int>("lineWidth");
    QTest::addColumn<int>("side");

    QTest::newRow("defaults") << 10 << 10 << 2 << 40;
    QTest::newRow("wait dialog") << 13 << 13 << 4 << 52;
    QTest::newRow("width does not count") << 5 << 7 << 30 << 24;
}

void TstWaitingSpinnerWidget::sizeFollowsRadiusAndLineLength()
{
    QFETCH(int, innerRadius);
    QFETCH(int, lineLength);
    QFETCH(int, lineWidth);
    QFETCH(int, side);

    WaitingSpinnerWidget spinner;
    spinner.setInnerRadius(innerRadius);
    spinner.setLineLength(lineLength);
    spinner.setLineWidth(lineWidth);
    QCOMPARE(spinner.size(), QSize(side, side));
    QCOMPARE(spinner.minimumSize(), spinner.maximumSize());
}

void TstWaitingSpinnerWidget::lineDistanceWrapsRoundTheRing_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("primary");
    QTest::addColumn<int>("total");
    QTest::addColumn<int>("distance");

    QTest::newRow("leading line") << 4 << 4 << 20 << 0;
    QTest::newRow("behind") << 3 << 5 << 20 << 2;
    QTest::newRow("ahead wraps") << 5 << 3 << 20 << 18;
    QTest::newRow("last line behind first") << 19 << 0 << 20 << 1;
    QTest::newRow("single line") << 0 << 0 << 1 << 0;
}

void TstWaitingSpinnerWidget::lineDistanceWrapsRoundTheRing()
{
    QFETCH(int, current);
    QFETCH(int, primary);
    QFETCH(int, total);
    QFETCH(int, distance);
    QCOMPARE(WaitingSpinnerWidget::lineCountDistanceFromPrimary(current, primary, total), distance);
}

void TstWaitingSpinnerWidget::lineColourFadesAlongTheTrail_data()
{
    QTest::addColumn<int>("distance");
    QTest::addColumn<int>("total");
    QTest::addColumn<double>("fade");
    QTest::addColumn<double>("minOpacity");
    QTest::addColumn<double>("alpha");
    QTest::addColumn<double>("expected");

    const double pi = 3.141592653589793;
    // 20 lines at 80 %: threshold ceil(19 * 0.8) = 16, so 17 steps share the fade
    QTest::newRow("leading line keeps its colour") << 0 << 20 << 80.0 << pi << 1.0 << 1.0;
    QTest::newRow("leading line keeps its alpha") << 0 << 20 << 80.0 << pi << 0.5 << 0.5;
    QTest::newRow("one step") << 1 << 20 << 80.0 << pi << 1.0 << 1.0 - (1.0 - pi / 100) / 17;
    QTest::newRow("at the threshold") << 16 << 20 << 80.0 << pi << 1.0 << 1.0 - 16 * (1.0 - pi / 100) / 17;
    QTest::newRow("past the threshold") << 17 << 20 << 80.0 << pi << 1.0 << pi / 100;
    // 11 lines at 50 %: threshold exactly 5, no rounding up
    QTest::newRow("exact threshold") << 5 << 11 << 50.0 << 15.0 << 1.0 << 1.0 - 5 * 0.85 / 6;
    QTest::newRow("one past exact threshold") << 6 << 11 << 50.0 << 15.0 << 1.0 << 0.15;
    // a colour fainter than the minimum brightens along the trail
    QTest::newRow("faint colour") << 2 << 5 << 100.0 << 50.0 << 0.2 << 0.2 + 2 * 0.3 / 5;
    QTest::newRow("minimum above hundred percent is full") << 9 << 10 << 10.0 << 300.0 << 1.0 << 1.0;
}

void TstWaitingSpinnerWidget::lineColourFadesAlongTheTrail()
{
    QFETCH(int, distance);
    QFETCH(int, total);
    QFETCH(double, fade);
    QFETCH(double, minOpacity);
    QFETCH(double, alpha);
    QFETCH(double, expected);

    QColor base(10, 20, 30);
    base.setAlphaF(alpha);
    const QColor c = WaitingSpinnerWidget::currentLineColor(distance, total, fade, minOpacity, base);
    QCOMPARE(c.rgb(), base.rgb());
    QVERIFY2(qAbs(c.alphaF() - expected) < 1e-3,
             qPrintable(QString("alpha %1, expected %2").arg(c.alphaF()).arg(expected)));
}

void TstWaitingSpinnerWidget::singleLineHasThresholdZeroAndOnlyDistanceZero()
{
    // with one line the counter always wraps to 0, so the one line is the leading one
    QCOMPARE(WaitingSpinnerWidget::lineCountDistanceFromPrimary(0, 0, 1), 0);
    const QColor c(Qt::red);
    QCOMPARE(WaitingSpinnerWidget::currentLineColor(0, 1, 80.0, 3.14, c), c);
    // threshold 0: distance 1 would already be beyond the trail
    QVERIFY(qAbs(WaitingSpinnerWidget::currentLineColor(1, 1, 80.0, 20.0, c).alphaF() - 0.2) < 1e-3);
}

void TstWaitingSpinnerWidget::roundnessIsClampedToPercent_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("kept");
    QTest::newRow("negative") << -5.0 << 0.0;
    QTest::newRow("inside") << 70.0 << 70.0;
    QTest::newRow("above") << 150.0 << 100.0;
}

void TstWaitingSpinnerWidget::roundnessIsClampedToPercent()
{
    QFETCH(double, given);
    QFETCH(double, kept);
    WaitingSpinnerWidget spinner;
    spinner.setRoundness(given);
    QCOMPARE(spinner.roundness(), kept);
}

void TstWaitingSpinnerWidget::startDisablesAndStopEnablesTheParent_data()
{
    QTest::addColumn<bool>("disableParent");
    QTest::newRow("disabling") << true;
    QTest::newRow("not disabling") << false;
}

void TstWaitingSpinnerWidget::startDisablesAndStopEnablesTheParent()
{
    QFETCH(bool, disableParent);

    QWidget host;
    host.resize(200, 100);
    host.show();
    WaitingSpinnerWidget *spinner = new WaitingSpinnerWidget(&host, true, disableParent);
    QVERIFY(!spinner->isVisible());

    spinner->start();
    QVERIFY(spinner->isSpinning());
    QVERIFY(spinner->isVisible());
    QCOMPARE(host.isEnabled(), !disableParent);
    // centred with integer halves: 100 - 20, 50 - 20
    QCOMPARE(spinner->pos(), QPoint(80, 30));

    spinner->stop();
    QVERIFY(!spinner->isSpinning());
    QVERIFY(!spinner->isVisible());
    QVERIFY(host.isEnabled());
}

void TstWaitingSpinnerWidget::spinnerTurnsAndNewLineCountRestartsTheCounter()
{
    QWidget host;
    host.resize(100, 100);
    host.show();
    WaitingSpinnerWidget *spinner = new WaitingSpinnerWidget(&host);
    spinner->setRevolutionsPerSecond(5.0);
    spinner->start();
    QTRY_VERIFY(spinner->currentCounter() > 0);

    spinner->setNumberOfLines(8);
    QCOMPARE(spinner->currentCounter(), 0);
    QCOMPARE(spinner->timerInterval(), 25);

    spinner->stop();
    QCOMPARE(spinner->currentCounter(), 0);
}

LARK_TEST_MAIN(TstWaitingSpinnerWidget)
#include "tst_waitingspinnerwidget.moc"
