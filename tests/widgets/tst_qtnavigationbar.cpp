#include "LarkTest.h"
#include "QtNavigationBar.h"

#include <QSignalSpy>
#include <QTest>

class TstQtNavigationBar : public QObject
{
    Q_OBJECT
    QtNavigationBar *bar = nullptr;

private slots:
    // a bar on screen, settled on its first item
    void init()
    {
        bar = new QtNavigationBar;
        bar->setItems("一;;二二;三三三;四"); // the empty part is dropped
        bar->resize(500, 30);
        bar->show();
        QVERIFY(QTest::qWaitForWindowExposed(bar));
        QVERIFY(QTest::qWaitFor([this] { return !bar->isSliding(); }, 5000));
        QCOMPARE(bar->itemCount(), 4);
        QCOMPARE(bar->getCurrentIndex(), 0);
    }
    void cleanup() { delete bar; }

    // a click on an item, between items (-1), or on the current one again
    void clickSelectsTheItem_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("third") << 2;
        QTest::newRow("the current one again") << 0;
        QTest::newRow("beside the items") << -1;
    }

    void clickSelectsTheItem()
    {
        QFETCH(int, index);
        QSignalSpy spy(bar, SIGNAL(currentItemChanged(int, QString)));
        const QPoint at = index < 0 ? QPoint(490, 15) : bar->itemRect(index).center().toPoint();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, at);
        QCOMPARE(spy.count(), index < 0 ? 0 : 1);
        QCOMPARE(bar->getCurrentItem(), bar->itemName(qMax(index, 0)));
        QTRY_COMPARE(bar->barRect(), bar->itemRect(qMax(index, 0)));
    }

    // operations in a word each: next, last, first, to9, key, or a key name
    void moveOperations_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<QString>("operations");
        QTest::addColumn<int>("expected");
        QTest::addColumn<int>("emitted");
        QTest::newRow("next") << 1 << "next" << 2 << 1;
        QTest::newRow("next at the end") << 3 << "next" << 3 << 0;
        QTest::newRow("first") << 2 << "first" << 0 << 1;
        QTest::newRow("last") << 1 << "last" << 3 << 1;
        QTest::newRow("index out of range") << 1 << "to9" << 1 << 0;
        QTest::newRow("arrow keys") << 0 << "key Right Down Right Down Left" << 2 << 4;
        QTest::newRow("up and other keys") << 1 << "key Up Up Space" << 0 << 1;
        QTest::newRow("arrow keys without keyMove") << 0 << "Right Down" << 0 << 0;
    }

    void moveOperations()
    {
        QFETCH(int, start);
        QFETCH(QString, operations);
        QFETCH(int, expected);
        QFETCH(int, emitted);
        bar->setCurrentIndex(start);
        QSignalSpy spy(bar, SIGNAL(currentItemChanged(int, QString)));
        const QMap<QString, Qt::Key> keys{
            {"Right", Qt::Key_Right}, {"Down", Qt::Key_Down}, {"Left", Qt::Key_Left}, {"Up", Qt::Key_Up}, {"Space", Qt::Key_Space}};
        for (const QString &op : operations.split(' ')) {
            op == "next" ? bar->moveNext() : op == "first" ? bar->moveFirst() : op == "last" ? bar->moveLast()
                : op == "to9" ? bar->moveTo(9) : op == "key" ? bar->setKeyMove(true) : QTest::keyClick(bar, keys.value(op));
        }
        QCOMPARE(bar->getCurrentIndex(), expected);
        QCOMPARE(spy.count(), emitted);
    }

    void clearItemEmptiesTheBar()
    {
        bar->clearItem();
        QCOMPARE(bar->itemCount(), 0);
        QSignalSpy spy(bar, SIGNAL(currentItemChanged(int, QString)));
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(5, 15));
        QCOMPARE(spy.count(), 0);
    }
};

LARK_TEST_MAIN(TstQtNavigationBar)
#include "tst_qtnavigationbar.moc"
