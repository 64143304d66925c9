#include "LarkTestCore.h"
#include "QtPixmapButton.h"

#include <QtTest>

class TstQtPixmapButton : public QObject
{
    Q_OBJECT
private slots:
    // the owner's hit test goes through rect(): a hidden button must not take clicks
    void hiddenButtonMissesTheHitTest()
    {
        QtPixmapButton b(3, QRect(10, 10, 40, 20), "btn", Qt::white, Qt::blue);
        b.setVisible(false);
        QVERIFY(!b.rect().contains(QPoint(20, 15)));
        b.setVisible(true);
        QVERIFY(b.rect().contains(QPoint(20, 15)));
    }
};

LARK_TEST_GUILESS_MAIN(TstQtPixmapButton)
#include "tst_qtpixmapbutton.moc"
