#include "LarkTest.h"
#include "QtMessageTip.h"
#include "QtPageBar.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

// Writes every signal of the bar into one log, so that their order can be checked.
class PageBarRecorder : public QObject
{
    Q_OBJECT
public:
    explicit PageBarRecorder(QtPageBar *bar)
    {
        connect(bar, SIGNAL(signalChangePage(int)), this, SLOT(onChangePage(int)));
        connect(bar, SIGNAL(addPage(int)), this, SLOT(onAddPage(int)));
        connect(bar, SIGNAL(deletePage(int,int)), this, SLOT(onDeletePage(int,int)));
    }
    QStringList log;

private slots:
    void onChangePage(int page) { log << QString("change %1").arg(page); }
    void onAddPage(int count) { log << QString("add %1").arg(count); }
    void onDeletePage(int page, int count) { log << QString("delete %1 %2").arg(page).arg(count); }
};

class TstQtPageBar : public QObject
{
    Q_OBJECT

private slots:
    void operationsEmitInOrder_data()
    {
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<int>("newCurrent");
        QTest::addColumn<int>("newCount");
        QTest::addColumn<QString>("edit");
        QTest::addColumn<bool>("tip");
        // the owner hears of the new current page before the deletion
        QTest::newRow("delete the last of five")
            << 5 << 5 << "btnDeletePage" << QStringList{"change 4", "delete 4 4"} << 4 << 4 << "4" << false;
        QTest::newRow("delete a middle page") << 2 << 5 << "btnDeletePage" << QStringList{"delete 2 4"} << 2 << 4 << "2" << false;
        QTest::newRow("delete the only page does nothing") << 1 << 1 << "btnDeletePage" << QStringList() << 1 << 1 << "1" << false;
        QTest::newRow("add") << 1 << 5 << "btnAddPage" << QStringList{"add 6"} << 1 << 6 << "1" << false;
        QTest::newRow("add at the cap still signals") << 3 << 100 << "btnAddPage" << QStringList{"add 100"} << 3 << 100 << "3" << false;
        QTest::newRow("next on the last") << 5 << 5 << "btnNextPage" << QStringList() << 5 << 5 << "5" << false;
        QTest::newRow("last") << 2 << 100 << "btnLastPage" << QStringList{"change 100"} << 100 << 100 << "100" << false;
        QTest::newRow("jump") << 1 << 5 << "type 3" << QStringList{"change 3"} << 3 << 5 << "3" << false;
        QTest::newRow("the edit takes two digits only") << 1 << 100 << "type 123" << QStringList{"change 12"} << 12 << 100 << "12" << false;
        // a refused jump keeps the page and leaves the wrong number visible
        QTest::newRow("jump to zero") << 2 << 5 << "type 0" << QStringList() << 2 << 5 << "0" << true;
        QTest::newRow("jump past the count") << 2 << 5 << "type 9" << QStringList() << 2 << 5 << "9" << true;
        // setPageIndex refuses a current page outside the count, silently
        QTest::newRow("set past the count") << 2 << 5 << "set 8 7" << QStringList() << 2 << 5 << "2" << false;
    }

    void operationsEmitInOrder()
    {
        QFETCH(int, current);
        QFETCH(int, count);
        QFETCH(QString, action);
        QFETCH(QStringList, log);
        QFETCH(int, newCurrent);
        QFETCH(int, newCount);
        QFETCH(QString, edit);
        QFETCH(bool, tip);

        QtMessageTip::Instance()->hide();
        QtPageBar bar;
        bar.show();
        bar.setPageIndex(current, count);
        PageBarRecorder recorder(&bar);
        QLineEdit *edt = bar.findChild<QLineEdit *>("edtPage");
        if (action.startsWith("type ")) {
            edt->clear();
            QTest::keyClicks(edt, action.mid(5));
            QTest::keyClick(edt, Qt::Key_Return);
        } else if (action.startsWith("set ")) {
            bar.setPageIndex(action.section(' ', 1, 1).toInt(), action.section(' ', 2, 2).toInt());
        } else {
            QPushButton *btn = bar.findChild<QPushButton *>(action);
            QVERIFY2(btn, qPrintable(action));
            QTest::mouseClick(btn, Qt::LeftButton);
        }
        QCOMPARE(recorder.log, log);
        QCOMPARE(bar.currentPage(), newCurrent);
        QCOMPARE(bar.maxPage(), newCount);
        QCOMPARE(edt->text(), edit);
        QCOMPARE(bar.findChild<QLabel *>("labPageCount")->text(), QString("/ %1").arg(newCount));
        QCOMPARE(QtMessageTip::Instance()->isVisible(), tip);
        QtMessageTip::Instance()->hide();
    }
};

LARK_TEST_MAIN(TstQtPageBar)
#include "tst_qtpagebar.moc"
