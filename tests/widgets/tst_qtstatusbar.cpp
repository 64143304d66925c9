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
    void startsWithWelcomeAndZeroCounts()
    {
        QtStatusBar bar;
        QCOMPARE(bar.notifyWidget()->text(), QString("欢迎使用 本多功能调试助手！"));
        QCOMPARE(bar.countLabel()->counts(), (QStringList{"发送字节数: 0", "接收字节数: 0"}));
        QVERIFY(!bar.clearButton()->isHidden());
        QCOMPARE(bar.clearButton()->text(), QString("清空计数"));
        QCOMPARE(bar.minimumHeight(), 28);
    }

    void notifyLevelChoosesTheColour_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("shownText");
        QTest::addColumn<QString>("colour");
        QTest::newRow("error") << "串口打开失败" << 255 << "串口打开失败" << "#ff0000";
        QTest::newRow("level 1 is normal") << "已连接" << 1 << "已连接" << "#0F2026";
        QTest::newRow("level 0") << "就绪" << 0 << "就绪" << "#0F2026";
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
    }

    void clearButtonFollowsTheCounts()
    {
        QtStatusBar bar;
        bar.show();
        bar.setLabelCounts(QStringList());
        QVERIFY(bar.clearButton()->isHidden());
        QCOMPARE(bar.countLabel()->counts(), QStringList());
        const QStringList camera{"帧编号: 3", "接收速率: 1.00 KB", "接收帧率: 2 FPS"};
        bar.setLabelCounts(camera);
        QVERIFY(!bar.clearButton()->isHidden());
        QCOMPARE(bar.countLabel()->counts(), camera);
    }

    void clearButtonSignalsClearCount()
    {
        QtStatusBar bar;
        bar.resize(800, 28);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy spy(&bar, SIGNAL(clearCount()));
        QTest::mouseClick(bar.clearButton(), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
    }

    void textColourIgnoresInvalidNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kept");
        QTest::newRow("nonsense") << "nonsense" << "#123456";
        QTest::newRow("empty") << "" << "#123456";
        QTest::newRow("named colour") << "red" << "red";
        QTest::newRow("hex") << "#00ff00" << "#00ff00";
    }

    void textColourIgnoresInvalidNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, kept);
        QtRollSubtitlesWidget w;
        QCOMPARE(w.textColor(), QString("#0F2026"));
        w.setTextColor("#123456");
        w.setTextColor(name);
        QCOMPARE(w.textColor(), kept);
    }

    void wideMessagesStandStillAtTheLeft()
    {
        QtRollSubtitlesWidget w;
        w.resize(100, 22);
        w.show();
        const QString longText(80, QChar(0x6D4B));
        w.setText(longText, 0);
        QVERIFY(w.textWidth() > w.width());
        QCOMPARE(w.xPos(), 0);
        QVERIFY(!w.isRolling());
        QCOMPARE(w.sizeHint(), QSize(200, 22));

        // the roll itself, one tick at a time: left by one, wrapping to the right edge
        w.SltTimerOut();
        QCOMPARE(w.xPos(), -1);
        for (int i = 0; i < w.textWidth(); ++i)
            w.SltTimerOut();
        QCOMPARE(w.xPos(), w.width());

        w.clear();
        QCOMPARE(w.text(), QString());
    }

    void countColumnsShareTheWidth_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("count");
        QTest::addColumn<QVector<QRect>>("rects");
        QTest::newRow("none") << QSize(300, 22) << 0 << QVector<QRect>{};
        QTest::newRow("one") << QSize(300, 22) << 1 << QVector<QRect>{QRect(5, 0, 295, 22)};
        QTest::newRow("two") << QSize(300, 22) << 2 << QVector<QRect>{QRect(5, 0, 145, 22), QRect(155, 0, 145, 22)};
        QTest::newRow("three, width not divisible")
            << QSize(100, 20) << 3 << QVector<QRect>{QRect(5, 0, 28, 20), QRect(38, 0, 28, 20), QRect(71, 0, 28, 20)};
    }

    void countColumnsShareTheWidth()
    {
        QFETCH(QSize, size);
        QFETCH(int, count);
        QFETCH(QVector<QRect>, rects);
        QCOMPARE(QtCountLabel::columnRects(size, count), rects);
    }
};

LARK_TEST_MAIN(TstQtStatusBar)
#include "tst_qtstatusbar.moc"
