#include "LarkTest.h"
#include "QtPixmapButton.h"

#include <QtTest>

static QPixmap filled(const QColor &c, int w = 16, int h = 12)
{
    QPixmap p(w, h);
    p.fill(c);
    return p;
}

class TstQtPixmapButton : public QObject
{
    Q_OBJECT

private slots:
    void stateChoosesColourAndPixmap_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("pressed");
        QTest::addColumn<bool>("checked");
        QTest::addColumn<bool>("normalColour");
        QTest::addColumn<bool>("normalPixmap");
        QTest::newRow("idle") << true << false << false << true << true;
        QTest::newRow("pressed") << true << true << false << false << false;
        QTest::newRow("checked") << true << false << true << false << false;
        // unlike the colour, the pixmap does not mark a disabled button
        QTest::newRow("disabled") << false << false << false << false << true;
    }

    void stateChoosesColourAndPixmap()
    {
        QFETCH(bool, enabled);
        QFETCH(bool, pressed);
        QFETCH(bool, checked);
        QFETCH(bool, normalColour);
        QFETCH(bool, normalPixmap);
        QtPixmapButton b(1, QRect(0, 0, 10, 10), "x", QChar(0xE614), Qt::white, Qt::blue);
        b.setPixmap(filled(Qt::green), filled(Qt::red));
        b.setEnable(enabled);
        b.setPressed(pressed);
        b.setChecked(checked);
        QCOMPARE(b.color(), normalColour ? QColor(Qt::white) : QColor(Qt::blue));
        QCOMPARE(b.pixmap().toImage().pixelColor(1, 1), normalPixmap ? QColor(Qt::green) : QColor(Qt::red));
    }

    void hiddenMissesCheckedNeedsCheckableAndPixmapsComeInPairs()
    {
        QtPixmapButton b(3, QRect(10, 10, 40, 20), "btn", Qt::white, Qt::blue);
        b.setVisible(false);
        QVERIFY(!b.rect().contains(QPoint(20, 15))); // an owner's hit test misses it
        b.setVisible(true);
        QCOMPARE(b.rect(), QRect(10, 10, 40, 20));
        b.setChecked(true);
        QVERIFY(!b.isChecked());
        b.setPixmap(filled(Qt::yellow, 24, 18), QPixmap()); // ignored without both
        QCOMPARE(b.size(), QSize(60, 30));
    }
};

LARK_TEST_MAIN(TstQtPixmapButton)
#include "tst_qtpixmapbutton.moc"
