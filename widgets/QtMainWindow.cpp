#include "QtMainWindow.h"

#include <QHoverEvent>
#include <QMouseEvent>

QtMainWindow::QtMainWindow(QWidget *parent)
    : QtWidgetBase(parent)
    , m_regions(RegionCount)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_MouseTracking);
    installEventFilter(this);
    setAttribute(Qt::WA_Hover);
}

QVector<QRect> QtMainWindow::edgeRegions(int width, int height, int edgeWidth)
{
    const int W = width;
    const int H = height;
    const int p = edgeWidth;
    QVector<QRect> r(RegionCount);
    r[RegionLeft] = QRect(QPoint(0, p), QPoint(p - 1, H - p - 1));
    r[RegionRight] = QRect(QPoint(W - p, p), QPoint(W - 1, H - p - 1));
    r[RegionTop] = QRect(QPoint(p, 0), QPoint(W - p - 1, p - 1));
    r[RegionBottom] = QRect(QPoint(p, H - p), QPoint(W - p - 1, H - 1));
    r[RegionLeftTop] = QRect(QPoint(0, 0), QPoint(p - 1, p - 1));
    r[RegionRightTop] = QRect(QPoint(W - p, 0), QPoint(W - 1, p - 1));
    r[RegionLeftBottom] = QRect(QPoint(0, H - p), QPoint(p - 1, H - 1));
    r[RegionRightBottom] = QRect(QPoint(W - p, H - p), QPoint(W - 1, H - 1));
    return r;
}

QtMainWindow::EdgeRegion QtMainWindow::regionAt(const QVector<QRect> &regions, const QPoint &pos)
{
    for (int i = 0; i < regions.size() && i < RegionCount; ++i) {
        if (regions.at(i).contains(pos))
            return EdgeRegion(i);
    }
    return RegionNone;
}

Qt::CursorShape QtMainWindow::cursorShapeFor(EdgeRegion region)
{
    switch (region) {
    case RegionLeft:
    case RegionRight:
        return Qt::SizeHorCursor;
    case RegionTop:
    case RegionBottom:
        return Qt::SizeVerCursor;
    case RegionLeftTop:
    case RegionRightBottom:
        return Qt::SizeFDiagCursor;
    case RegionRightTop:
    case RegionLeftBottom:
        return Qt::SizeBDiagCursor;
    default:
        return Qt::ArrowCursor;
    }
}

QtMainWindow::EdgeRegion QtMainWindow::activeRegion() const
{
    for (int i = 0; i < RegionCount; ++i) {
        if (m_bPressedRegion[i])
            return EdgeRegion(i);
    }
    return RegionNone;
}

void QtMainWindow::clearPressFlags()
{
    m_bPressed = false;
    for (bool &flag : m_bPressedRegion)
        flag = false;
}

bool QtMainWindow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Resize:
        m_regions = edgeRegions(width(), height(), m_nPadding);
        break;
    case QEvent::MouseButtonPress: {
        QMouseEvent *me = static_cast<QMouseEvent *>(event);
        m_nRectX = x();
        m_nRectY = y();
        m_nRectW = width();
        m_nRectH = height();
        m_ptLastPos = me->localPos().toPoint();
        const EdgeRegion region = regionAt(m_regions, m_ptLastPos);
        if (region == RegionNone)
            m_bPressed = true;
        else
            m_bPressedRegion[region] = true;
        break;
    }
    case QEvent::MouseButtonRelease:
        clearPressFlags();
        setCursor(Qt::ArrowCursor);
        break;
    case QEvent::HoverMove:
        if (m_bResizeEnable)
            resizeFromHover(static_cast<QHoverEvent *>(event)->posF().toPoint());
        break;
    default:
        break;
    }
    return QtWidgetBase::eventFilter(watched, event);
}

// The left and top edges work from the current geometry because the window moves
// under the mouse, keeping the hover position near the press position; the right
// and bottom edges work from the geometry at the press.
void QtMainWindow::resizeFromHover(const QPoint &pos)
{
    setCursor(cursorShapeFor(regionAt(m_regions, pos)));

    const int dx = pos.x() - m_ptLastPos.x();
    const int dy = pos.y() - m_ptLastPos.y();
    const int W = width();
    const int H = height();
    const int minW = minimumWidth();
    const int minH = minimumHeight();

    switch (activeRegion()) {
    case RegionLeft:
        if (W - dx >= minW)
            setGeometry(x() + dx, m_nRectY, W - dx, m_nRectH);
        break;
    case RegionRight:
        setGeometry(m_nRectX, m_nRectY, m_nRectW + dx, m_nRectH);
        break;
    case RegionTop:
        if (H - dy >= minH)
            setGeometry(m_nRectX, y() + dy, m_nRectW, H - dy);
        break;
    case RegionBottom:
        setGeometry(m_nRectX, m_nRectY, m_nRectW, m_nRectH + dy);
        break;
    case RegionLeftTop:
        if (W - dx >= minW)
            setGeometry(x() + dx, y(), W - dx, H - dy);
        if (H - dy >= minH)
            setGeometry(x(), y() + dy, W - dx, H - dy);
        break;
    case RegionRightTop:
        if (H - dy >= minH)
            setGeometry(x(), y() + dy, m_nRectW + dx, H - dy);
        break;
    case RegionLeftBottom:
        if (W - dx >= minW)
            setGeometry(x() + dx, y(), W - dx, m_nRectH + dy);
        if (m_nRectH + dy >= minH)
            setGeometry(x(), y(), W - dx, m_nRectH + dy);
        break;
    case RegionRightBottom:
        setGeometry(x(), y(), m_nRectW + dx, m_nRectH + dy);
        break;
    default:
        break;
    }
}
