#include "LarkTest.h"
#include "QtMessageTip.h"
#include "QtPageBar.h"

#include <QtWidgets>
#include <QtTest>

class TstQtPageBar : public QObject
{
    Q_OBJECT
    QStringList log; // every signal of the bar, in the order it came

public slots: // not run as tests: they write the log
    void onChangePage(int page) { log << QString("change %1").arg(page); }
    void onAddPage(int count) { log << QString("add %1").arg(count); }
    void onDeletePage(int page, int count) { log << QString("delete %1 %2").arg(page).arg(count); }

private slots:
    // action: the page and count to start from, then a button, typed text or setPageIndex;
    // outcome: the signals, then current page, count label, maximum, the edit's text and the tip
    void operationsEmitInOrder_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("outcome");
        // the owner hears of the new current page before the deletion
        QTest::newRow("delete the last of five") << "5/5 btnDeletePage" << "change 4, delete 4 4 => 4 / 4 4 [4]";
        QTest::newRow("delete a middle page") << "2/5 btnDeletePage" << "delete 2 4 => 2 / 4 4 [2]";
        QTest::newRow("delete the only page does nothing") << "1/1 btnDeletePage" << " => 1 / 1 1 [1]";
        QTest::newRow("add") << "1/5 btnAddPage" << "add 6 => 1 / 6 6 [1]";
        QTest::newRow("add at the cap still signals") << "3/100 btnAddPage" << "add 100 => 3 / 100 100 [3]";
        QTest::newRow("next on the last") << "5/5 btnNextPage" << " => 5 / 5 5 [5]";
        QTest::newRow("last") << "2/100 btnLastPage" << "change 100 => 100 / 100 100 [100]";
        QTest::newRow("jump") << "1/5 type 3" << "change 3 => 3 / 5 5 [3]";
        QTest::newRow("the edit takes two digits only") << "1/100 type 123" << "change 12 => 12 / 100 100 [12]";
        // a refused jump keeps the page and leaves the wrong number visible
        QTest::newRow("jump to zero") << "2/5 type 0" << " => 2 / 5 5 [0] tip";
        QTest::newRow("jump past the count") << "2/5 type 9" << " => 2 / 5 5 [9] tip";
        // setPageIndex refuses a current page outside the count, silently
        QTest::newRow("set past the count") << "2/5 set 8 7" << " => 2 / 5 5 [2]";
        // the first and the last page are pages like the others
        QTest::newRow("type the last") << "1/5 type 5" << "change 5 => 5 / 5 5 [5]";
        QTest::newRow("next onto the last") << "4/5 btnNextPage" << "change 5 => 5 / 5 5 [5]";
        QTest::newRow("prev onto the first") << "2/5 btnPrevPage" << "change 1 => 1 / 5 5 [1]";
        QTest::newRow("type the first") << "3/5 type 1" << "change 1 => 1 / 5 5 [1]";
        QTest::newRow("delete the second last") << "4/5 btnDeletePage" << "delete 4 4 => 4 / 4 4 [4]";
    }

    void operationsEmitInOrder()
    {
        QFETCH(QString, action);
        QFETCH(QString, outcome);
        QtMessageTip::Instance()->hide();
        QtPageBar bar;
        bar.show();
        bar.setPageIndex(action.section('/', 0, 0).toInt(), action.section(' ', 0, 0).section('/', 1).toInt());
        action = action.section(' ', 1);
        log.clear();
        connect(&bar, SIGNAL(signalChangePage(int)), this, SLOT(onChangePage(int)));
        connect(&bar, SIGNAL(addPage(int)), this, SLOT(onAddPage(int)));
        connect(&bar, SIGNAL(deletePage(int,int)), this, SLOT(onDeletePage(int,int)));
        QLineEdit *edt = bar.findChild<QLineEdit *>("edtPage");
        if (action.startsWith("type ")) {
            edt->clear();
            QTest::keyClicks(edt, action.mid(5) + '\r');
        } else if (action.startsWith("set ")) {
            bar.setPageIndex(action.section(' ', 1, 1).toInt(), action.section(' ', 2, 2).toInt());
        } else {
            QTest::mouseClick(bar.findChild<QPushButton *>(action), Qt::LeftButton);
        }
        QCOMPARE(log.join(", ") + QString(" => %1 %2 %3 [%4]").arg(bar.currentPage())
                     .arg(bar.findChild<QLabel *>("labPageCount")->text()).arg(bar.maxPage()).arg(edt->text())
                     + (QtMessageTip::Instance()->isVisible() ? " tip" : ""),
                 outcome);
    }
};

LARK_TEST_MAIN(TstQtPageBar)
#include "tst_qtpagebar.moc"
