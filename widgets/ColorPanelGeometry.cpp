#include "ColorPanelGeometry.h"

#include <QtGlobal>

namespace {
const int s_nSpacing = 3;   // gap between cells
const int s_nTitleTop = 26; // first row of cells, under the title strip
} // namespace

QPoint ColorPanelGeometry::clampPosition(const QPoint &pos, const QSize &size, int border)
{
    return QPoint(qBound(border, pos.x(), size.width() - border), qBound(border, pos.y(), size.height() - border));
}

double ColorPanelGeometry::hueAt(int x, int width, int border)
{
    return double(x - border) / (width - 2 * border) * 360;
}

double ColorPanelGeometry::saturationAt(int y, int height, int border)
{
    return 100 - double(y - border) / (height - 2 * border) * 100;
}

int ColorPanelGeometry::travelOf(int height, int percentHeight, int borderWidth, int percentBorder)
{
    return height - percentHeight - 2 * borderWidth - 2 * percentBorder;
}

double ColorPanelGeometry::percentAt(int y, int percentHeight, int travel)
{
    const int offset = y - percentHeight / 2;
    if (offset < 0)
        return 100;
    if (offset > travel)
        return 0;
    return (1 - double(offset) / travel) * 100;
}

int ColorPanelGeometry::colorRow(double percent, int height)
{
    return qMin(int(height - percent / 100 * height + 1), height - 1);
}

double ColorPanelGeometry::valueAt(double percent, double minimum, double maximum)
{
    return percent / 100 * (maximum - minimum);
}

double ColorPanelGeometry::percentOf(double value, double minimum, double maximum)
{
    return value / (maximum - minimum) * 100;
}

QRect ColorPanelGeometry::cellRect(const QSize &size, int rows, int columns, int id)
{
    const int cellWidth = (size.width() + s_nSpacing - s_nSpacing * columns) / columns;
    const int cellHeight = (size.height() - 1 + s_nSpacing - s_nSpacing * rows - 25) / rows;
    const int row = id / columns;
    const int column = id % columns;
    return QRect((cellWidth + s_nSpacing) * column, (cellHeight + s_nSpacing) * row + s_nTitleTop,
                 cellWidth, cellHeight);
}
