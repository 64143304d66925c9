#include "ColorDisplay.h"
#include "ColorGridDisplay.h"
#include "ColorPanelBar.h"
#include "ColorPanelHSB.h"
#include "LarkTest.h"
#include "QtColorPanel.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

class TstQtColorPanel : public QObject
{
    Q_OBJECT
    std::unique_ptr<QtColorPanel> m_panel;

    static QLineEdit *hexEdit(ColorDisplay *display)
    {
        for (QLineEdit *edit : display->findChildren<QLineEdit *>())
            if (!edit->isReadOnly())
                return edit;
        return nullptr;
    }
    static bool near(const QColor &a, const QColor &b, int tolerance)
    {
        return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance
            && qAbs(a.blue() - b.blue()) <= tolerance;
    }
    QPushButton *button(const QString &text) const
    {
        for (QPushButton *b : m_panel->findChildren<QPushButton *>())
            if (b->text() == text)
                return b;
        return nullptr;
    }

private slots:
    void init()
    {
        m_panel.reset(new QtColorPanel);
        m_panel->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_panel.get()));
    }
    void cleanup() { m_panel.reset(); }

    void cellRectangles_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("id");
        QTest::addColumn<QRect>("rect");
        QTest::newRow("first of 2x8") << QSize(250, 90) << 2 << 0 << QRect(0, 26, 28, 30);
        QTest::newRow("last of 2x8") << QSize(250, 90) << 2 << 15 << QRect(217, 59, 28, 30);
        QTest::newRow("last of 6x8") << QSize(250, 250) << 6 << 47 << QRect(217, 211, 28, 34);
        QTest::newRow("second row of 6x8") << QSize(250, 250) << 6 << 9 << QRect(31, 63, 28, 34);
    }
    void cellRectangles()
    {
        QFETCH(QSize, size);
        QFETCH(int, rows);
        QFETCH(int, id);
        QFETCH(QRect, rect);
        QCOMPARE(ColorGridDisplay::cellRect(size, rows, 8, id), rect);
    }

    // a click picks the swatch under it, and the read-out shows its colour; the
    // title strip and the gaps between cells pick nothing
    void clickOnBaseGrid_data()
    {
        QTest::addColumn<int>("target"); // the cell aimed at, or -1 for the gap point
        QTest::addColumn<QPoint>("point"); // used when no cell is aimed at
        QTest::addColumn<int>("picked");
        QTest::newRow("first cell") << 0 << QPoint() << 0;
        QTest::newRow("second row") << 9 << QPoint() << 9;
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
            point = ColorGridDisplay::cellRect(grid->size(), 6, 8, target).center();
        else if (point.x() < 0) // the column just right of cell 0
            point.setX(ColorGridDisplay::cellRect(grid->size(), 6, 8, 0).right() + 1);
        QSignalSpy spy(grid, SIGNAL(colorChanged(QColor)));
        QTest::mouseClick(grid, Qt::LeftButton, Qt::NoModifier, point);
        QCOMPARE(spy.count(), picked < 0 ? 0 : 1);
        QCOMPARE(grid->currentId(), qMax(picked, 0));
        if (picked >= 0) {
            QCOMPARE(spy.at(0).at(0).value<QColor>(), QColor(QtColorPanel::strBaseColors.at(picked)));
            QCOMPARE(m_panel->colorDisplay()->color(), QColor(QtColorPanel::strBaseColors.at(picked)));
        }
    }

    void hueAndSaturationFromPoint_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<int>("border");
        QTest::addColumn<double>("hue");
        QTest::addColumn<double>("saturation");
        QTest::newRow("top left") << QPoint(0, 0) << 0 << 0.0 << 100.0;
        QTest::newRow("bottom right") << QPoint(500, 350) << 0 << 360.0 << 0.0;
        QTest::newRow("centre") << QPoint(250, 175) << 0 << 180.0 << 50.0;
        QTest::newRow("outside, clamped") << QPoint(-20, 400) << 0 << 0.0 << 0.0;
        QTest::newRow("inside a border, clamped") << QPoint(3, 3) << 10 << 0.0 << 100.0;
        QTest::newRow("bordered bottom right") << QPoint(500, 350) << 10 << 360.0 << 0.0;
        QTest::newRow("bordered centre") << QPoint(250, 175) << 10 << 180.0 << 50.0;
    }
    void hueAndSaturationFromPoint()
    {
        QFETCH(QPoint, point);
        QFETCH(int, border);
        QFETCH(double, hue);
        QFETCH(double, saturation);
        const QSize size(500, 350);
        const QPoint p = ColorPanelHSB::clampPosition(point, size, border);
        QCOMPARE(ColorPanelHSB::hueAt(p.x(), size.width(), border), hue);
        QCOMPARE(ColorPanelHSB::saturationAt(p.y(), size.height(), border), saturation);
    }

    // the field's colour comes from its own picture: pure hues at the top, white below
    void clickOnHueField_data()
    {
        QTest::addColumn<QPointF>("where"); // fractions of the field's size
        QTest::addColumn<QColor>("color");
        QTest::addColumn<bool>("grown"); // the picture follows a resize after showing
        QTest::newRow("top left: red") << QPointF(0, 0) << QColor(255, 0, 0) << false;
        QTest::newRow("top middle: cyan") << QPointF(0.5, 0) << QColor(0, 255, 255) << false;
        QTest::newRow("bottom: white") << QPointF(0.3, 1) << QColor(255, 255, 255) << false;
        QTest::newRow("top middle of a grown field") << QPointF(0.5, 0) << QColor(0, 255, 255) << true;
    }
    void clickOnHueField()
    {
        QFETCH(QPointF, where);
        QFETCH(QColor, color);
        QFETCH(bool, grown);
        ColorPanelHSB *field = m_panel->panelHSB();
        if (grown) {
            const int width = field->width();
            m_panel->resize(m_panel->width() + 300, m_panel->height());
            QTRY_VERIFY(field->width() > width);
        }
        QSignalSpy spy(field, SIGNAL(colorChanged(QColor)));
        // (0, 0) would mean the centre to QTest
        const QPoint point(qMax(1, int(where.x() * (field->width() - 1))), int(where.y() * (field->height() - 1)));
        QTest::mouseClick(field, Qt::LeftButton, Qt::NoModifier, point);
        QCOMPARE(spy.count(), 1);
        const QColor picked = spy.at(0).at(0).value<QColor>();
        QVERIFY2(near(picked, color, 8), qPrintable(picked.name()));
        QCOMPARE(field->getCursorPos(), point);
        QCOMPARE(m_panel->colorDisplay()->color(), picked);
    }

    void barPercentAndRow_data()
    {
        QTest::addColumn<int>("y");
        QTest::addColumn<double>("percent");
        // a bar of 200 pixels: handle 15 high, travel 200 - 15 - 2*2 - 2*2
        QTest::newRow("above the travel") << 0 << 100.0;
        QTest::newRow("top of the travel") << 7 << 100.0;
        QTest::newRow("two thirds up") << 66 << (1 - 59.0 / 177) * 100;
        QTest::newRow("bottom of the travel") << 184 << 0.0;
        QTest::newRow("below the travel") << 199 << 0.0;
    }
    void barPercentAndRow()
    {
        QFETCH(int, y);
        QFETCH(double, percent);
        const int travel = ColorPanelBar::travelOf(200, 200 / 13, 2, 2);
        QCOMPARE(travel, 177);
        QCOMPARE(ColorPanelBar::percentAt(y, 200 / 13, travel), percent);
        // the colour row for the percent: one under the top, never past the last row
        QCOMPARE(ColorPanelBar::colorRow(percent, 200), qMin(int(200 - percent * 2 + 1), 199));
    }

    void barClick_data()
    {
        QTest::addColumn<int>("y");
        QTest::addColumn<double>("percent");
        QTest::addColumn<double>("value");
        QTest::addColumn<QColor>("color");
        QTest::newRow("top: maximum, top colour") << 0 << 100.0 << 360.0 << QColor(255, 0, 0);
        QTest::newRow("bottom: minimum, bottom colour") << 199 << 0.0 << 0.0 << QColor(0, 0, 0);
        // row 200 - 49.72 * 2 + 1 = 100 of a red to black gradient
        QTest::newRow("middle") << 95 << (1 - 88.0 / 177) * 100 << (1 - 88.0 / 177) * 360 << QColor(127, 0, 0);
    }
    void barClick()
    {
        QFETCH(int, y);
        QFETCH(double, percent);
        QFETCH(double, value);
        QFETCH(QColor, color);
        ColorPanelBar bar;
        bar.resize(24, 200);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy spy(&bar, SIGNAL(colorChanged(QColor)));
        QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier, QPoint(12, y));
        QCOMPARE(spy.count(), 2); // press and release both pick
        QCOMPARE(bar.getPercent(), percent);
        QCOMPARE(bar.getValue(), value);
        QVERIFY2(near(bar.getColor(), color, 3), qPrintable(bar.getColor().name()));
        QVERIFY(!bar.getPressed());
    }

    void barValueAndPercent_data()
    {
        QTest::addColumn<double>("minimum");
        QTest::addColumn<QString>("setter");
        QTest::addColumn<double>("input");
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("percent");
        QTest::newRow("value in range") << 0.0 << "value" << 180.0 << 180.0 << 50.0;
        QTest::newRow("value above range ignored") << 0.0 << "value" << 400.0 << 360.0 << 100.0;
        QTest::newRow("value below range ignored") << 0.0 << "value" << -1.0 << 360.0 << 100.0;
        // percent is taken of the span, not of the distance from the minimum
        QTest::newRow("value with a minimum") << 100.0 << "value" << 130.0 << 130.0 << 50.0;
        QTest::newRow("percent") << 0.0 << "percent" << 25.0 << 90.0 << 25.0;
        QTest::newRow("percent with a minimum") << 100.0 << "percent" << 50.0 << 130.0 << 50.0;
    }
    void barValueAndPercent()
    {
        QFETCH(double, minimum);
        QFETCH(QString, setter);
        QFETCH(double, input);
        QFETCH(double, value);
        QFETCH(double, percent);
        ColorPanelBar bar;
        bar.setMinValue(minimum);
        if (setter == "value")
            bar.setValue(input);
        else
            bar.setPercent(input);
        QCOMPARE(bar.getValue(), value);
        QCOMPARE(bar.getPercent(), percent);
    }

    void displayShowsSixNumbers_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::addColumn<QStringList>("numbers");
        QTest::newRow("red") << QColor(255, 0, 0) << QStringList{"0", "255", "128", "255", "0", "0"};
        QTest::newRow("white has no hue") << QColor(255, 255, 255) << QStringList{"-1", "0", "255", "255", "255", "255"};
        QTest::newRow("green-ish") << QColor(0x12, 0xab, 0x34) << QStringList{"133", "206", "94", "18", "171", "52"};
    }
    void displayShowsSixNumbers()
    {
        QFETCH(QColor, color);
        QFETCH(QStringList, numbers);
        ColorDisplay *display = m_panel->colorDisplay();
        display->SltDisplayColor(color);
        QStringList shown;
        for (QLineEdit *edit : display->findChildren<QLineEdit *>())
            if (edit->isReadOnly())
                shown << edit->text();
        QCOMPARE(shown, numbers);
        QCOMPARE(hexEdit(display)->text(), color.name().toUpper());
    }

    // a typed entry applies when it names a colour and leaves the old one otherwise
    void hexEntry_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QColor>("color");
        QTest::addColumn<QString>("shown");
        QTest::newRow("lower case") << "#12ab34" << QColor(0x12, 0xab, 0x34) << "#12AB34";
        QTest::newRow("short form") << "#0f0" << QColor(0, 255, 0) << "#00FF00";
        QTest::newRow("nonsense") << "nonsense" << QColor("#804040") << "nonsense";
        QTest::newRow("five digits") << "#12ab3" << QColor("#804040") << "#12ab3";
        QTest::newRow("empty") << "" << QColor("#804040") << "";
    }
    void hexEntry()
    {
        QFETCH(QString, typed);
        QFETCH(QColor, color);
        QFETCH(QString, shown);
        ColorDisplay *display = m_panel->colorDisplay();
        display->SltDisplayColor(QColor("#804040"));
        QLineEdit *edit = hexEdit(display);
        edit->setFocus();
        QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, typed);
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(display->color(), color);
        QCOMPARE(edit->text(), shown);
    }

    // the grids and the hue field are checked above; the other two pickers feed the
    // read-out as well
    void customGridAndBarFeedTheReadOut_data()
    {
        QTest::addColumn<bool>("bar");
        QTest::newRow("custom grid") << false;
        QTest::newRow("value bar") << true;
    }
    void customGridAndBarFeedTheReadOut()
    {
        QFETCH(bool, bar);
        QWidget *picker = bar ? static_cast<QWidget *>(m_panel->panelBar()) : m_panel->customGrid();
        m_panel->colorDisplay()->SltDisplayColor(QColor("#804040"));
        QSignalSpy spy(picker, SIGNAL(colorChanged(QColor)));
        QTest::mouseClick(picker, Qt::LeftButton, Qt::NoModifier, QPoint(picker->width() / 2, picker->height() - 2));
        QVERIFY(!spy.isEmpty());
        QCOMPARE(m_panel->colorDisplay()->color(), spy.last().at(0).value<QColor>());
    }

    void addToCustomColours()
    {
        ColorGridDisplay *custom = m_panel->customGrid();
        // picking the custom cell shows its white, so the base colour comes second
        QTest::mouseClick(custom, Qt::LeftButton, Qt::NoModifier, ColorGridDisplay::cellRect(custom->size(), 2, 8, 3).center());
        QTest::mouseClick(m_panel->baseGrid(), Qt::LeftButton, Qt::NoModifier,
                          ColorGridDisplay::cellRect(m_panel->baseGrid()->size(), 6, 8, 8).center());
        QTest::mouseClick(button("添加到自定义颜色(&A)"), Qt::LeftButton);
        QCOMPARE(custom->gridColor(3), QColor("#ff0000"));
        QCOMPARE(custom->gridColor(2), QColor(Qt::white));
    }

    // both buttons confirm, with the colour the read-out shows
    void bothButtonsConfirm_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("confirm") << "确认";
        QTest::newRow("cancel") << "取消";
    }
    void bothButtonsConfirm()
    {
        QFETCH(QString, text);
        m_panel->colorDisplay()->SltDisplayColor(QColor("#0080c0"));
        QSignalSpy spy(m_panel.get(), SIGNAL(signalClicke(int,QColor)));
        QTest::mouseClick(button(text), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), 1);
        QCOMPARE(spy.at(0).at(1).value<QColor>(), QColor("#0080c0"));
    }
};

LARK_TEST_MAIN(TstQtColorPanel)
#include "tst_qtcolorpanel.moc"
