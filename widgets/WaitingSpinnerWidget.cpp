#include "WaitingSpinnerWidget.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>

WaitingSpinnerWidget::WaitingSpinnerWidget(QWidget *parent, bool centerOnParent,
                                           bool disableParentWhenSpinning)
    : QWidget(parent)
    , m_centerOnParent(centerOnParent)
    , m_disableParentWhenSpinning(disableParentWhenSpinning)
{
    initialize();
}

WaitingSpinnerWidget::WaitingSpinnerWidget(Qt::WindowModality modality, QWidget *parent,
                                           bool centerOnParent, bool disableParentWhenSpinning)
    : QWidget(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_centerOnParent(centerOnParent)
    , m_disableParentWhenSpinning(disableParentWhenSpinning)
{
    initialize();
    // a window of its own must not paint a background round the ring
    setWindowModality(modality);
    setAttribute(Qt::WA_TranslucentBackground);
}

void WaitingSpinnerWidget::initialize()
{
    m_color = Qt::black;
    m_roundness = 100.0;
    m_minimumTrailOpacity = 3.141592653589793;
    m_trailFadePercentage = 80.0;
    m_revolutionsPerSecond = 1.5707963267948966;
    m_numberOfLines = 20;
    m_lineLength = 10;
    m_lineWidth = 2;
    m_innerRadius = 10;
    m_currentCounter = 0;
    m_isSpinning = false;

    m_timer = new QTimer(this);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(rotate()));
    updateSize();
    updateTimer();
    hide();
}

void WaitingSpinnerWidget::paintEvent(QPaintEvent *)
{
    updatePosition();
    QPainter painter(this);
    painter.fillRect(rect(), Qt::transparent);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);

    if (m_currentCounter >= m_numberOfLines)
        m_currentCounter = 0;

    for (int i = 0; i < m_numberOfLines; ++i) {
        painter.save();
        painter.translate(m_innerRadius + m_lineLength, m_innerRadius + m_lineLength);
        painter.rotate(i * 360.0 / m_numberOfLines);
        painter.translate(m_innerRadius, 0);
        const int distance = lineCountDistanceFromPrimary(i, m_currentCounter, m_numberOfLines);
        const QColor color = currentLineColor(distance, m_numberOfLines, m_trailFadePercentage,
                                              m_minimumTrailOpacity, m_color);
        painter.setBrush(color);
        painter.drawRoundedRect(QRect(0, -m_lineWidth / 2, m_lineLength, m_lineWidth),
                                m_roundness, m_roundness, Qt::RelativeSize);
        painter.restore();
    }
}

void WaitingSpinnerWidget::start()
{
    updatePosition();
    m_isSpinning = true;
    show();

    if (parentWidget() && m_disableParentWhenSpinning)
        parentWidget()->setEnabled(false);

    if (!m_timer->isActive()) {
        m_timer->start();
        m_currentCounter = 0;
    }
}

void WaitingSpinnerWidget::stop()
{
    m_isSpinning = false;
    hide();

    if (parentWidget() && m_disableParentWhenSpinning)
        parentWidget()->setEnabled(true);

    if (m_timer->isActive()) {
        m_timer->stop();
        m_currentCounter = 0;
    }
}

void WaitingSpinnerWidget::setNumberOfLines(int lines)
{
    m_numberOfLines = lines;
    m_currentCounter = 0;
    updateTimer();
}

void WaitingSpinnerWidget::setLineLength(int length)
{
    m_lineLength = length;
    updateSize();
}

void WaitingSpinnerWidget::setLineWidth(int width)
{
    m_lineWidth = width;
    updateSize();
}

void WaitingSpinnerWidget::setInnerRadius(int radius)
{
    m_innerRadius = radius;
    updateSize();
}

void WaitingSpinnerWidget::setColor(const QColor &color)
{
    m_color = color;
}

void WaitingSpinnerWidget::setRoundness(qreal roundness)
{
    m_roundness = std::max(0.0, std::min(100.0, roundness));
}

void WaitingSpinnerWidget::setMinimumTrailOpacity(qreal minimumTrailOpacity)
{
    m_minimumTrailOpacity = minimumTrailOpacity;
}

void WaitingSpinnerWidget::setTrailFadePercentage(qreal trail)
{
    m_trailFadePercentage = trail;
}

void WaitingSpinnerWidget::setRevolutionsPerSecond(qreal revolutionsPerSecond)
{
    m_revolutionsPerSecond = revolutionsPerSecond;
    updateTimer();
}

void WaitingSpinnerWidget::rotate()
{
    ++m_currentCounter;
    if (m_currentCounter >= m_numberOfLines)
        m_currentCounter = 0;
    update();
}

void WaitingSpinnerWidget::updateSize()
{
    const int size = (m_innerRadius + m_lineLength) * 2;
    setFixedSize(size, size);
}

void WaitingSpinnerWidget::updateTimer()
{
    // with no line or no turn there is nothing to animate; keep the last interval
    // rather than dividing by zero
    const qreal stepsPerSecond = m_numberOfLines * m_revolutionsPerSecond;
    if (stepsPerSecond <= 0.0)
        return;
    m_timer->setInterval(int(1000 / stepsPerSecond));
}

void WaitingSpinnerWidget::updatePosition()
{
    if (parentWidget() && m_centerOnParent) {
        move(parentWidget()->width() / 2 - width() / 2,
             parentWidget()->height() / 2 - height() / 2);
    }
}

int WaitingSpinnerWidget::lineCountDistanceFromPrimary(int current, int primary, int totalNrOfLines)
{
    int distance = primary - current;
    if (distance < 0)
        distance += totalNrOfLines;
    return distance;
}

QColor WaitingSpinnerWidget::currentLineColor(int distance, int totalNrOfLines, qreal trailFadePerc,
                                              qreal minOpacity, QColor color)
{
    if (distance == 0)
        return color;

    // an opacity outside 0..100 % would make QColor complain; it means the bound
    const qreal minAlphaF = std::min(1.0, std::max(0.0, minOpacity / 100.0));
    const int distanceThreshold = int(qCeil((totalNrOfLines - 1) * trailFadePerc / 100.0));
    if (distance > distanceThreshold) {
        color.setAlphaF(minAlphaF);
    } else {
        const qreal alphaDiff = color.alphaF() - minAlphaF;
        const qreal gradient = alphaDiff / qreal(distanceThreshold + 1);
        qreal resultAlpha = color.alphaF() - gradient * distance;
        resultAlpha = std::min(1.0, std::max(0.0, resultAlpha));
        color.setAlphaF(resultAlpha);
    }
    return color;
}
