#include "LarkTest.h"
#include "QtNavigationBar.h"

#include <QSignalSpy>
#include <QTest>

namespace {
// a bar on screen, settled on its first item
struct ShownBar {
    QtNavigationBar bar;
    explicit ShownBar(const QString &items = "一;二二;三三三;四")
    {
        bar.setItems(items);
        bar.resize(500, 30);
        bar.show();
    }
    bool settle()
    {
        if (!QTest::qWaitForWindowExposed(&bar))
            return false;
        return QTest::qWaitFor([this] { return !bar.isSliding(); }, 5000);
    }
};
} // namespace

class TstQtNavigationBar : public QObject
{
    Q_OBJECT

private slots:
    void itemsDropEmptyParts_data()
    {
        QTest::addColumn<QString>("items");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("empty part") << "a;;b" << QStringList{"a", "b"};
        QTest::newRow("leading and trailing") << ";a;" << QStringList{"a"};
        QTest::newRow("nothing") << "" << QStringList{};
        QTest::newRow("only separators") << ";;;" << QStringList{};
    }

    void itemsDropEmptyParts()
    {
        QFETCH(QString, items);
        QFETCH(QStringList, names);
        QtNavigationBar bar;
        bar.setItems(items);
        QCOMPARE(bar.getItems(), items);
        QStringList got;
        for (int i = 0; i < bar.itemCount(); ++i)
            got << bar.itemName(i);
        QCOMPARE(got, names);
    }

    void initStepGrowsWithTheSquareRoot_data()
    {
        QTest::addColumn<int>("distance");
        QTest::addColumn<int>("step");
        QTest::newRow("negative") << -5 << 1;
        QTest::newRow("zero") << 0 << 1;
        QTest::newRow("one") << 1 << 2;
        QTest::newRow("three") << 3 << 2;
        QTest::newRow("four, a square") << 4 << 4;
        QTest::newRow("eight") << 8 << 4;
        QTest::newRow("nine") << 9 << 5;
        QTest::newRow("ninety-nine") << 99 << 14;
        QTest::newRow("hundred") << 100 << 15;
        QTest::newRow("thousand") << 1000 << 44;
    }

    void initStepGrowsWithTheSquareRoot()
    {
        QFETCH(int, distance);
        QFETCH(int, step);
        QCOMPARE(QtNavigationBar::initStep(distance), step);
    }

    void slideSlowsDownAndStopsExactlyOnTarget_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::newRow("forward") << 0.0 << 300.0;
        QTest::newRow("backward") << 300.0 << 75.0;
        QTest::newRow("same place") << 75.0 << 75.0;
        QTest::newRow("one pixel") << 10.0 << 11.0;
    }

    void slideSlowsDownAndStopsExactlyOnTarget()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        double pos = from;
        int step = QtNavigationBar::initStep(int(qAbs(to - from)));
        const bool forward = to > from;
        int lastStep = step;
        int ticks = 0;
        while (!QtNavigationBar::slideOnce(pos, step, to, forward)) {
            QVERIFY(step >= 1);
            QVERIFY(step <= lastStep);
            lastStep = step;
            QVERIFY(forward ? pos < to : pos > to);
            QVERIFY(++ticks < 1000);
        }
        QCOMPARE(pos, to);
    }

    void itemsShareTheSizeOfTheLongest()
    {
        ShownBar s;
        QVERIFY(s.settle());
        const QRectF first = s.bar.itemRect(0);
        QVERIFY(first.width() > s.bar.getSpace());
        for (int i = 0; i < s.bar.itemCount(); ++i) {
            const QRectF r = s.bar.itemRect(i);
            QCOMPARE(r.size(), QSizeF(first.width(), 30));
            QCOMPARE(r.x(), i * first.width());
        }

        s.bar.setHorizontal(false);
        s.bar.resize(80, 300);
        QVERIFY(s.settle());
        const QRectF v = s.bar.itemRect(1);
        QCOMPARE(v.x(), 0.0);
        QCOMPARE(v.width(), 80.0);
        QCOMPARE(v.y(), v.height());
    }

    void clickBesideTheItemsDoesNothing()
    {
        ShownBar s;
        QVERIFY(s.settle());
        QCOMPARE(s.bar.getCurrentIndex(), 0);
        const double end = s.bar.itemRect(s.bar.itemCount() - 1).right();
        QVERIFY(end < 480);
        QSignalSpy spy(&s.bar, SIGNAL(currentItemChanged(int, QString)));
        QTest::mouseClick(&s.bar, Qt::LeftButton, Qt::NoModifier, QPoint(490, 15));
        QCOMPARE(spy.count(), 0);
        QCOMPARE(s.bar.getCurrentIndex(), 0);
        QVERIFY(!s.bar.isSliding());
    }

    void clickOnAnItemSelectsItAndSlidesThere_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("third") << 2;
        QTest::newRow("last") << 3;
        QTest::newRow("the current one again") << 0;
    }

    void clickOnAnItemSelectsItAndSlidesThere()
    {
        QFETCH(int, index);
        ShownBar s;
        QVERIFY(s.settle());
        QSignalSpy spy(&s.bar, SIGNAL(currentItemChanged(int, QString)));
        const QPoint inside = s.bar.itemRect(index).center().toPoint();
        QTest::mouseClick(&s.bar, Qt::LeftButton, Qt::NoModifier, inside);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), index);
        QCOMPARE(spy.at(0).at(1).toString(), s.bar.itemName(index));
        QCOMPARE(s.bar.getCurrentIndex(), index);
        QCOMPARE(s.bar.getCurrentItem(), s.bar.itemName(index));
        QTRY_COMPARE(s.bar.barRect(), s.bar.itemRect(index));
        QTRY_VERIFY(!s.bar.isSliding());
    }

    void slideBackFromTheLastItem()
    {
        ShownBar s;
        QVERIFY(s.settle());
        s.bar.moveLast();
        QTRY_COMPARE(s.bar.barRect(), s.bar.itemRect(3));
        s.bar.moveTo(QString("二二"));
        QCOMPARE(s.bar.getCurrentIndex(), 1);
        QTRY_COMPARE(s.bar.barRect(), s.bar.itemRect(1));
    }

    void moveOperations_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<QString>("operation");
        QTest::addColumn<int>("expected");
        QTest::addColumn<int>("emitted");
        QTest::newRow("next") << 1 << "next" << 2 << 1;
        QTest::newRow("next at the end") << 3 << "next" << 3 << 0;
        QTest::newRow("previous") << 2 << "previous" << 1 << 1;
        QTest::newRow("previous at the start") << 0 << "previous" << 0 << 0;
        QTest::newRow("first") << 2 << "first" << 0 << 1;
        QTest::newRow("first when first") << 0 << "first" << 0 << 0;
        QTest::newRow("last") << 1 << "last" << 3 << 1;
        QTest::newRow("last when last") << 3 << "last" << 3 << 0;
        QTest::newRow("index out of range") << 1 << "to 9" << 1 << 0;
        QTest::newRow("unknown name") << 1 << "to name ?" << 1 << 0;
    }

    void moveOperations()
    {
        QFETCH(int, start);
        QFETCH(QString, operation);
        QFETCH(int, expected);
        QFETCH(int, emitted);
        ShownBar s;
        QVERIFY(s.settle());
        s.bar.setCurrentIndex(start);
        QCOMPARE(s.bar.getCurrentIndex(), start);
        QSignalSpy spy(&s.bar, SIGNAL(currentItemChanged(int, QString)));
        if (operation == "next")
            s.bar.moveNext();
        else if (operation == "previous")
            s.bar.movePrevious();
        else if (operation == "first")
            s.bar.moveFirst();
        else if (operation == "last")
            s.bar.moveLast();
        else if (operation == "to 9")
            s.bar.moveTo(9);
        else
            s.bar.moveTo(QString("?"));
        QCOMPARE(s.bar.getCurrentIndex(), expected);
        QCOMPARE(spy.count(), emitted);
    }

    void arrowKeysMoveOnlyWithKeyMove_data()
    {
        QTest::addColumn<bool>("keyMove");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("expected");
        const QList<int> rightDown{Qt::Key_Right, Qt::Key_Down};
        QTest::newRow("right and down") << true << rightDown << 2;
        QTest::newRow("past the end") << true << QList<int>{Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Down} << 3;
        QTest::newRow("back with left and up") << true << QList<int>{Qt::Key_Down, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up, Qt::Key_Up} << 0;
        QTest::newRow("other keys") << true << QList<int>{Qt::Key_Space, Qt::Key_Return} << 0;
        QTest::newRow("keyMove off") << false << rightDown << 0;
    }

    void arrowKeysMoveOnlyWithKeyMove()
    {
        QFETCH(bool, keyMove);
        QFETCH(QList<int>, keys);
        QFETCH(int, expected);
        ShownBar s;
        QVERIFY(s.settle());
        s.bar.setKeyMove(keyMove);
        QCOMPARE(s.bar.focusPolicy(), keyMove ? Qt::StrongFocus : Qt::NoFocus);
        for (int key : keys)
            QTest::keyClick(&s.bar, Qt::Key(key));
        QCOMPARE(s.bar.getCurrentIndex(), expected);
    }

    void flatMakesTheGradientsPlainAndBack()
    {
        QtNavigationBar bar;
        const QColor bgEnd = bar.getBgColorEnd();
        const QColor barEnd = bar.getBarColorEnd();
        QCOMPARE(bgEnd, QColor(78, 78, 78));
        QCOMPARE(barEnd, QColor(39, 110, 203));
        bar.setFlat(true);
        QVERIFY(bar.getFlat());
        QCOMPARE(bar.getBgColorEnd(), bar.getBgColorStart());
        QCOMPARE(bar.getBarColorEnd(), bar.getBarColorStart());
        bar.setFlat(false);
        QCOMPARE(bar.getBgColorEnd(), bgEnd);
        QCOMPARE(bar.getBarColorEnd(), barEnd);

        // an end colour set while flat is what flat off restores
        bar.setFlat(true);
        bar.setBgColorEnd(Qt::green);
        bar.setFlat(false);
        QCOMPARE(bar.getBgColorEnd(), QColor(Qt::green));
    }

    void propertiesHaveTheirDefaults()
    {
        QtNavigationBar bar;
        QCOMPARE(bar.property("currentIndex").toInt(), -1);
        QCOMPARE(bar.property("space").toInt(), 25);
        QCOMPARE(bar.property("lineWidth").toInt(), 3);
        QCOMPARE(bar.property("lineColor").value<QColor>(), QColor(255, 107, 107));
        QCOMPARE(bar.property("barStyle").value<QtNavigationBar::BarStyle>(), QtNavigationBar::BarStyle_Rect);
        QVERIFY(bar.property("horizontal").toBool());
        QVERIFY(!bar.property("keyMove").toBool());
        QVERIFY(bar.setProperty("barStyle", QVariant::fromValue(QtNavigationBar::BarStyle_Line_Bottom)));
        QCOMPARE(bar.getBarStyle(), QtNavigationBar::BarStyle_Line_Bottom);
        QCOMPARE(bar.sizeHint(), QSize(500, 30));
        QCOMPARE(bar.minimumSizeHint(), QSize(30, 30));
    }

    void everyBarStylePaints_data()
    {
        QTest::addColumn<int>("style");
        for (int i = 0; i <= 4; ++i)
            QTest::newRow(qPrintable(QString::number(i))) << i;
    }

    void everyBarStylePaints()
    {
        QFETCH(int, style);
        ShownBar s;
        QVERIFY(s.settle());
        s.bar.setBarStyle(QtNavigationBar::BarStyle(style));
        s.bar.setLineColor(QColor(0, 255, 0));
        s.bar.setLineWidth(4);
        const QImage img = s.bar.grab().toImage();
        const QRect bar = s.bar.barRect().toRect();
        // the line lies on the chosen edge of the bar; style 0 has none
        const QPoint probes[] = {bar.center(), QPoint(bar.center().x(), bar.top() + 1),
                                 QPoint(bar.right() - 1, bar.center().y()),
                                 QPoint(bar.center().x(), bar.bottom() - 1), QPoint(bar.left() + 1, bar.center().y())};
        const QColor green(0, 255, 0);
        if (style == 0) {
            QVERIFY(img.pixelColor(probes[1]) != green);
        } else {
            QCOMPARE(img.pixelColor(probes[style]), green);
        }
    }

    void clearItemEmptiesTheBar()
    {
        ShownBar s;
        QVERIFY(s.settle());
        s.bar.clearItem();
        QCOMPARE(s.bar.itemCount(), 0);
        QSignalSpy spy(&s.bar, SIGNAL(currentItemChanged(int, QString)));
        QTest::mouseClick(&s.bar, Qt::LeftButton, Qt::NoModifier, QPoint(5, 15));
        s.bar.resize(400, 30);
        QCOMPARE(spy.count(), 0);
    }
};

LARK_TEST_MAIN(TstQtNavigationBar)
#include "tst_qtnavigationbar.moc"
