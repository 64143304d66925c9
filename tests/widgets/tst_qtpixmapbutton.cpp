#include "LarkTest.h"
#include "QtPixmapButton.h"

#include <QtTest>

class TstQtPixmapButton : public QObject
{
    Q_OBJECT

private slots:
    void defaultButtonIsEmptyVisibleAndEnabled();
    void rectIsNullWhileHidden();
    void colourByState_data();
    void colourByState();
    void pixmapByState_data();
    void pixmapByState();
    void setPixmapNeedsBothPixmaps();
    void checkedOnlyWhenCheckable();
    void sizeIsThePixmapsOrSixtyByThirty();
};

static QPixmap filled(const QColor &c, int w = 16, int h = 12)
{
    QPixmap p(w, h);
    p.fill(c);
    return p;
}

void TstQtPixmapButton::defaultButtonIsEmptyVisibleAndEnabled()
{
    const QtPixmapButton b;
    QCOMPARE(b.id(), 0);
    QVERIFY(b.rect().isNull());
    QCOMPARE(b.rect(), QRect(QPoint(0, 0), QPoint(-1, -1)));
    QVERIFY(b.text().isEmpty());
    QCOMPARE(b.color(), QColor(0, 0, 0, 0));
    QCOMPARE(b.chIcon(), QChar(0));
    QVERIFY(b.pixmap().isNull());
    QVERIFY(b.isVisible());
    QVERIFY(b.isEnabled());
    QVERIFY(!b.isPressed());
    QVERIFY(!b.isCheckAble());
    QVERIFY(!b.isChecked());
}

void TstQtPixmapButton::rectIsNullWhileHidden()
{
    QtPixmapButton b(3, QRect(10, 10, 40, 20), "btn", Qt::white, Qt::blue);
    QCOMPARE(b.rect(), QRect(10, 10, 40, 20));
    b.setVisible(false);
    QVERIFY(b.rect().isNull());
    QVERIFY(!b.rect().contains(QPoint(20, 15)));
    b.setVisible(true);
    QCOMPARE(b.rect(), QRect(10, 10, 40, 20));
}

void TstQtPixmapButton::colourByState_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("pressed");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("normal");

    QTest::newRow("idle") << true << false << false << true;
    QTest::newRow("pressed") << true << true << false << false;
    QTest::newRow("checked") << true << false << true << false;
    QTest::newRow("disabled") << false << false << false << false;
    QTest::newRow("disabled and pressed") << false << true << false << false;
}

void TstQtPixmapButton::colourByState()
{
    QFETCH(bool, enabled);
    QFETCH(bool, pressed);
    QFETCH(bool, checked);
    QFETCH(bool, normal);

    QtPixmapButton b(1, QRect(0, 0, 10, 10), "x", QChar(0xE614), Qt::white, Qt::blue);
    b.setEnable(enabled);
    b.setPressed(pressed);
    b.setChecked(checked);
    QCOMPARE(b.color(), normal ? QColor(Qt::white) : QColor(Qt::blue));
}

void TstQtPixmapButton::pixmapByState_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("pressed");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("normal");

    QTest::newRow("idle") << true << false << false << true;
    QTest::newRow("pressed") << true << true << false << false;
    QTest::newRow("checked") << true << false << true << false;
    // unlike the colour, the pixmap does not mark a disabled button
    QTest::newRow("disabled") << false << false << false << true;
}

void TstQtPixmapButton::pixmapByState()
{
    QFETCH(bool, enabled);
    QFETCH(bool, pressed);
    QFETCH(bool, checked);
    QFETCH(bool, normal);

    QtPixmapButton b(2, QRect(0, 0, 16, 12), filled(Qt::green), filled(Qt::red));
    b.setCheckAble(true);
    b.setEnable(enabled);
    b.setPressed(pressed);
    b.setChecked(checked);
    QCOMPARE(b.pixmap().toImage().pixelColor(1, 1), normal ? QColor(Qt::green) : QColor(Qt::red));
}

void TstQtPixmapButton::setPixmapNeedsBothPixmaps()
{
    QtPixmapButton b(filled(Qt::green), filled(Qt::red));
    b.setPixmap(filled(Qt::yellow), QPixmap());
    b.setPixmap(QPixmap(), filled(Qt::yellow));
    QCOMPARE(b.pixmap().toImage().pixelColor(0, 0), QColor(Qt::green));
    b.setPixmap(filled(Qt::yellow), filled(Qt::cyan));
    QCOMPARE(b.pixmap().toImage().pixelColor(0, 0), QColor(Qt::yellow));
}

void TstQtPixmapButton::checkedOnlyWhenCheckable()
{
    QtPixmapButton plain(1, QRect(), "a", Qt::white, Qt::blue);
    plain.setChecked(true);
    QVERIFY(!plain.isChecked());

    QtPixmapButton icon(1, QRect(), "a", QChar(0xE614), Qt::white, Qt::blue);
    QVERIFY(icon.isCheckAble());
    icon.setChecked(true);
    QVERIFY(icon.isChecked());
    // taking checkability away keeps the state; only new changes are refused
    icon.setCheckAble(false);
    icon.setChecked(false);
    QVERIFY(icon.isChecked());
}

void TstQtPixmapButton::sizeIsThePixmapsOrSixtyByThirty()
{
    QCOMPARE(QtPixmapButton().size(), QSize(60, 30));
    QCOMPARE(QtPixmapButton(filled(Qt::green, 24, 18), filled(Qt::red, 30, 30)).size(), QSize(24, 18));
}

LARK_TEST_MAIN(TstQtPixmapButton)
#include "tst_qtpixmapbutton.moc"
