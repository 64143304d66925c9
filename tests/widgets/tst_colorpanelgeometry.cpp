#include "ColorPanelGeometry.h"
#include "LarkTestCore.h"

#include <QtTest>

class TstColorPanelGeometry : public QObject
{
    Q_OBJECT
private slots:
    void hueAndSaturationFromPoint_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<int>("border");
        QTest::addColumn<double>("hue");
        QTest::addColumn<double>("saturation");
        QTest::newRow("top left") << QPoint(0, 0) << 0 << 0.0 << 100.0;
        QTest::newRow("outside, clamped") << QPoint(-20, 400) << 0 << 0.0 << 0.0;
        QTest::newRow("inside a border, clamped") << QPoint(3, 3) << 10 << 0.0 << 100.0;
        QTest::newRow("bordered centre") << QPoint(250, 175) << 10 << 180.0 << 50.0;
    }
    void hueAndSaturationFromPoint()
    {
        QFETCH(QPoint, point);
        QFETCH(int, border);
        const QPoint p = ColorPanelGeometry::clampPosition(point, QSize(500, 350), border);
        QTEST(ColorPanelGeometry::hueAt(p.x(), 500, border), "hue");
        QTEST(ColorPanelGeometry::saturationAt(p.y(), 350, border), "saturation");
    }

    // a bar of 200 pixels: handle 15 high, borders 2 and 2, travel 177; the colour's
    // row is one under the top and never past the last row
    void barPercentAndColourRowFromPoint_data()
    {
        QTest::addColumn<int>("y");
        QTest::addColumn<double>("percent");
        QTest::addColumn<int>("row");
        QTest::newRow("above the travel") << 0 << 100.0 << 1;
        QTest::newRow("top of the travel") << 7 << 100.0 << 1;
        QTest::newRow("middle") << 95 << (1 - 88.0 / 177) * 100 << 100;
        QTest::newRow("bottom of the travel") << 184 << 0.0 << 199;
        QTest::newRow("below the travel") << 199 << 0.0 << 199;
    }
    void barPercentAndColourRowFromPoint()
    {
        QFETCH(int, y);
        QFETCH(double, percent);
        QCOMPARE(ColorPanelGeometry::travelOf(200, 15, 2, 2), 177);
        QCOMPARE(ColorPanelGeometry::percentAt(y, 15, 177), percent);
        QTEST(ColorPanelGeometry::colorRow(percent, 200), "row");
    }

    // of the span, not of the distance from the minimum: 130 is half of 100 to 360
    void barValueAndPercentOfTheSpan_data()
    {
        QTest::addColumn<double>("minimum");
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("percent");
        QTest::newRow("no minimum") << 0.0 << 180.0 << 50.0;
        QTest::newRow("with a minimum") << 100.0 << 130.0 << 50.0;
    }
    void barValueAndPercentOfTheSpan()
    {
        QFETCH(double, minimum);
        QFETCH(double, value);
        QFETCH(double, percent);
        QCOMPARE(ColorPanelGeometry::percentOf(value, minimum, 360), percent);
        QCOMPARE(ColorPanelGeometry::valueAt(percent, minimum, 360), value);
    }
};

LARK_TEST_GUILESS_MAIN(TstColorPanelGeometry)
#include "tst_colorpanelgeometry.moc"
