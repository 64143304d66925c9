#include "ImageViewer.h"

#include "MyApp.h"
#include "UiSkin.h"

#include <QPainter>

ImageViewer::ImageViewer(QWidget *parent)
    : QWidget(parent)
    , m_nShowCount(1)
{
    setCursor(Qt::PointingHandCursor);
}

void ImageViewer::setPixmap(int index, const QPixmap &pixmap)
{
    if (pixmap.isNull())
        return;
    if (index == 0)
        m_pixmap1 = pixmap;
    else if (index == 1)
        m_pixmap2 = pixmap;
    update();
}

void ImageViewer::setImageShowCount(int count)
{
    if (count < 0 || count > 2)
        return;
    m_nShowCount = count;
    update();
}

void ImageViewer::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.fillRect(rect(), Qt::white);
    drawBackground(&painter);
    drawPixmap(&painter);
}

void ImageViewer::mousePressEvent(QMouseEvent *event)
{
    QWidget::mousePressEvent(event);
}

void ImageViewer::drawBackground(QPainter *painter)
{
    const int w = width();
    const int h = height();
    painter->save();
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor("#e5e5e5"));
    // an odd number of rows, so that the pattern alternates from column to column
    int rows = (h - 1) / 50 + 1;
    if (rows % 2 == 0)
        ++rows;
    int index = 0;
    for (int col = 0; col <= (w - 1) / 50; ++col) {
        for (int row = 0; row < rows; ++row, ++index) {
            if (index % 2)
                painter->drawRect(col * 50 + 1, row * 50 + 1, 50, 50);
        }
    }

    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(UiSkin::m_widgetSliderStyle);
    if (m_nShowCount == 2) {
        painter->setBrush(QColor(MyApp::m_nSkinStyle != 0 ? "#ffffff" : "#1e1e1e"));
        const int mid = (w - 1) / 2;
        painter->drawRect(QRect(QPoint(mid - 5, -1), QPoint(mid + 4, h)));
    }
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(QRect(QPoint(0, 0), QPoint(w - 1, h - 1)));
    painter->restore();
}

void ImageViewer::drawPixmap(QPainter *painter)
{
    const int w = width();
    const int h = height();
    painter->save();
    painter->setPen(QColor("#85959B"));
    QFont font(UiSkin::m_strAppFontNormal);
    font.setPixelSize(13);
    painter->setFont(font);
    if (m_nShowCount == 1) {
        if (m_pixmap1.isNull())
            painter->drawText(QRect(QPoint(0, 0), QPoint(w - 1, h - 1)), Qt::AlignCenter, "图像显示区域");
        else
            painter->drawPixmap((w - m_pixmap1.width()) / 2, (h - m_pixmap1.height()) / 2, m_pixmap1);
    } else {
        if (m_pixmap1.isNull())
            painter->drawText(QRect(QPoint(0, 0), QPoint(w / 2 - 1, h - 1)), Qt::AlignCenter, "图像1显示区域");
        else
            painter->drawPixmap(w / 4 - m_pixmap1.width() / 2, (h - m_pixmap1.height()) / 2, m_pixmap1);
        if (m_pixmap2.isNull())
            painter->drawText(QRect(QPoint(w / 2, 0), QPoint(2 * (w / 2) - 1, h - 1)), Qt::AlignCenter, "图像2显示区域");
        else
            painter->drawPixmap(int(w * 0.75 - m_pixmap2.width() / 2), (h - m_pixmap2.height()) / 2, m_pixmap2);
    }
    painter->restore();
}
