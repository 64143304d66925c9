#include "QtRollSubtitlesWidget.h"

#include <QColor>
#include <QFontMetrics>
#include <QPainter>
#include <QTimer>

QtRollSubtitlesWidget::QtRollSubtitlesWidget(QWidget *parent)
    : QWidget(parent)
    , m_strColor("#0F2026")
{
    m_timer = new QTimer(this);
    m_timer->setInterval(30);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(SltTimerOut()));
}

QSize QtRollSubtitlesWidget::sizeHint() const
{
    return QSize(200, 22);
}

QFont QtRollSubtitlesWidget::textFont()
{
    QFont font("Arial");
    font.setPixelSize(13);
    return font;
}

int QtRollSubtitlesWidget::measureText() const
{
    return QFontMetrics(textFont()).horizontalAdvance(m_strText);
}

bool QtRollSubtitlesWidget::isRolling() const
{
    return m_timer->isActive();
}

void QtRollSubtitlesWidget::setText(const QString &text, int mode)
{
    if (text.isEmpty())
        return;
    m_strText = text;
    m_nMode = mode;
    m_nTextWidth = measureText();
    if (m_nTextWidth > width() && m_timer->isActive())
        m_timer->stop();
    m_nXpos = 0;
    update();
}

void QtRollSubtitlesWidget::setTextColor(const QString &color)
{
    if (!QColor::isValidColor(color))
        return;
    m_strColor = color;
    update();
}

void QtRollSubtitlesWidget::clear()
{
    m_strText.clear();
    update();
}

void QtRollSubtitlesWidget::SltTimerOut()
{
    m_nTextWidth = measureText();
    if (m_nMode == 0) {
        --m_nXpos;
        if (m_nXpos < -m_nTextWidth)
            m_nXpos = width();
    }
    update();
}

void QtRollSubtitlesWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), Qt::transparent);
    painter.setFont(textFont());
    painter.setPen(QColor(m_strColor));
    painter.drawText(QRect(m_nXpos, 0, m_nTextWidth, height()), Qt::AlignVCenter, m_strText);
}
