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
    void startsOnPageOneOfFive();
    void operationsEmitInOrder_data();
    void operationsEmitInOrder();
    void setPageIndexRefusesACurrentPageOutsideTheCount_data();
    void setPageIndexRefusesACurrentPageOutsideTheCount();
    void jumpOutOfRangeShowsTheTipUnderTheEdit();

private:
    static void act(QtPageBar *bar, const QString &action);
};

void TstQtPageBar::act(QtPageBar *bar, const QString &action)
{
    if (action.startsWith("type ")) {
        QLineEdit *edt = bar->findChild<QLineEdit *>("edtPage");
        edt->clear();
        QTest::keyClicks(edt, action.mid(5));
        QTest::keyClick(edt, Qt::Key_Return);
        return;
    }
    QPushButton *btn = bar->findChild<QPushButton *>(action);
    QVERIFY2(btn, qPrintable(action));
    QTest::mouseClick(btn, Qt::LeftButton);
}

void TstQtPageBar::startsOnPageOneOfFive()
{
    QtPageBar bar;
    QCOMPARE(bar.currentPage(), 1);
    QCOMPARE(bar.maxPage(), 5);
    QCOMPARE(bar.findChild<QLineEdit *>("edtPage")->text(), QString("1"));
    QCOMPARE(bar.findChild<QLabel *>("labPageCount")->text(), QString("/ 5"));
    const QStringList texts = {"添加一页", "删除当前页", "首页", "上一页", "下一页", "尾页"};
    for (const QString &t : texts) {
        bool found = false;
        for (QPushButton *b : bar.findChildren<QPushButton *>())
            found = found || b->text() == t;
        QVERIFY2(found, qPrintable(t));
    }
}

void TstQtPageBar::operationsEmitInOrder_data()
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
    QTest::newRow("delete a middle page")
        << 2 << 5 << "btnDeletePage" << QStringList{"delete 2 4"} << 2 << 4 << "2" << false;
    QTest::newRow("delete the only page does nothing")
        << 1 << 1 << "btnDeletePage" << QStringList() << 1 << 1 << "1" << false;
    QTest::newRow("add") << 1 << 5 << "btnAddPage" << QStringList{"add 6"} << 1 << 6 << "1" << false;
    QTest::newRow("add at the cap still signals")
        << 3 << 100 << "btnAddPage" << QStringList{"add 100"} << 3 << 100 << "3" << false;
    QTest::newRow("first") << 3 << 5 << "btnFirstPage" << QStringList{"change 1"} << 1 << 5 << "1" << false;
    QTest::newRow("first on the first") << 1 << 5 << "btnFirstPage" << QStringList() << 1 << 5 << "1" << false;
    QTest::newRow("previous") << 3 << 5 << "btnPrevPage" << QStringList{"change 2"} << 2 << 5 << "2" << false;
    QTest::newRow("previous on the first") << 1 << 5 << "btnPrevPage" << QStringList() << 1 << 5 << "1" << false;
    QTest::newRow("next") << 4 << 5 << "btnNextPage" << QStringList{"change 5"} << 5 << 5 << "5" << false;
    QTest::newRow("next on the last") << 5 << 5 << "btnNextPage" << QStringList() << 5 << 5 << "5" << false;
    QTest::newRow("next reaches page 100")
        << 99 << 100 << "btnNextPage" << QStringList{"change 100"} << 100 << 100 << "100" << false;
    QTest::newRow("last") << 2 << 100 << "btnLastPage" << QStringList{"change 100"} << 100 << 100 << "100" << false;
    QTest::newRow("last on the last") << 5 << 5 << "btnLastPage" << QStringList() << 5 << 5 << "5" << false;
    QTest::newRow("jump") << 1 << 5 << "type 3" << QStringList{"change 3"} << 3 << 5 << "3" << false;
    QTest::newRow("the edit takes two digits only")
        << 1 << 100 << "type 123" << QStringList{"change 12"} << 12 << 100 << "12" << false;
    // a refused jump keeps the page and leaves the wrong number visible
    QTest::newRow("jump to zero") << 2 << 5 << "type 0" << QStringList() << 2 << 5 << "0" << true;
    QTest::newRow("jump past the count") << 2 << 5 << "type 9" << QStringList() << 2 << 5 << "9" << true;
    // an empty edit is not acceptable input, so Return does not even reach the bar
    QTest::newRow("jump with an empty edit") << 2 << 5 << "type " << QStringList() << 2 << 5 << "" << false;
    QTest::newRow("letters are refused") << 2 << 5 << "type x" << QStringList() << 2 << 5 << "" << false;
}

void TstQtPageBar::operationsEmitInOrder()
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
    QSignalSpy spyChange(&bar, SIGNAL(signalChangePage(int)));
    QSignalSpy spyAdd(&bar, SIGNAL(addPage(int)));
    QSignalSpy spyDelete(&bar, SIGNAL(deletePage(int,int)));

    act(&bar, action);

    QCOMPARE(recorder.log, log);
    QCOMPARE(spyChange.count() + spyAdd.count() + spyDelete.count(), log.size());
    QCOMPARE(bar.currentPage(), newCurrent);
    QCOMPARE(bar.maxPage(), newCount);
    QCOMPARE(bar.findChild<QLineEdit *>("edtPage")->text(), edit);
    QCOMPARE(bar.findChild<QLabel *>("labPageCount")->text(), QString("/ %1").arg(newCount));
    QCOMPARE(QtMessageTip::Instance()->isVisible(), tip);
    QtMessageTip::Instance()->hide();
}

void TstQtPageBar::setPageIndexRefusesACurrentPageOutsideTheCount_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("taken");

    QTest::newRow("inside") << 3 << 7 << true;
    QTest::newRow("last") << 7 << 7 << true;
    QTest::newRow("past the count") << 8 << 7 << false;
    QTest::newRow("negative") << -1 << 7 << false;
}

void TstQtPageBar::setPageIndexRefusesACurrentPageOutsideTheCount()
{
    QFETCH(int, current);
    QFETCH(int, count);
    QFETCH(bool, taken);

    QtPageBar bar;
    PageBarRecorder recorder(&bar);
    bar.setPageIndex(current, count);
    QVERIFY(recorder.log.isEmpty());
    QCOMPARE(bar.currentPage(), taken ? current : 1);
    QCOMPARE(bar.maxPage(), taken ? count : 5);
    QCOMPARE(bar.findChild<QLineEdit *>("edtPage")->text(), QString::number(bar.currentPage()));
    QCOMPARE(bar.findChild<QLabel *>("labPageCount")->text(), QString("/ %1").arg(bar.maxPage()));
}

void TstQtPageBar::jumpOutOfRangeShowsTheTipUnderTheEdit()
{
    QtPageBar bar;
    bar.move(50, 60);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    QtMessageTip *tip = QtMessageTip::Instance();
    tip->hide();

    act(&bar, "type 0");

    QVERIFY(tip->isVisible());
    QCOMPARE(tip->text(), QString("当前设置超出范围！"));
    QCOMPARE(tip->mode(), int(QtMessageTip::ToolTip));
    QLineEdit *edt = bar.findChild<QLineEdit *>("edtPage");
    QCOMPARE(tip->pos(), edt->mapToGlobal(edt->rect().bottomLeft()));
    tip->hide();
}

LARK_TEST_MAIN(TstQtPageBar)
#include "tst_qtpagebar.moc"
