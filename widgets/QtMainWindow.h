#ifndef QTMAINWINDOW_H
#define QTMAINWINDOW_H

#include "QtWidgetBase.h"

#include <QPoint>
#include <QRect>
#include <QVector>

// A frameless top-level window that resizes itself from eight edge regions. It
// watches its own events through an event filter and consumes none of them; moving
// is left to the title bar.
class QtMainWindow : public QtWidgetBase
{
    Q_OBJECT
public:
    // The regions in the order they are tested; a point in two of them (a window
    // narrower than two edge widths) belongs to the first.
    enum EdgeRegion {
        RegionNone = -1,
        RegionLeft = 0,
        RegionRight,
        RegionTop,
        RegionBottom,
        RegionLeftTop,
        RegionRightTop,
        RegionLeftBottom,
        RegionRightBottom,
        RegionCount
    };

    explicit QtMainWindow(QWidget *parent = nullptr);

    // the eight regions of a window of that size, first and last pixel included
    static QVector<QRect> edgeRegions(int width, int height, int edgeWidth);
    static EdgeRegion regionAt(const QVector<QRect> &regions, const QPoint &pos);
    static Qt::CursorShape cursorShapeFor(EdgeRegion region);

    int edgeWidth() const { return m_nPadding; }
    QVector<QRect> regions() const { return m_regions; }
    bool resizeEnable() const { return m_bResizeEnable; }
    void setResizeEnable(bool enable) { m_bResizeEnable = enable; }
    bool moveEnable() const { return m_bMoveEnable; }
    void setMoveEnable(bool enable) { m_bMoveEnable = enable; }
    // the region a resize is running from, RegionNone if none
    EdgeRegion activeRegion() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void clearPressFlags();
    void resizeFromHover(const QPoint &pos);

    int m_nPadding = 8;
    bool m_bMoveEnable = true;
    bool m_bResizeEnable = true;
    bool m_bPressed = false;
    // one flag per region, in the order of EdgeRegion
    bool m_bPressedRegion[RegionCount] = {};
    int m_nRectX = 0;
    int m_nRectY = 0;
    int m_nRectW = 0;
    int m_nRectH = 0;
    QPoint m_ptLastPos;
    QVector<QRect> m_regions;
};

#endif // QTMAINWINDOW_H
