#include "LarkTest.h"
#include "QtMainWindow.h"

#include <QHoverEvent>
#include <QTest>


class TstQtMainWindow : public QObject
{
    Q_OBJECT

    static void hover(QWidget *w, const QPoint &pos)
    {
        QHoverEvent ev(QEvent::HoverMove, QPointF(pos), QPointF(pos));
        QApplication::sendEvent(w, &ev);
    }

private slots:
    void draggingAnEdgeResizesTheWindow_data()
    {
        QTest::addColumn<QPoint>("press");
        QTest::addColumn<QList<QPoint>>("moves");
        QTest::addColumn<QRect>("geometry");
        // the window starts at 100, 100, 400 by 300, minimum 200 by 150
        QTest::newRow("left outward") << QPoint(3, 150) << QList<QPoint>{{-47, 150}} << QRect(50, 100, 450, 300);
        QTest::newRow("left inward stops at the minimum width")
            << QPoint(3, 150) << QList<QPoint>{{204, 150}} << QRect(100, 100, 400, 300);
        QTest::newRow("right works from the press geometry")
            << QPoint(396, 150) << QList<QPoint>{{426, 150}, {436, 150}} << QRect(100, 100, 440, 300);
        QTest::newRow("top outward") << QPoint(200, 3) << QList<QPoint>{{200, -17}} << QRect(100, 80, 400, 320);
        QTest::newRow("top inward stops at the minimum height")
            << QPoint(200, 3) << QList<QPoint>{{200, 160}} << QRect(100, 100, 400, 300);
        QTest::newRow("bottom") << QPoint(200, 296) << QList<QPoint>{{200, 336}, {200, 316}} << QRect(100, 100, 400, 320);
        QTest::newRow("left top") << QPoint(3, 3) << QList<QPoint>{{-7, -7}} << QRect(90, 90, 410, 310);
        QTest::newRow("right top") << QPoint(396, 3) << QList<QPoint>{{406, -7}} << QRect(100, 90, 410, 310);
        QTest::newRow("right bottom") << QPoint(396, 296) << QList<QPoint>{{416, 316}} << QRect(100, 100, 420, 320);
        QTest::newRow("a press inside resizes nothing")
            << QPoint(200, 150) << QList<QPoint>{{250, 200}} << QRect(100, 100, 400, 300);
    }

    void draggingAnEdgeResizesTheWindow()
    {
        QFETCH(QPoint, press);
        QFETCH(QList<QPoint>, moves);
        QFETCH(QRect, geometry);
        QtMainWindow w;
        w.setMinimumSize(200, 150);
        w.setGeometry(100, 100, 400, 300);
        QVERIFY(LarkTest::showExposed(&w));
        QTRY_COMPARE(w.geometry(), QRect(100, 100, 400, 300));
        hover(&w, press); // the hover finds the edge the press takes

        QTest::mousePress(&w, Qt::LeftButton, Qt::NoModifier, press);
        for (const QPoint &pos : moves)
            hover(&w, pos);
        QCOMPARE(w.geometry(), geometry);
        // the release ends the resize
        QTest::mouseRelease(&w, Qt::LeftButton, Qt::NoModifier, moves.last());
        hover(&w, moves.last() + QPoint(30, 30));
        QCOMPARE(w.geometry(), geometry);
    }
};

LARK_TEST_MAIN(TstQtMainWindow)
#include "tst_qtmainwindow.moc"
