#include "LarkTest.h"
#include "QtMainWindow.h"

#include <QHoverEvent>
#include <QTest>

Q_DECLARE_METATYPE(QtMainWindow::EdgeRegion)

class TstQtMainWindow : public QObject
{
    Q_OBJECT

private:
    static void hover(QWidget *w, const QPoint &pos)
    {
        QHoverEvent ev(QEvent::HoverMove, QPointF(pos), QPointF(pos));
        QApplication::sendEvent(w, &ev);
    }

    struct Window {
        QtMainWindow w;
        Window()
        {
            w.setMinimumSize(200, 150);
            w.setGeometry(100, 100, 400, 300);
            w.show();
        }
    };

private slots:
    void regionsFollowTheWindowSize_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("pos");
        QTest::addColumn<QtMainWindow::EdgeRegion>("region");

        const QSize big(400, 300);
        QTest::newRow("left edge") << big << QPoint(0, 150) << QtMainWindow::RegionLeft;
        QTest::newRow("left edge, inner pixel") << big << QPoint(7, 8) << QtMainWindow::RegionLeft;
        QTest::newRow("just inside the left edge") << big << QPoint(8, 150) << QtMainWindow::RegionNone;
        QTest::newRow("right edge") << big << QPoint(392, 150) << QtMainWindow::RegionRight;
        QTest::newRow("just inside the right edge") << big << QPoint(391, 150) << QtMainWindow::RegionNone;
        QTest::newRow("top edge") << big << QPoint(200, 7) << QtMainWindow::RegionTop;
        QTest::newRow("bottom edge") << big << QPoint(200, 292) << QtMainWindow::RegionBottom;
        QTest::newRow("last bottom pixel") << big << QPoint(391, 299) << QtMainWindow::RegionBottom;
        QTest::newRow("left top corner") << big << QPoint(7, 7) << QtMainWindow::RegionLeftTop;
        QTest::newRow("right top corner") << big << QPoint(392, 0) << QtMainWindow::RegionRightTop;
        QTest::newRow("left bottom corner") << big << QPoint(0, 299) << QtMainWindow::RegionLeftBottom;
        QTest::newRow("right bottom corner") << big << QPoint(399, 292) << QtMainWindow::RegionRightBottom;
        QTest::newRow("middle") << big << QPoint(200, 150) << QtMainWindow::RegionNone;
        QTest::newRow("outside") << big << QPoint(400, 150) << QtMainWindow::RegionNone;
        // narrower than two edge widths: left and right overlap, left is tested first
        const QSize narrow(12, 100);
        QTest::newRow("narrow, in both side edges") << narrow << QPoint(5, 50) << QtMainWindow::RegionLeft;
        QTest::newRow("narrow, right edge only") << narrow << QPoint(10, 50) << QtMainWindow::RegionRight;
        // the top and bottom edges run backwards here and still hold the pixels between
        // their ends, and they are tested before the corners
        QTest::newRow("narrow, bottom corners") << narrow << QPoint(6, 95) << QtMainWindow::RegionBottom;
        QTest::newRow("narrow, right bottom only") << narrow << QPoint(11, 99) << QtMainWindow::RegionRightBottom;
    }

    void regionsFollowTheWindowSize()
    {
        QFETCH(QSize, size);
        QFETCH(QPoint, pos);
        QFETCH(QtMainWindow::EdgeRegion, region);
        const QVector<QRect> regions = QtMainWindow::edgeRegions(size.width(), size.height(), 8);
        QCOMPARE(QtMainWindow::regionAt(regions, pos), region);

        // the window computes the same regions on its resize event
        QtMainWindow w;
        w.resize(size);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QTRY_COMPARE(w.regions(), regions);
    }

    void hoverSetsTheCursorOfTheRegion_data()
    {
        QTest::addColumn<QPoint>("pos");
        QTest::addColumn<int>("shape");
        QTest::newRow("left") << QPoint(2, 150) << int(Qt::SizeHorCursor);
        QTest::newRow("right") << QPoint(397, 150) << int(Qt::SizeHorCursor);
        QTest::newRow("top") << QPoint(200, 2) << int(Qt::SizeVerCursor);
        QTest::newRow("bottom") << QPoint(200, 297) << int(Qt::SizeVerCursor);
        QTest::newRow("left top") << QPoint(2, 2) << int(Qt::SizeFDiagCursor);
        QTest::newRow("right bottom") << QPoint(397, 297) << int(Qt::SizeFDiagCursor);
        QTest::newRow("right top") << QPoint(397, 2) << int(Qt::SizeBDiagCursor);
        QTest::newRow("left bottom") << QPoint(2, 297) << int(Qt::SizeBDiagCursor);
        QTest::newRow("inside") << QPoint(200, 150) << int(Qt::ArrowCursor);
    }

    void hoverSetsTheCursorOfTheRegion()
    {
        QFETCH(QPoint, pos);
        QFETCH(int, shape);
        Window win;
        QVERIFY(QTest::qWaitForWindowExposed(&win.w));
        // start from a shape no row expects, so every row proves a change
        win.w.setCursor(Qt::WaitCursor);
        hover(&win.w, pos);
        QCOMPARE(int(win.w.cursor().shape()), shape);

        win.w.setCursor(Qt::WaitCursor);
        win.w.setResizeEnable(false);
        hover(&win.w, pos);
        QCOMPARE(int(win.w.cursor().shape()), int(Qt::WaitCursor));
    }

    void draggingAnEdgeResizesTheWindow_data()
    {
        QTest::addColumn<QPoint>("press");
        QTest::addColumn<QList<QPoint>>("moves");
        QTest::addColumn<QRect>("geometry");

        // the window starts at 100, 100, 400 by 300, minimum 200 by 150
        QTest::newRow("left outward") << QPoint(3, 150) << QList<QPoint>{QPoint(-47, 150)}
                                      << QRect(50, 100, 450, 300);
        QTest::newRow("left inward to the minimum width")
            << QPoint(3, 150) << QList<QPoint>{QPoint(203, 150)} << QRect(300, 100, 200, 300);
        QTest::newRow("left inward stops at the minimum width")
            << QPoint(3, 150) << QList<QPoint>{QPoint(204, 150)} << QRect(100, 100, 400, 300);
        QTest::newRow("right works from the press geometry")
            << QPoint(396, 150) << QList<QPoint>{QPoint(426, 150), QPoint(436, 150)} << QRect(100, 100, 440, 300);
        QTest::newRow("right inward below the minimum is left to the window system")
            << QPoint(396, 150) << QList<QPoint>{QPoint(146, 150)} << QRect(100, 100, 200, 300);
        QTest::newRow("top outward") << QPoint(200, 3) << QList<QPoint>{QPoint(200, -17)}
                                     << QRect(100, 80, 400, 320);
        QTest::newRow("top inward stops at the minimum height")
            << QPoint(200, 3) << QList<QPoint>{QPoint(200, 160)} << QRect(100, 100, 400, 300);
        QTest::newRow("bottom") << QPoint(200, 296) << QList<QPoint>{QPoint(200, 336), QPoint(200, 316)}
                                << QRect(100, 100, 400, 320);
        QTest::newRow("left top") << QPoint(3, 3) << QList<QPoint>{QPoint(-7, -7)} << QRect(90, 90, 410, 310);
        QTest::newRow("right top") << QPoint(396, 3) << QList<QPoint>{QPoint(406, -7)}
                                   << QRect(100, 90, 410, 310);
        QTest::newRow("left bottom") << QPoint(3, 296) << QList<QPoint>{QPoint(-7, 306)}
                                     << QRect(90, 100, 410, 310);
        QTest::newRow("right bottom") << QPoint(396, 296) << QList<QPoint>{QPoint(416, 316)}
                                      << QRect(100, 100, 420, 320);
        QTest::newRow("a press inside resizes nothing")
            << QPoint(200, 150) << QList<QPoint>{QPoint(250, 200)} << QRect(100, 100, 400, 300);
    }

    void draggingAnEdgeResizesTheWindow()
    {
        QFETCH(QPoint, press);
        QFETCH(QList<QPoint>, moves);
        QFETCH(QRect, geometry);
        Window win;
        QVERIFY(QTest::qWaitForWindowExposed(&win.w));
        QCOMPARE(win.w.geometry(), QRect(100, 100, 400, 300));

        QTest::mousePress(&win.w, Qt::LeftButton, Qt::NoModifier, press);
        for (const QPoint &pos : moves)
            hover(&win.w, pos);
        QCOMPARE(win.w.geometry(), geometry);
    }

    void releaseEndsTheResize()
    {
        Window win;
        QVERIFY(QTest::qWaitForWindowExposed(&win.w));
        QTest::mousePress(&win.w, Qt::LeftButton, Qt::NoModifier, QPoint(396, 150));
        QCOMPARE(win.w.activeRegion(), QtMainWindow::RegionRight);
        hover(&win.w, QPoint(416, 150));
        QCOMPARE(win.w.width(), 420);

        QTest::mouseRelease(&win.w, Qt::LeftButton, Qt::NoModifier, QPoint(416, 150));
        QCOMPARE(win.w.activeRegion(), QtMainWindow::RegionNone);
        QCOMPARE(int(win.w.cursor().shape()), int(Qt::ArrowCursor));
        hover(&win.w, QPoint(300, 150));
        QCOMPARE(win.w.geometry(), QRect(100, 100, 420, 300));
    }

    void windowIsFramelessAndTracksHover()
    {
        QtMainWindow w;
        QVERIFY(w.windowFlags() & Qt::FramelessWindowHint);
        QVERIFY(w.testAttribute(Qt::WA_Hover));
        QVERIFY(w.hasMouseTracking());
        QCOMPARE(w.edgeWidth(), 8);
    }
};

LARK_TEST_MAIN(TstQtMainWindow)
#include "tst_qtmainwindow.moc"
