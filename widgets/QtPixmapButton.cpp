#include "QtPixmapButton.h"

QtPixmapButton::QtPixmapButton()
    : m_nId(0)
    , m_colorNormal(Qt::transparent)
    , m_colorPressed(Qt::transparent)
    , m_chIcon(QChar(0))
    , m_bPressed(false)
    , m_bVisible(true)
    , m_bCheckable(false)
    , m_bChecked(false)
    , m_bEnabled(true)
{
}

QtPixmapButton::QtPixmapButton(int id, const QRect &rect, const QString &text,
                               const QColor &colorNormal, const QColor &colorPressed)
    : QtPixmapButton()
{
    m_nId = id;
    m_rect = rect;
    m_strText = text;
    m_colorNormal = colorNormal;
    m_colorPressed = colorPressed;
}

QtPixmapButton::QtPixmapButton(int id, const QRect &rect, const QString &text, QChar chIcon,
                               const QColor &colorNormal, const QColor &colorPressed)
    : QtPixmapButton(id, rect, text, colorNormal, colorPressed)
{
    m_chIcon = chIcon;
    m_bCheckable = true;
}

QtPixmapButton::QtPixmapButton(const QPixmap &pixmapNormal, const QPixmap &pixmapPressed)
    : QtPixmapButton()
{
    m_pixmapNormal = pixmapNormal;
    m_pixmapPressed = pixmapPressed;
}

QtPixmapButton::QtPixmapButton(int id, const QRect &rect, const QPixmap &pixmapNormal,
                               const QPixmap &pixmapPressed)
    : QtPixmapButton(pixmapNormal, pixmapPressed)
{
    m_nId = id;
    m_rect = rect;
}

QRect QtPixmapButton::rect() const
{
    return m_bVisible ? m_rect : QRect();
}

void QtPixmapButton::setRect(const QRect &rect)
{
    m_rect = rect;
}

QColor QtPixmapButton::color() const
{
    if (m_bEnabled && !m_bPressed && !m_bChecked)
        return m_colorNormal;
    return m_colorPressed;
}

void QtPixmapButton::setColor(const QColor &colorNormal, const QColor &colorPressed)
{
    m_colorNormal = colorNormal;
    m_colorPressed = colorPressed;
}

void QtPixmapButton::setChIcon(QChar ch)
{
    m_chIcon = ch;
}

QPixmap QtPixmapButton::pixmap() const
{
    return (m_bPressed || m_bChecked) ? m_pixmapPressed : m_pixmapNormal;
}

void QtPixmapButton::setPixmap(const QPixmap &pixmapNormal, const QPixmap &pixmapPressed)
{
    if (pixmapNormal.isNull() || pixmapPressed.isNull())
        return;
    m_pixmapNormal = pixmapNormal;
    m_pixmapPressed = pixmapPressed;
}

void QtPixmapButton::setText(const QString &text)
{
    m_strText = text;
}

void QtPixmapButton::setPressed(bool pressed)
{
    m_bPressed = pressed;
}

void QtPixmapButton::setVisible(bool visible)
{
    m_bVisible = visible;
}

void QtPixmapButton::setCheckAble(bool checkable)
{
    m_bCheckable = checkable;
}

void QtPixmapButton::setChecked(bool checked)
{
    if (m_bCheckable)
        m_bChecked = checked;
}

void QtPixmapButton::setEnable(bool enabled)
{
    m_bEnabled = enabled;
}

QSize QtPixmapButton::size() const
{
    return m_pixmapNormal.isNull() ? QSize(60, 30) : m_pixmapNormal.size();
}
