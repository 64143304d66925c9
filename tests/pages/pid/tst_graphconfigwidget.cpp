#include "GraphConfigWidget.h"
#include "GraphItem.h"
#include "LarkTest.h"

#include <QSignalSpy>
#include <QTest>

class TstGraphConfigWidget : public QObject
{
    Q_OBJECT

private slots:
    void keysAndGraphIndexesMapBothWays()
    {
        for (int g = 0; g < 10; ++g)
            QCOMPARE(GraphConfigWidget::graphIndexFromKey(GraphConfigWidget::keyFromGraphIndex(g)), g);
        QCOMPARE(GraphConfigWidget::keyFromGraphIndex(0), 257);
        QCOMPARE(GraphConfigWidget::keyFromGraphIndex(4), 261);
        QCOMPARE(GraphConfigWidget::keyFromGraphIndex(5), 513);
        QCOMPARE(GraphConfigWidget::keyFromGraphIndex(9), 517);
    }

    void entriesStartWithTheirColoursAndOnlyChannelOneShown()
    {
        const char *colours[10] = {"#D9001B", "#bfbf00", "#00ffff", "#015478", "#c280ff",
                                   "#b8741a", "#70b603", "#02a7f0", "#0000bf", "#420080"};
        GraphConfigWidget w;
        for (int g = 0; g < 10; ++g) {
            QCOMPARE(w.getGraphColor(g), QColor(colours[g]));
            QCOMPARE(w.isVisible(g), g == 0 || g == 5);
            QCOMPARE(w.item(g)->text(), QString("CH%1").arg(g % 5 + 1));
        }
        QCOMPARE(w.getGraphColor(10), QColor("#ff0000"));
        QCOMPARE(w.isVisible(10), false);
        QCOMPARE(w.sizeHint(), QSize(500, 46));
    }

    void entryRectanglesFollowTheHeightNotTheWidth_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("graph");
        QTest::addColumn<QRect>("rect");
        QTest::newRow("first target") << QSize(500, 46) << 0 << QRect(60, 0, 70, 23);
        QTest::newRow("last target") << QSize(500, 46) << 4 << QRect(340, 0, 70, 23);
        QTest::newRow("second row") << QSize(500, 46) << 5 << QRect(60, 23, 70, 23);
        QTest::newRow("wide widget same place") << QSize(1200, 46) << 7 << QRect(200, 23, 70, 23);
        QTest::newRow("odd height") << QSize(500, 47) << 9 << QRect(340, 23, 70, 23);
    }

    void entryRectanglesFollowTheHeightNotTheWidth()
    {
        QFETCH(QSize, size);
        QFETCH(int, graph);
        QFETCH(QRect, rect);
        GraphConfigWidget w;
        w.resize(size);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QCOMPARE(w.item(graph)->rect(), rect);
    }

    void clicksToggleTheEntryUnderThePointer_data()
    {
        QTest::addColumn<QPoint>("pos");
        QTest::addColumn<int>("graph"); // -1: nothing happens
        QTest::addColumn<bool>("checked");
        QTest::newRow("left of the entries") << QPoint(59, 10) << -1 << false;
        QTest::newRow("left border of CH1") << QPoint(60, 10) << 0 << false;
        QTest::newRow("CH2 target") << QPoint(150, 5) << 1 << true;
        QTest::newRow("right border of CH5") << QPoint(409, 22) << 4 << true;
        QTest::newRow("right of the entries") << QPoint(410, 10) << -1 << false;
        QTest::newRow("CH3 actual") << QPoint(200, 23) << 7 << true;
        QTest::newRow("odd height last line") << QPoint(200, 46) << -1 << false;
    }

    void clicksToggleTheEntryUnderThePointer()
    {
        QFETCH(QPoint, pos);
        QFETCH(int, graph);
        QFETCH(bool, checked);
        GraphConfigWidget w;
        w.resize(500, 47);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QSignalSpy spy(&w, SIGNAL(signalGraphClicked(int,bool)));
        QTest::mouseClick(&w, Qt::LeftButton, Qt::NoModifier, pos);
        if (graph < 0) {
            QCOMPARE(spy.count(), 0);
            return;
        }
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), graph);
        QCOMPARE(spy.at(0).at(1).toBool(), checked);
        QCOMPARE(w.isVisible(graph), checked);
    }

    void anyButtonToggles()
    {
        GraphConfigWidget w;
        w.resize(500, 46);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QTest::mouseClick(&w, Qt::RightButton, Qt::NoModifier, QPoint(150, 5));
        QVERIFY(w.isVisible(1));
    }

    void lastShownCurveCannotBeHidden()
    {
        GraphConfigWidget w;
        w.resize(500, 46);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QSignalSpy spy(&w, SIGNAL(signalGraphClicked(int,bool)));
        QTest::mouseClick(&w, Qt::LeftButton, Qt::NoModifier, QPoint(80, 5)); // CH1 target off
        QCOMPARE(spy.count(), 1);
        QTest::mouseClick(&w, Qt::LeftButton, Qt::NoModifier, QPoint(80, 30)); // CH1 actual: refused
        QCOMPARE(spy.count(), 1);
        QVERIFY(w.isVisible(5));
        QVERIFY(w.hasVisibleGraph());
        QTest::mouseClick(&w, Qt::LeftButton, Qt::NoModifier, QPoint(80, 5)); // back on
        QTest::mouseClick(&w, Qt::LeftButton, Qt::NoModifier, QPoint(80, 30)); // now allowed
        QCOMPARE(spy.count(), 3);
        QVERIFY(!w.isVisible(5));
        QVERIFY(w.isVisible(0));
    }

    void paintingDrawsWithoutTouchingTheLayout()
    {
        GraphConfigWidget w;
        w.resize(500, 46);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        const QRect before = w.item(3)->rect();
        const QImage img = w.grab().toImage();
        QCOMPARE(img.size(), QSize(500, 46));
        QCOMPARE(w.item(3)->rect(), before);
        // the CH1 target line, in its red (antialiased over two rows), right of its
        // icon (23 wide from x 65)
        bool red = false;
        for (int y = 9; y <= 13; ++y) {
            const QColor c = img.pixelColor(65 + 22 + 6, y);
            red = red || (c.red() - c.green() > 0x40 && c.red() - c.blue() > 0x40);
        }
        QVERIFY(red);
    }
};

LARK_TEST_MAIN(TstGraphConfigWidget)
#include "tst_graphconfigwidget.moc"
