#include "ColorGridDisplay.h"
#include "ColorPanelGeometry.h"
#include "ColorRole.h"

#include <QMouseEvent>
#include <QPainter>

ColorGridDisplay::ColorGridDisplay(QWidget *parent)
    : QWidget(parent)
    , m_strTitle("基本颜色(B):")
    , m_nRows(2)
    , m_nColumns(8)
    , m_nCellWidth(0)
    , m_nCellHeight(0)
    , m_nCurrentId(0)
{
}

ColorGridDisplay::~ColorGridDisplay()
{
    qDeleteAll(m_mapColors);
    m_mapColors.clear();
}

QSize ColorGridDisplay::sizeHint() const
{
    return QSize(250, 90);
}

void ColorGridDisplay::setGridColors(const QStringList &colors)
{
    for (int i = 0; i < colors.size(); ++i) {
        if (!m_mapColors.contains(i))
            m_mapColors.insert(i, new ColorRole(i, ColorPanelGeometry::cellRect(size(), m_nRows, m_nColumns, i), Qt::white));
        m_mapColors.value(i)->setColor(QColor(colors.at(i)));
    }
    update();
}

void ColorGridDisplay::setGridColor(int id, const QColor &color)
{
    if (!m_mapColors.contains(id))
        return;
    m_mapColors.value(id)->setColor(color);
    update();
}

void ColorGridDisplay::setCurrentGridColor(const QColor &color)
{
    setGridColor(m_nCurrentId, color);
}

void ColorGridDisplay::setCellSize(int rows, int columns)
{
    m_nRows = rows;
    m_nColumns = columns;
    const QRect first = ColorPanelGeometry::cellRect(size(), rows, columns, 0);
    m_nCellWidth = first.width();
    m_nCellHeight = first.height();
    for (int id = 0; id < rows * columns; ++id) {
        const QRect rect = ColorPanelGeometry::cellRect(size(), rows, columns, id);
        if (m_mapColors.contains(id))
            m_mapColors.value(id)->setRect(rect);
        else
            m_mapColors.insert(id, new ColorRole(id, rect, Qt::white));
    }
    update();
}

void ColorGridDisplay::setTitle(const QString &title)
{
    m_strTitle = title;
    update();
}

QColor ColorGridDisplay::gridColor(int id) const
{
    const ColorRole *role = m_mapColors.value(id, nullptr);
    return role ? role->getColor() : QColor();
}

int ColorGridDisplay::cellAt(const QPoint &pos) const
{
    for (const ColorRole *role : m_mapColors) {
        if (role->getRect().contains(pos))
            return role->getId();
    }
    return -1;
}

void ColorGridDisplay::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    QFont font = painter.font();
    font.setPixelSize(13);
    painter.setFont(font);
    painter.setPen(QColor("#ffffff"));
    painter.drawText(QRect(0, 0, width(), 25), Qt::AlignLeft | Qt::AlignVCenter, m_strTitle);

    for (const ColorRole *role : m_mapColors) {
        if (role->getId() == m_nCurrentId)
            painter.setPen(QColor("#23a7f2"));
        else
            painter.setPen(Qt::NoPen);
        painter.setBrush(role->getColor());
        painter.drawRect(role->getRect());
    }
}

void ColorGridDisplay::mousePressEvent(QMouseEvent *event)
{
    const int id = cellAt(event->pos());
    if (id < 0)
        return;
    m_nCurrentId = id;
    emit colorChanged(m_mapColors.value(id)->getColor());
    update();
}

void ColorGridDisplay::resizeEvent(QResizeEvent *)
{
    setCellSize(m_nRows, m_nColumns);
}
