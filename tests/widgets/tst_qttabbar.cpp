#include "LarkTest.h"
#include "QtTabBar.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {
const QStringList kTitles{"串口调试助手", "摄像头调试助手", "网络调试助手", "PID调试助手", "二进制文件编辑器"};

QList<QToolButton *> tabs(QtTabBar *bar)
{
    QList<QToolButton *> list = bar->findChildren<QToolButton *>();
    std::sort(list.begin(), list.end(), [](QToolButton *a, QToolButton *b) { return a->x() < b->x(); });
    return list;
}
} // namespace

class TstQtTabBar : public QObject
{
    Q_OBJECT

private slots:
    void titlesBecomeCheckableTabsWithTheFirstChecked()
    {
        QtTabBar bar;
        bar.setTabTitles(kTitles);
        bar.resize(900, 30);
        bar.show();
        QStringList texts;
        for (QToolButton *btn : tabs(&bar)) {
            texts << btn->text();
            QVERIFY(btn->isCheckable());
            QCOMPARE(btn->cursor().shape(), Qt::PointingHandCursor);
        }
        QCOMPARE(texts, kTitles);
        QCOMPARE(bar.currentIndex(), 0);
        QVERIFY(tabs(&bar).first()->isChecked());
        QCOMPARE(bar.minimumHeight(), 26);
    }

    void clickingATabSignalsItsIndex_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < kTitles.size(); ++i)
            QTest::newRow(qPrintable(kTitles.at(i))) << i;
    }

    void clickingATabSignalsItsIndex()
    {
        QFETCH(int, index);
        QtTabBar bar;
        bar.setTabTitles(kTitles);
        bar.show();
        QSignalSpy spy(&bar, SIGNAL(signalClicked(int)));
        QTest::mouseClick(tabs(&bar).at(index), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), index);
        QCOMPARE(bar.currentIndex(), index);
        // exclusive: only the clicked tab is checked
        for (int i = 0; i < kTitles.size(); ++i)
            QCOMPARE(tabs(&bar).at(i)->isChecked(), i == index);
    }

    void setCurrentIndexChecksExistingTabsSilently_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("expected");
        QTest::newRow("existing") << 3 << 3;
        QTest::newRow("past the end") << 5 << 1;
        QTest::newRow("negative") << -1 << 1;
    }

    void setCurrentIndexChecksExistingTabsSilently()
    {
        QFETCH(int, index);
        QFETCH(int, expected);
        QtTabBar bar;
        bar.setTabTitles(kTitles);
        bar.setCurrentIndex(1);
        QSignalSpy spy(&bar, SIGNAL(signalClicked(int)));
        bar.setCurrentIndex(index);
        QCOMPARE(bar.currentIndex(), expected);
        QCOMPARE(spy.count(), 0);
    }

    void addedControlsSitAtTheRightEnd()
    {
        QtTabBar bar;
        // a widget added before the tabs still ends up right of them
        QPushButton *early = new QPushButton("早");
        bar.addWidget(early);
        bar.setTabTitles(kTitles);
        QHBoxLayout *menu = new QHBoxLayout;
        menu->setContentsMargins(0, 0, 0, 0);
        QPushButton *about = new QPushButton("关于...");
        menu->addWidget(about);
        bar.addLayout(menu);
        bar.resize(1400, 30);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));

        const QToolButton *last = tabs(&bar).last();
        // the stretch lies between the tabs and the added controls
        QVERIFY(early->x() > last->geometry().right() + 100);
        QVERIFY(about->x() > early->geometry().right());
        QCOMPARE(about->geometry().right(), bar.width() - 1);
        QCOMPARE(tabs(&bar).size(), kTitles.size());
    }
};

LARK_TEST_MAIN(TstQtTabBar)
#include "tst_qttabbar.moc"
