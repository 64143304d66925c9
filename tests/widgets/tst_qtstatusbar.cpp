#include "LarkTest.h"
#include "QtCountLabel.h"
#include "QtRollSubtitlesWidget.h"
#include "QtStatusBar.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class TstQtStatusBar : public QObject
{
    Q_OBJECT

private slots:
    void notifyLevelChoosesTheColour_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("shownText");
        QTest::addColumn<QString>("colour");
        QTest::newRow("error") << "串口打开失败" << 255 << "串口打开失败" << "#ff0000";
        QTest::newRow("level 1 is normal") << "已连接" << 1 << "已连接" << "#0F2026";
        QTest::newRow("level 254 is normal") << "x" << 254 << "x" << "#0F2026";
        // an empty text keeps the old message but the colour changes already
        QTest::newRow("empty error") << "" << 255 << "之前" << "#ff0000";
        QTest::newRow("empty normal") << "" << 0 << "之前" << "#0F2026";
    }

    void notifyLevelChoosesTheColour()
    {
        QFETCH(QString, text);
        QFETCH(int, level);
        QFETCH(QString, shownText);
        QFETCH(QString, colour);
        QtStatusBar bar;
        // start from the other colour so that every row shows a change
        bar.showSystemNotify("之前", colour == "#ff0000" ? 0 : 255);
        bar.showSystemNotify(text, level);
        QCOMPARE(bar.notifyWidget()->text(), shownText);
        QCOMPARE(bar.notifyWidget()->textColor(), colour);
        bar.notifyWidget()->setTextColor("nonsense");
        QCOMPARE(bar.notifyWidget()->textColor(), colour);
    }

    void clearButtonFollowsTheCountsAndSignals()
    {
        QtStatusBar bar;
        bar.resize(800, 28);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        bar.setLabelCounts(QStringList());
        QVERIFY(bar.clearButton()->isHidden());
        const QStringList camera{"帧编号: 3", "接收速率: 1.00 KB", "接收帧率: 2 FPS"};
        bar.setLabelCounts(camera);
        QCOMPARE(bar.countLabel()->counts(), camera);
        QSignalSpy spy(&bar, SIGNAL(clearCount()));
        QTest::mouseClick(bar.clearButton(), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        // a message wider than the bar stands still
        bar.showSystemNotify(QString(200, QChar(0x6D4B)), 0);
        QVERIFY(bar.notifyWidget()->textWidth() > bar.notifyWidget()->width());
        QCOMPARE(bar.notifyWidget()->xPos(), 0);
        QVERIFY(!bar.notifyWidget()->isRolling());
    }
};

LARK_TEST_MAIN(TstQtStatusBar)
#include "tst_qtstatusbar.moc"
