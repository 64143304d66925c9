#include "QtShadowWindow.h"

#include <QGraphicsDropShadowEffect>
#include <QPainter>

QtShadowWindow::QtShadowWindow(QWidget *parent)
    : QtWidgetBase(parent)
    , m_colorBackground("#ffffff")
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);

    QGraphicsDropShadowEffect *shadow = new QGraphicsDropShadowEffect(this);
    shadow->setOffset(0, 0);
    shadow->setColor(Qt::black);
    shadow->setBlurRadius(ShadowWidth);
    setGraphicsEffect(shadow);
}

QRect QtShadowWindow::contentRect() const
{
    return rect().adjusted(ShadowWidth, ShadowWidth, -ShadowWidth, -ShadowWidth);
}

void QtShadowWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(contentRect(), m_colorBackground);
}
