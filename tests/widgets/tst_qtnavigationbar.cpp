#include "LarkTest.h"
#include "QtNavigationBar.h"

#include <QKeySequence>
#include <QtTest>

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
        QVERIFY(LarkTest::showExposed(bar, {500, 30}) && QTest::qWaitFor([this] { return !bar->isSliding(); }, 5000));
        QCOMPARE(bar->itemCount(), 4);
        QCOMPARE(bar->getCurrentIndex(), 0);
    }
    void cleanup() { delete bar; }

    // operations in a word each: next, last, first, to9, key (turns keyMove on), clickN
    // on item N or beside the items (-1), or a key name; the bar ends on the chosen item
    void moveOperations_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<QString>("operations");
        QTest::addColumn<int>("expected");
        QTest::addColumn<int>("emitted");
        QTest::newRow("next") << 1 << "next" << 2 << 1;
        QTest::newRow("next at the end") << 3 << "next" << 3 << 0;
        QTest::newRow("index out of range") << 1 << "to9" << 1 << 0;
        QTest::newRow("arrow keys") << 0 << "key Right Down Right Down Left" << 2 << 4;
        QTest::newRow("click the third") << 0 << "click2" << 2 << 1;
        QTest::newRow("click the current one again") << 0 << "click0" << 0 << 1;
        QTest::newRow("click beside the items") << 0 << "click-1" << 0 << 0;
    }

    void moveOperations()
    {
        QFETCH(int, start);
        QFETCH(QString, operations);
        QFETCH(int, expected);
        bar->setCurrentIndex(start);
        QSignalSpy spy(bar, SIGNAL(currentItemChanged(int, QString)));
        for (const QString &op : operations.split(' ')) {
            const int item = op.mid(5).toInt();
            op.startsWith("click") ? QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                                                       item < 0 ? QPoint(490, 15) : bar->itemRect(item).center().toPoint())
            : op == "next" ? bar->moveNext() : op == "first" ? bar->moveFirst() : op == "last" ? bar->moveLast()
            : op == "to9" ? bar->moveTo(9) : op == "key" ? bar->setKeyMove(true) : QTest::keyClick(bar, Qt::Key(QKeySequence(op)[0]));
        }
        QCOMPARE(bar->getCurrentIndex(), expected);
        QTEST(spy.count(), "emitted");
        QCOMPARE(bar->getCurrentItem(), bar->itemName(expected));
        QTRY_COMPARE(bar->barRect(), bar->itemRect(expected));
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
