#include "QtCountLabel.h"

#include "UiSkin.h"

#include <QPainter>

QtCountLabel::QtCountLabel(QWidget *parent)
    : QWidget(parent)
{
}

void QtCountLabel::setCounts(const QStringList &counts)
{
    m_strCounts = counts;
    update();
}

QVector<QRect> QtCountLabel::columnRects(const QSize &size, int count)
{
    QVector<QRect> rects;
    if (count <= 0)
        return rects;
    const int column = size.width() / count;
    for (int i = 0; i < count; ++i)
        rects.append(QRect(5 + i * column, 0, column - 5, size.height()));
    return rects;
}

void QtCountLabel::paintEvent(QPaintEvent *)
{
    if (m_strCounts.isEmpty())
        return;
    // the painter keeps the widget's own pen, which the style sheet colours
    QPainter painter(this);
    QFont font(UiSkin::m_strAppFontNormal);
    font.setPixelSize(13);
    painter.setFont(font);
    const QVector<QRect> rects = columnRects(size(), m_strCounts.size());
    for (int i = 0; i < rects.size(); ++i)
        painter.drawText(rects.at(i), Qt::AlignVCenter, m_strCounts.at(i));
}
