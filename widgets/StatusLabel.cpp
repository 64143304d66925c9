#include "StatusLabel.h"

#include "UiSkin.h"

#include <QPainter>

StatusLabel::StatusLabel(QWidget *parent)
    : QWidget(parent)
    , m_strText(QString::fromUtf8("操作"))
{
}

void StatusLabel::setText(const QString &text)
{
    m_strText = text;
    update();
}

void StatusLabel::setStatus(bool status)
{
    m_bStatus = status;
    update();
}

void StatusLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

QRect StatusLabel::lampRect(const QSize &size)
{
    return QRect(size.width() - 20, 4, 14, 14);
}

QColor StatusLabel::lampColor(bool status)
{
    return QColor(status ? "#02a1dd" : "#797979");
}

QColor StatusLabel::textColor() const
{
    return m_textColor.isValid() ? m_textColor : QColor(UiSkin::m_strTextColor);
}

void StatusLabel::setTextColor(const QColor &color)
{
    m_textColor = color;
    update();
}

QSize StatusLabel::sizeHint() const
{
    return QSize(60, 22);
}

void StatusLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(textColor());
    QFont font(UiSkin::m_strAppFontNormal);
    font.setPixelSize(13);
    painter.setFont(font);
    painter.drawText(rect(), int(m_alignment), m_strText);

    painter.setPen(Qt::NoPen);
    painter.setBrush(lampColor(m_bStatus));
    painter.drawEllipse(lampRect(size()));
}
