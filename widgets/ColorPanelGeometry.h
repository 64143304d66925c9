#ifndef COLORPANELGEOMETRY_H
#define COLORPANELGEOMETRY_H

#include <QPoint>
#include <QRect>
#include <QSize>

// Where the colour panel's fields and bars put things, in pixels: the picking rules
// without a widget, so that they are checked headless and the widgets only paint and
// forward the mouse.
class ColorPanelGeometry
{
public:
    // pos kept inside the border of a field of that size
    static QPoint clampPosition(const QPoint &pos, const QSize &size, int border);
    // hue (0 to 360) and saturation (100 at the top, 0 at the bottom) at a clamped
    // position of a field of that size
    static double hueAt(int x, int width, int border);
    static double saturationAt(int y, int height, int border);

    // how far a bar's handle moves in a bar of that height
    static int travelOf(int height, int percentHeight, int borderWidth, int percentBorder);
    // the percent for a mouse at y: 100 above the travel, 0 below it
    static double percentAt(int y, int percentHeight, int travel);
    // the picture row whose colour stands for a percent, in a bar of that height
    static int colorRow(double percent, int height);
    // a bar's value at a percent and the percent of a value: both of the span between
    // minimum and maximum, not of the distance from the minimum
    static double valueAt(double percent, double minimum, double maximum);
    static double percentOf(double value, double minimum, double maximum);

    // the cell id of a grid of that size: cells in rows, under the title strip
    static QRect cellRect(const QSize &size, int rows, int columns, int id);
};

#endif // COLORPANELGEOMETRY_H
