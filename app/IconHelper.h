#ifndef ICONHELPER_H
#define ICONHELPER_H

#include <QChar>
#include <QFont>
#include <QObject>
#include <QPixmap>
#include <QRect>

class QAbstractButton;
class QLabel;
class QPainter;

// Glyphs of the icon font as label text, button text or pixmaps.
class IconHelper : public QObject
{
    Q_OBJECT
public:
    static IconHelper *Instance();

    // labels size the glyph in pixels, buttons in points
    void setIcon(QLabel *lab, QChar c, int size = 12);
    void setIcon(QAbstractButton *btn, QChar c, int size = 12);
    QPixmap getPixmap(const QString &color, QChar c, int fontSize, int width, int height);
    void drawPixmap(QPainter *painter, const QString &color, QChar c, int fontSize, const QRect &rect);

    QFont iconFont() const { return iconFontObj; }

private:
    explicit IconHelper(QObject *parent = nullptr);
    static IconHelper *self;
    QFont iconFontObj;
};

#endif // ICONHELPER_H
