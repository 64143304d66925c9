#include "GraphConfigWidget.h"
#include "LarkTest.h"

#include <QSignalSpy>
#include <QTest>

class TstGraphConfigWidget : public QObject
{
    Q_OBJECT

    GraphConfigWidget *m_legend = nullptr;
    QSignalSpy *m_clicks = nullptr;

    void click(QPoint pos, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(m_legend, button, Qt::NoModifier, pos);
    }

private slots:
    void init()
    {
        m_legend = new GraphConfigWidget;
        m_legend->resize(500, 47);
        m_legend->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_legend));
        m_clicks = new QSignalSpy(m_legend, SIGNAL(signalGraphClicked(int,bool)));
    }

    void cleanup()
    {
        delete m_clicks;
        delete m_legend;
    }

    // entries are 70 wide from x 60, rows half the height; only CH1's two start shown
    void clicksToggleTheEntryUnderThePointer_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QPoint>("pos");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("graph"); // -1: nothing happens
        QTest::addColumn<bool>("checked");
        QTest::newRow("left of the entries") << 500 << QPoint(59, 10) << int(Qt::LeftButton) << -1 << false;
        QTest::newRow("left border of CH1") << 500 << QPoint(60, 10) << int(Qt::LeftButton) << 0 << false;
        QTest::newRow("CH2 target, right button") << 500 << QPoint(150, 5) << int(Qt::RightButton) << 1 << true;
        QTest::newRow("right border of CH5") << 500 << QPoint(409, 22) << int(Qt::LeftButton) << 4 << true;
        QTest::newRow("right of the entries") << 500 << QPoint(410, 10) << int(Qt::LeftButton) << -1 << false;
        QTest::newRow("wide widget, same place") << 1200 << QPoint(410, 10) << int(Qt::LeftButton) << -1 << false;
        QTest::newRow("CH3 actual") << 500 << QPoint(200, 23) << int(Qt::LeftButton) << 7 << true;
        QTest::newRow("odd height, last line") << 500 << QPoint(200, 46) << int(Qt::LeftButton) << -1 << false;
    }

    void clicksToggleTheEntryUnderThePointer()
    {
        QFETCH(int, width);
        QFETCH(QPoint, pos);
        QFETCH(int, button);
        QFETCH(int, graph);
        QFETCH(bool, checked);
        m_legend->resize(width, 47);
        click(pos, Qt::MouseButton(button));
        QCOMPARE(m_clicks->count(), graph < 0 ? 0 : 1);
        if (graph >= 0) {
            QCOMPARE(m_clicks->at(0), (QVariantList{graph, checked}));
            QCOMPARE(m_legend->isVisible(graph), checked);
        }
    }

    void lastShownCurveCannotBeHidden()
    {
        click(QPoint(80, 5));  // CH1 target off
        click(QPoint(80, 30)); // CH1 actual: refused, no signal
        QCOMPARE(m_clicks->count(), 1);
        QVERIFY(m_legend->isVisible(5));
        click(QPoint(80, 5));  // back on
        click(QPoint(80, 30)); // now allowed
        QCOMPARE(m_clicks->count(), 3);
        QVERIFY(!m_legend->isVisible(5) && m_legend->isVisible(0));
    }

    // the CH1 target line in its red (antialiased over two rows), right of its icon
    void paintingDrawsTheCurveColours()
    {
        const QImage img = m_legend->grab().toImage();
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
