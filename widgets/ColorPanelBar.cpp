#include "ColorPanelBar.h"
#include "ColorPanelGeometry.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

namespace {
// stores value in member and repaints the bar, if it is a change
template <typename T>
bool change(QWidget *widget, T &member, const T &value)
{
    if (member == value)
        return false;
    member = value;
    widget->update();
    return true;
}
} // namespace

ColorPanelBar::ColorPanelBar(QWidget *parent)
    : QWidget(parent)
    , m_nBorderWidth(2)
    , m_nBorderRadius(0)
    , m_colorBorder(255, 0, 0)
    , m_bAutoHeight(true)
    , m_nPercentHeight(25)
    , m_nPercentBorder(2)
    , m_nPercentRadius(0)
    , m_colorPercent(240, 240, 240)
    , m_colorTop(255, 0, 0)
    , m_colorBottom(0, 0, 0)
    , m_colorDisable(50, 50, 50)
    , m_bShowOverlay(false)
    , m_colorOverlay(30, 30, 30)
    , m_bStaticMode(true)
    , m_bOutMode(false)
    , m_bHSBMode(false)
    , m_bShowValue(false)
    , m_dMinValue(0)
    , m_dMaxValue(360.0)
    , m_dValue(360.0)
    , m_dPercent(100.0)
    , m_color(m_colorTop)
    , m_nTravel(0)
    , m_bPressed(false)
{
}

QSize ColorPanelBar::sizeHint() const
{
    return QSize(24, 200);
}

QSize ColorPanelBar::minimumSizeHint() const
{
    return QSize(24, 120);
}

void ColorPanelBar::setBorderWidth(int width) { change(this, m_nBorderWidth, width); }
void ColorPanelBar::setBorderRadius(int radius) { change(this, m_nBorderRadius, radius); }
void ColorPanelBar::setBorderColor(const QColor &color) { change(this, m_colorBorder, color); }
void ColorPanelBar::setAutoHeight(bool autoHeight) { change(this, m_bAutoHeight, autoHeight); }
void ColorPanelBar::setPercentHeight(int height) { change(this, m_nPercentHeight, height); }
void ColorPanelBar::setPercentBorder(int border) { change(this, m_nPercentBorder, border); }
void ColorPanelBar::setPercentRadius(int radius) { change(this, m_nPercentRadius, radius); }
void ColorPanelBar::setPercentColor(const QColor &color) { change(this, m_colorPercent, color); }
void ColorPanelBar::setDisableColor(const QColor &color) { change(this, m_colorDisable, color); }
void ColorPanelBar::setShowOverlay(bool show) { change(this, m_bShowOverlay, show); }
void ColorPanelBar::setOverlayColor(const QColor &color) { change(this, m_colorOverlay, color); }
void ColorPanelBar::setStaticMode(bool staticMode) { change(this, m_bStaticMode, staticMode); }
void ColorPanelBar::setOutMode(bool outMode) { change(this, m_bOutMode, outMode); }
void ColorPanelBar::setHSBMode(bool hsbMode) { change(this, m_bHSBMode, hsbMode); }
void ColorPanelBar::setShowValue(bool show) { change(this, m_bShowValue, show); }
void ColorPanelBar::setMinValue(double value) { change(this, m_dMinValue, value); }
void ColorPanelBar::setMaxValue(double value) { change(this, m_dMaxValue, value); }
void ColorPanelBar::setColor(const QColor &color) { change(this, m_color, color); }

void ColorPanelBar::setTopColor(const QColor &color)
{
    if (change(this, m_colorTop, color) && !m_bStaticMode)
        drawBackground();
}

void ColorPanelBar::setBottomColor(const QColor &color)
{
    if (change(this, m_colorBottom, color) && !m_bStaticMode)
        drawBackground();
}

void ColorPanelBar::setValue(double value)
{
    if (value < m_dMinValue || value > m_dMaxValue)
        return;
    if (change(this, m_dValue, value))
        m_dPercent = ColorPanelGeometry::percentOf(value, m_dMinValue, m_dMaxValue);
}

void ColorPanelBar::setPercent(double percent)
{
    if (change(this, m_dPercent, percent))
        m_dValue = ColorPanelGeometry::valueAt(percent, m_dMinValue, m_dMaxValue);
}

void ColorPanelBar::resizeEvent(QResizeEvent *)
{
    if (m_bAutoHeight)
        m_nPercentHeight = height() / 13;
    m_nTravel = ColorPanelGeometry::travelOf(height(), m_nPercentHeight, m_nBorderWidth, m_nPercentBorder);

    const int half = m_nBorderWidth / 2;
    m_rectBar = rect().adjusted(half, half, -half, -half);
    if (m_bOutMode)
        m_rectBar.adjust(0, m_nPercentHeight / 2, 0, -m_nPercentHeight / 2);
    drawBackground();
}

void ColorPanelBar::showEvent(QShowEvent *)
{
    drawBackground();
}

void ColorPanelBar::drawBackground()
{
    if (size().isEmpty()) // nothing to paint on before the first layout
        return;
    m_pixmapBg = QPixmap(size());
    m_pixmapBg.fill(Qt::transparent);
    QPainter painter(&m_pixmapBg);
    if (m_bHSBMode) {
        QLinearGradient gradient(0, height(), 0, 0);
        for (int i = 0; i <= 16; ++i) {
            const double pos = i * 0.0625;
            gradient.setColorAt(pos, QColor::fromHsvF(pos, 1, 1, 1));
        }
        painter.fillRect(m_pixmapBg.rect(), gradient);
    } else {
        QLinearGradient gradient(0, 0, 0, height());
        gradient.setColorAt(0, m_colorTop);
        gradient.setColorAt(1, m_colorBottom);
        painter.fillRect(m_pixmapBg.rect(), gradient);
    }
    painter.end();
    initColor();
}

void ColorPanelBar::initColor()
{
    const QImage image = m_pixmapBg.toImage();
    if (image.isNull())
        return;
    m_color = image.pixelColor(m_rectBar.width() / 2, ColorPanelGeometry::colorRow(m_dPercent, height()));
}

void ColorPanelBar::mousePressEvent(QMouseEvent *event)
{
    m_bPressed = true;
    mouseMoveEvent(event);
}

void ColorPanelBar::mouseReleaseEvent(QMouseEvent *event)
{
    m_bPressed = false;
    mouseMoveEvent(event);
}

void ColorPanelBar::mouseMoveEvent(QMouseEvent *event)
{
    const int offset = event->pos().y() - m_nPercentHeight / 2;
    m_dPercent = ColorPanelGeometry::percentAt(event->pos().y(), m_nPercentHeight, m_nTravel);
    if (offset < 0) {
        m_dValue = m_dMaxValue;
        m_color = m_colorTop;
    } else if (offset > m_nTravel) {
        m_dValue = m_dMinValue;
        m_color = m_colorBottom;
    } else {
        m_dValue = ColorPanelGeometry::valueAt(m_dPercent, m_dMinValue, m_dMaxValue);
        initColor();
    }
    update();
    emit colorChanged(m_color);
}

void ColorPanelBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    // the bar
    if (isEnabled()) {
        if (m_bHSBMode)
            painter.setPen(Qt::NoPen);
        else
            painter.setPen(QPen(m_colorBorder, m_nBorderWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        painter.setBrush(QBrush(m_pixmapBg));
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_colorDisable);
    }
    painter.drawRoundedRect(m_rectBar, m_nBorderRadius, m_nBorderRadius);

    // the part above the handle, dimmed
    if (m_bShowOverlay && isEnabled()) {
        const double overlayHeight = (1 - m_dPercent / 100) * (height() - m_nBorderWidth);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_colorOverlay);
        painter.drawRect(QRectF(m_rectBar.x(), m_rectBar.y(), m_rectBar.width(), overlayHeight));
    }

    // the handle, with the value or the percent on it
    const int m = m_nBorderWidth + 2;
    const QRectF handle(m, m + (1 - m_dPercent / 100) * m_nTravel, width() - 1 - 2 * m, m_nPercentHeight);
    painter.setPen(QPen(isEnabled() ? m_colorPercent : m_colorDisable, m_nPercentBorder));
    painter.setBrush(QColor(0, 0, 0, 50));
    painter.drawRoundedRect(handle, m_nPercentRadius, m_nPercentRadius);

    QFont font = painter.font();
    font.setPixelSize(qMax(1, int(handle.width() / 3)));
    painter.setFont(font);
    const QString text = m_bShowValue ? QString::number(m_dValue, 'f', 0)
                                      : QString("%1%").arg(int(m_dPercent));
    painter.drawText(handle, Qt::AlignCenter, text);
}
