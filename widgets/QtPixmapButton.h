#ifndef QTPIXMAPBUTTON_H
#define QTPIXMAPBUTTON_H

#include <QChar>
#include <QColor>
#include <QPixmap>
#include <QRect>
#include <QSize>
#include <QString>

// Describes a button that its owner draws and hit-tests itself: where it is, what it
// shows, and its pressed, checked, visible and enabled state. A plain value.
class QtPixmapButton
{
public:
    QtPixmapButton();
    QtPixmapButton(int id, const QRect &rect, const QString &text,
                   const QColor &colorNormal, const QColor &colorPressed);
    // an icon-font button; these toggle, so they are checkable
    QtPixmapButton(int id, const QRect &rect, const QString &text, QChar chIcon,
                   const QColor &colorNormal, const QColor &colorPressed);
    QtPixmapButton(const QPixmap &pixmapNormal, const QPixmap &pixmapPressed);
    QtPixmapButton(int id, const QRect &rect, const QPixmap &pixmapNormal, const QPixmap &pixmapPressed);

    int id() const { return m_nId; }

    // null while hidden, so that a hit test of the owner misses the button
    QRect rect() const;
    void setRect(const QRect &rect);

    // the press colour whenever the button is pressed, checked or disabled
    QColor color() const;
    void setColor(const QColor &colorNormal, const QColor &colorPressed);

    QChar chIcon() const { return m_chIcon; }
    void setChIcon(QChar ch);

    QPixmap pixmap() const;
    // both pixmaps or none: a half-set button would draw nothing in one state
    void setPixmap(const QPixmap &pixmapNormal, const QPixmap &pixmapPressed);

    QString text() const { return m_strText; }
    void setText(const QString &text);

    void setPressed(bool pressed);
    bool isPressed() const { return m_bPressed; }

    void setVisible(bool visible);
    bool isVisible() const { return m_bVisible; }

    void setCheckAble(bool checkable);
    bool isCheckAble() const { return m_bCheckable; }

    // ignored unless the button is checkable
    void setChecked(bool checked);
    bool isChecked() const { return m_bChecked; }

    void setEnable(bool enabled);
    bool isEnabled() const { return m_bEnabled; }

    // the normal pixmap's size, 60 by 30 without one
    QSize size() const;

private:
    int m_nId;
    QRect m_rect;
    QString m_strText;
    QColor m_colorNormal;
    QColor m_colorPressed;
    QChar m_chIcon;
    QPixmap m_pixmapNormal;
    QPixmap m_pixmapPressed;
    bool m_bPressed;
    bool m_bVisible;
    bool m_bCheckable;
    bool m_bChecked;
    bool m_bEnabled;
};

#endif // QTPIXMAPBUTTON_H
