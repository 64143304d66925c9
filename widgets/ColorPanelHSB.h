#ifndef COLORPANELHSB_H
#define COLORPANELHSB_H

#include <QColor>
#include <QPixmap>
#include <QWidget>

// The hue and saturation field of the colour picker: hue runs left to right, the
// pure hue at the top fades to white at the bottom; a click or drag picks the
// colour under the "+" cursor.
class ColorPanelHSB : public QWidget
{
    Q_OBJECT
public:
    explicit ColorPanelHSB(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    int getPercent() const { return m_nPercent; }
    void setPercent(int percent);
    int getBorderWidth() const { return m_nBorderWidth; }
    void setBorderWidth(int width);
    QColor getBorderColor() const { return m_colorBorder; }
    void setBorderColor(const QColor &color);
    QColor getCursorColor() const { return m_colorCursor; }
    void setCursorColor(const QColor &color);
    QColor getColor() const { return m_color; }
    double getHue() const { return m_dHue; }
    double getSaturation() const { return m_dSaturation; }
    QPoint getCursorPos() const { return QPoint(m_nCursorX, m_nCursorY); }

signals:
    void colorChanged(const QColor &color);

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    void drawBackground();

    int m_nPercent;
    int m_nBorderWidth;
    QColor m_colorBorder;
    QColor m_colorCursor;
    QColor m_color;
    double m_dHue;
    double m_dSaturation;
    int m_nCursorX;
    int m_nCursorY;
    QPixmap m_pixmapBg;
};

#endif // COLORPANELHSB_H
