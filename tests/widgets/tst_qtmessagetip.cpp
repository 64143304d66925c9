#include "LarkTest.h"
#include "QtMessageTip.h"

#include <QtTest>

// Timing is checked with a lower bound only: a hide that comes early is the fault
// looked for, a late one is just a slow machine.
class TstQtMessageTip : public QObject
{
    Q_OBJECT
    QtMessageTip *tip() { return QtMessageTip::Instance(); }

    // waits for the tip to hide and returns how long it was shown
    qint64 shownFor(const QElapsedTimer &since)
    {
        return QTest::qWaitFor([this] { return !tip()->isVisible(); }, 5000) ? since.elapsed() : -1;
    }

private slots:
    void init() { tip()->hide(); }
    void cleanup() { tip()->hide(); }

    void tipShowsForTwoSeconds()
    {
        tip()->ShowMessage(QString(), QPoint(300, 300)); // ignored
        QVERIFY(!tip()->isVisible());
        tip()->ShowMessage("当前设置超出范围！", QPoint(100, 200));
        QElapsedTimer shown;
        shown.start();
        QVERIFY(tip()->isVisible());
        QVERIFY(shownFor(shown) >= 1800);
    }

    // the first one's time must not run on into the toast that replaced it
    void aLaterToastShowsForItsFullTime_data()
    {
        QTest::addColumn<bool>("firstIsTip");
        QTest::newRow("after a toast") << false;
        QTest::newRow("after a tip") << true;
    }

    void aLaterToastShowsForItsFullTime()
    {
        QFETCH(bool, firstIsTip);
        firstIsTip ? tip()->ShowMessage("first", QPoint(0, 0)) : tip()->ShowToastMessage("first", 2000);
        QTest::qWait(500); // the first one would hide 1500 ms into the second
        tip()->ShowToastMessage("second", 2000);
        QElapsedTimer shown;
        shown.start();
        QCOMPARE(tip()->text(), QString("second"));
        QVERIFY(shownFor(shown) >= 1800);
    }

    // a time of 100 ms or less means no time: the toast stays until replaced
    void toastOfHundredMillisecondsStays()
    {
        tip()->ShowToastMessage("配置已恢复！", 100);
        QVERIFY(!QTest::qWaitFor([this] { return !tip()->isVisible(); }, 800));
    }
};

LARK_TEST_MAIN(TstQtMessageTip)
#include "tst_qtmessagetip.moc"
