#include "ColorPanelHSB.h"
#include "ColorPanelGeometry.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

ColorPanelHSB::ColorPanelHSB(QWidget *parent)
    : QWidget(parent)
    , m_nPercent(100)
    , m_nBorderWidth(0)
    , m_colorBorder(0, 0, 0, 50)
    , m_colorCursor(Qt::black)
    , m_color(255, 0, 0)
    , m_dHue(0)
    , m_dSaturation(100.0)
    , m_nCursorX(0)
    , m_nCursorY(0)
{
}

QSize ColorPanelHSB::sizeHint() const
{
    return QSize(500, 350);
}

QSize ColorPanelHSB::minimumSizeHint() const
{
    return QSize(100, 60);
}

void ColorPanelHSB::setPercent(int percent)
{
    if (m_nPercent != percent) {
        m_nPercent = percent;
        update();
    }
}

void ColorPanelHSB::setBorderWidth(int width)
{
    if (m_nBorderWidth != width) {
        m_nBorderWidth = width;
        update();
    }
}

void ColorPanelHSB::setBorderColor(const QColor &color)
{
    if (m_colorBorder != color) {
        m_colorBorder = color;
        update();
    }
}

void ColorPanelHSB::setCursorColor(const QColor &color)
{
    if (m_colorCursor != color) {
        m_colorCursor = color;
        update();
    }
}

void ColorPanelHSB::drawBackground()
{
    const int w = width();
    const int h = height();
    if (size().isEmpty()) // nothing to paint on before the first layout
        return;
    m_pixmapBg = QPixmap(size());
    m_pixmapBg.fill(Qt::transparent);
    QPainter painter(&m_pixmapBg);
    // each column is one hue; the gradient spans twice the height so that only its
    // lower half, pure hue to white, shows
    for (int x = 0; x < w; ++x) {
        const double hue = double(x) / w;
        QLinearGradient gradient(x, -h, x, h);
        gradient.setColorAt(0, QColor::fromHslF(hue, 1, 0));
        gradient.setColorAt(0.5, QColor::fromHslF(hue, 1, 0.5));
        gradient.setColorAt(1, QColor::fromHslF(hue, 1, 1));
        painter.setPen(QPen(QBrush(gradient), 1));
        painter.drawLine(x, 0, x, h);
    }
}

void ColorPanelHSB::showEvent(QShowEvent *)
{
    drawBackground();
}

// a layout may resize the field after it is shown; the picked colours must match
// what is drawn
void ColorPanelHSB::resizeEvent(QResizeEvent *)
{
    if (isVisible())
        drawBackground();
}

void ColorPanelHSB::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(0, 0, m_pixmapBg);

    QFont font = painter.font();
    font.setPixelSize(int(m_nPercent * 35 / 100.0 + 20));
    const QFontMetrics metrics(font);
    QPainterPath path;
    path.addText(m_nCursorX - metrics.horizontalAdvance("+") / 2.0, m_nCursorY + metrics.height() / 4.0, font, "+");
    painter.fillPath(path, m_colorCursor);

    if (m_nBorderWidth > 0) {
        const double half = m_nBorderWidth / 2.0;
        painter.setPen(QPen(m_colorBorder, m_nBorderWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(half, half, -half, -half));
    }
}

void ColorPanelHSB::mousePressEvent(QMouseEvent *event)
{
    mouseMoveEvent(event);
}

void ColorPanelHSB::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint pos = ColorPanelGeometry::clampPosition(event->pos(), size(), m_nBorderWidth);
    m_nCursorX = pos.x();
    m_nCursorY = pos.y();
    // the clamp reaches one past the last pixel, which the picture has no colour for
    const QImage image = m_pixmapBg.toImage();
    if (!image.isNull())
        m_color = image.pixelColor(qMin(pos.x(), image.width() - 1), qMin(pos.y(), image.height() - 1));
    m_dHue = ColorPanelGeometry::hueAt(pos.x(), width(), m_nBorderWidth);
    m_dSaturation = ColorPanelGeometry::saturationAt(pos.y(), height(), m_nBorderWidth);
    update();
    emit colorChanged(m_color);
}
