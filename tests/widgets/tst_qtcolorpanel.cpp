#include "ColorDisplay.h"
#include "ColorGridDisplay.h"
#include "ColorPanelGeometry.h"
#include "LarkTest.h"
#include "QtColorPanel.h"

#include <QtTest>

class TstQtColorPanel : public QObject
{
    Q_OBJECT
    std::unique_ptr<QtColorPanel> m_panel;

    static void clickCell(ColorGridDisplay *grid, int rows, int id)
    {
        QTest::mouseClick(grid, Qt::LeftButton, Qt::NoModifier, ColorPanelGeometry::cellRect(grid->size(), rows, 8, id).center());
    }

private slots:
    void init()
    {
        m_panel.reset(new QtColorPanel);
        QVERIFY(LarkTest::showExposed(m_panel.get()));
    }
    void cleanup() { m_panel.reset(); }

    // a click picks the swatch under it into the read-out; the title strip and the
    // gaps between cells pick nothing
    void clickOnBaseGrid_data()
    {
        QTest::addColumn<int>("target"); // the cell aimed at; -1 for the point given
        QTest::addColumn<QPoint>("point"); // x -1: the column right of cell 0
        QTest::addColumn<int>("picked");
        QTest::newRow("first cell") << 0 << QPoint() << 0;
        QTest::newRow("last cell") << 47 << QPoint() << 47;
        QTest::newRow("title strip") << -1 << QPoint(5, 10) << -1;
        QTest::newRow("gap after the first cell") << -1 << QPoint(-1, 30) << -1;
    }
    void clickOnBaseGrid()
    {
        QFETCH(int, target);
        QFETCH(QPoint, point);
        QFETCH(int, picked);
        ColorGridDisplay *grid = m_panel->baseGrid();
        if (target >= 0)
            point = ColorPanelGeometry::cellRect(grid->size(), 6, 8, target).center();
        else if (point.x() < 0)
            point.setX(ColorPanelGeometry::cellRect(grid->size(), 6, 8, 0).right() + 1);
        QSignalSpy spy(grid, SIGNAL(colorChanged(QColor)));
        QTest::mouseClick(grid, Qt::LeftButton, Qt::NoModifier, point);
        QCOMPARE(spy.count(), picked < 0 ? 0 : 1);
        QCOMPARE(grid->currentId(), qMax(picked, 0));
        QCOMPARE(m_panel->colorDisplay()->color(), QColor(picked < 0 ? "#ffffff" : QtColorPanel::strBaseColors.at(picked)));
    }

    // a custom cell takes the shown colour; both buttons confirm with it
    void addToCustomThenConfirm_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("confirm") << "确认";
        QTest::newRow("cancel") << "取消";
    }
    void addToCustomThenConfirm()
    {
        QFETCH(QString, text);
        ColorGridDisplay *custom = m_panel->customGrid();
        // picking the custom cell shows its white, so the base colour comes second
        m_panel->colorDisplay()->SltDisplayColor(QColor("#804040"));
        clickCell(custom, 2, 3);
        QCOMPARE(m_panel->colorDisplay()->color(), QColor(Qt::white));
        clickCell(m_panel->baseGrid(), 6, 13);
        LarkTest::click(m_panel.get(), "添加到自定义颜色(&A)");
        QVERIFY(custom->gridColor(3) == QColor("#0080c0") && custom->gridColor(2) == QColor(Qt::white));
        QSignalSpy spy(m_panel.get(), SIGNAL(signalClicke(int,QColor)));
        LarkTest::click(m_panel.get(), text);
        QCOMPARE(spy, (QList<QVariantList>{{1, QColor("#0080c0")}}));
    }
};

LARK_TEST_MAIN(TstQtColorPanel)
#include "tst_qtcolorpanel.moc"
