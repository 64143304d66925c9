#include "LarkTest.h"
#include "QtTabBar.h"

#include <QtTest>
#include <QToolButton>

class TstQtTabBar : public QObject
{
    Q_OBJECT

private slots:
    void clickingATabSignalsItsIndexAndSetCurrentIndexIsSilent()
    {
        QtTabBar bar;
        bar.setTabTitles({"串口调试助手", "摄像头调试助手", "网络调试助手"});
        QVERIFY(LarkTest::showExposed(&bar, {900, 30}));
        QList<QToolButton *> tabs = bar.findChildren<QToolButton *>();
        std::sort(tabs.begin(), tabs.end(), [](QToolButton *a, QToolButton *b) { return a->x() < b->x(); });
        QCOMPARE(bar.currentIndex(), 0);

        QSignalSpy spy(&bar, SIGNAL(signalClicked(int)));
        for (int i : {2, 1}) {
            QTest::mouseClick(tabs.at(i), Qt::LeftButton);
            QCOMPARE(spy.last().at(0).toInt(), i);
            QCOMPARE(bar.currentIndex(), i);
        }
        QVERIFY(!tabs.at(2)->isChecked()); // exclusive
        bar.setCurrentIndex(2);
        bar.setCurrentIndex(3); // no such tab
        bar.setCurrentIndex(-1);
        QCOMPARE(bar.currentIndex(), 2);
        QCOMPARE(spy.count(), 2);
    }
};

LARK_TEST_MAIN(TstQtTabBar)
#include "tst_qttabbar.moc"
