#ifndef QTSHADOWWINDOW_H
#define QTSHADOWWINDOW_H

#include "QtWidgetBase.h"

#include <QColor>

// A frameless translucent window with a drop shadow: the content is painted inset
// by the shadow's blur radius, leaving the rim for the shadow.
class QtShadowWindow : public QtWidgetBase
{
    Q_OBJECT
public:
    explicit QtShadowWindow(QWidget *parent = nullptr);

    static constexpr int ShadowWidth = 10;
    QColor backgroundColor() const { return m_colorBackground; }
    // the rectangle the background fills, inside the shadow rim
    QRect contentRect() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_colorBackground;
};

#endif // QTSHADOWWINDOW_H
