#ifndef COLORROLE_H
#define COLORROLE_H

#include <QColor>
#include <QRect>

// One swatch of a colour grid: its id (row times columns plus column), where it
// sits in the grid widget and the colour it shows.
class ColorRole
{
public:
    ColorRole(int id, const QRect &rect, const QColor &color);

    int getId() const { return m_nId; }
    QRect getRect() const { return m_rect; }
    void setRect(const QRect &rect) { m_rect = rect; }
    QColor getColor() const { return m_color; }
    void setColor(const QColor &color) { m_color = color; }

private:
    int m_nId;
    QRect m_rect;
    QColor m_color;
};

#endif // COLORROLE_H
