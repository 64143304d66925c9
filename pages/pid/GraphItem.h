#ifndef GRAPHITEM_H
#define GRAPHITEM_H

#include <QColor>
#include <QRect>
#include <QString>

// One entry of the PID legend: the curve's colour, the channel's name, whether the
// curve is shown, and where the entry sits in the legend.
class GraphItem
{
public:
    GraphItem(int id, QColor color, QString text, bool checked);

    int id() const { return m_id; }
    QRect rect() const { return m_rect; }
    void setRect(const QRect &rect) { m_rect = rect; }
    QColor color() const { return m_color; }
    QString text() const { return m_text; }
    bool isChecked() const { return m_checked; }
    void setChecked(bool checked) { m_checked = checked; }

private:
    int m_id;
    QRect m_rect;
    QColor m_color;
    QString m_text;
    bool m_checked;
};

#endif // GRAPHITEM_H
