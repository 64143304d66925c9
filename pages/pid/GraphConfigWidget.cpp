#include "GraphConfigWidget.h"

#include "GraphItem.h"
#include "IconHelper.h"

#include <QMouseEvent>
#include <QPainter>

GraphConfigWidget::GraphConfigWidget(QWidget *parent)
    : QWidget(parent)
{
    struct Entry {
        int key;
        const char *color;
        const char *text;
        bool checked;
    };
    static const Entry entries[] = {
        {257, "#D9001B", "CH1", true},  {258, "#bfbf00", "CH2", false},
        {259, "#00ffff", "CH3", false}, {260, "#015478", "CH4", false},
        {261, "#c280ff", "CH5", false}, {513, "#b8741a", "CH1", true},
        {514, "#70b603", "CH2", false}, {515, "#02a7f0", "CH3", false},
        {516, "#0000bf", "CH4", false}, {517, "#420080", "CH5", false},
    };
    for (const Entry &e : entries)
        m_items.insert(e.key, new GraphItem(e.key, QColor(e.color), e.text, e.checked));
}

GraphConfigWidget::~GraphConfigWidget()
{
    qDeleteAll(m_items);
    m_items.clear();
}

QColor GraphConfigWidget::getGraphColor(int index) const
{
    const GraphItem *it = m_items.value(keyFromGraphIndex(index));
    return it ? it->color() : QColor("#ff0000");
}

bool GraphConfigWidget::isVisible(int index)
{
    const GraphItem *it = m_items.value(keyFromGraphIndex(index));
    return it && it->isChecked();
}

bool GraphConfigWidget::hasVisibleGraph()
{
    for (const GraphItem *it : qAsConst(m_items)) {
        if (it->isChecked())
            return true;
    }
    return false;
}

QSize GraphConfigWidget::sizeHint() const
{
    return QSize(500, 46);
}

void GraphConfigWidget::layoutItems(int height)
{
    // entries are 70 pixels apart from x = 60, whatever the width: the legend stays
    // left-aligned; with an odd height the last line belongs to no row
    const int half = height / 2;
    for (int n = 0; n < 5; ++n) {
        const int left = 60 + 70 * n;
        const int right = left + 69;
        if (GraphItem *top = m_items.value(257 + n))
            top->setRect(QRect(QPoint(left, 0), QPoint(right, half - 1)));
        if (GraphItem *bottom = m_items.value(513 + n))
            bottom->setRect(QRect(QPoint(left, half), QPoint(right, 2 * half - 1)));
    }
}

void GraphConfigWidget::resizeEvent(QResizeEvent *event)
{
    layoutItems(height());
    QWidget::resizeEvent(event);
}

void GraphConfigWidget::setTextColor(const QColor &color)
{
    m_textColor = color;
    update();
}

void GraphConfigWidget::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    const int half = height() / 2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(m_textColor);
    QFont font("Microsoft YaHei");
    font.setPixelSize(13);
    painter.setFont(font);

    painter.drawText(QRect(QPoint(10, 0), QPoint(59, half - 1)), Qt::AlignHCenter | Qt::AlignVCenter, "目标值");
    painter.drawText(QRect(QPoint(10, half), QPoint(59, 2 * half - 1)), Qt::AlignHCenter | Qt::AlignVCenter, "实际值");

    for (const GraphItem *it : qAsConst(m_items)) {
        const QRect r = it->rect();
        const int h = r.height();
        const QRect iconRect(r.left() + 5, r.top(), h, h);
        IconHelper::Instance()->drawPixmap(&painter, m_textColor.name(), it->isChecked() ? QChar(0xEA73) : QChar(0xE661), 16, iconRect);
        painter.save();
        painter.setPen(it->color());
        const QPoint from(iconRect.right(), iconRect.top() + h / 2);
        painter.drawLine(from, from + QPoint(15, 0));
        painter.restore();
        painter.drawText(r, Qt::AlignRight | Qt::AlignVCenter, it->text());
    }
}

void GraphConfigWidget::mousePressEvent(QMouseEvent *event)
{
    // any button toggles; the scan runs through every entry, and hiding the last
    // shown curve is refused outright
    const QPoint pos = event->localPos().toPoint();
    for (GraphItem *it : qAsConst(m_items)) {
        if (!it->rect().contains(pos))
            continue;
        it->setChecked(!it->isChecked());
        if (!hasVisibleGraph()) {
            it->setChecked(true);
            return;
        }
        update();
        emit signalGraphClicked(graphIndexFromKey(it->id()), it->isChecked());
    }
}
