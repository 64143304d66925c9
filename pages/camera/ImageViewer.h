#ifndef IMAGEVIEWER_H
#define IMAGEVIEWER_H

#include <QPixmap>
#include <QWidget>

class QPainter;

// The camera page's image area: one or two images at their own size, centred in
// their half, over a grey checkerboard.
class ImageViewer : public QWidget
{
    Q_OBJECT
public:
    explicit ImageViewer(QWidget *parent = nullptr);

    // index 0 or 1; a null pixmap keeps what is shown
    void setPixmap(int index, const QPixmap &pixmap);
    // 1 shows one area, 2 (or 0) two areas; anything else is ignored
    void setImageShowCount(int count);

    QPixmap pixmap(int index) const { return index == 0 ? m_pixmap1 : m_pixmap2; }
    int imageShowCount() const { return m_nShowCount; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void drawBackground(QPainter *painter);
    void drawPixmap(QPainter *painter);

    QPixmap m_pixmap1;
    QPixmap m_pixmap2;
    int m_nShowCount;
};

#endif // IMAGEVIEWER_H
