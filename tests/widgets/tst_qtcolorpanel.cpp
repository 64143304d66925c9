#include "ColorDisplay.h"
#include "ColorGridDisplay.h"
#include "ColorPanelGeometry.h"
#include "ColorPanelBar.h"
#include "LarkTest.h"
#include "QtColorPanel.h"

#include <QLineEdit>
#include <QtTest>

class TstQtColorPanel : public QObject
{
    Q_OBJECT
    std::unique_ptr<QtColorPanel> m_panel;

    static bool near(const QColor &a, const QColor &b, int tolerance)
    {
        return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance
            && qAbs(a.blue() - b.blue()) <= tolerance;
    }
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

    // a bar of 200 pixels: handle 200 / 13 = 15 high, travel 200 - 15 - 2 * 2 - 2 * 2;
    // a real click on the panel's bar at that height picks by the geometry's rule (whose
    // own table has the ends of the travel), the colour from the bar's picture down to its
    // last row
    void barFromPoint_data()
    {
        QTest::addColumn<int>("y");
        QTest::addColumn<double>("percent");
        QTest::addColumn<QColor>("color");
        QTest::newRow("middle") << 95 << (1 - 88.0 / 177) * 100 << QColor(127, 0, 0);
    }
    void barFromPoint()
    {
        QFETCH(int, y);
        QFETCH(QColor, color);
        ColorPanelBar *bar = m_panel->panelBar();
        bar->setFixedHeight(200);
        QTRY_COMPARE(bar->getTravel(), 177);
        QSignalSpy spy(bar, SIGNAL(colorChanged(QColor)));
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(bar->width() / 2, y));
        QCOMPARE(spy.count(), 2); // press and release both pick
        QTEST(bar->getPercent(), "percent");
        QCOMPARE(bar->getValue(), bar->getPercent() * 3.6);
        QVERIFY2(near(m_panel->colorDisplay()->color(), color, 3), qPrintable(bar->getColor().name()));
    }

    // a typed entry applies when it names a colour and leaves the old one otherwise;
    // the six numbers are HSL hue, saturation, lightness, then red, green, blue
    void typedEntry_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QStringList>("numbers");
        const QStringList old{"0", "85", "96", "128", "64", "64"}; // #804040
        QTest::newRow("white has no hue") << "#FFFFFF" << "#FFFFFF" << QStringList{"-1", "0", "255", "255", "255", "255"};
        QTest::newRow("short form") << "#0f0" << "#00FF00" << QStringList{"120", "255", "128", "0", "255", "0"};
        QTest::newRow("nonsense") << "nonsense" << "nonsense" << old;
    }
    void typedEntry()
    {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        ColorDisplay *display = m_panel->colorDisplay();
        display->SltDisplayColor(QColor("#804040"));
        // the read-out's edits: the typed entry first, then the six numbers
        QList<QLineEdit *> edits = display->findChildren<QLineEdit *>();
        std::stable_partition(edits.begin(), edits.end(), [](QLineEdit *e) { return !e->isReadOnly(); });
        edits[0]->clear();
        QTest::keyClicks(edits[0], typed);
        QTest::keyClick(edits[0], Qt::Key_Return);
        QCOMPARE(edits[0]->text(), shown);
        QStringList shownNumbers;
        for (int i = 1; i < edits.size(); ++i)
            shownNumbers << edits[i]->text();
        QTEST(shownNumbers, "numbers");
        QCOMPARE(display->color().name().toUpper(), QColor(shown).isValid() ? shown : QString("#804040"));
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
