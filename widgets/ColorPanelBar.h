#ifndef COLORPANELBAR_H
#define COLORPANELBAR_H

#include <QColor>
#include <QPixmap>
#include <QWidget>

// The vertical bar of the colour picker: a gradient from the top colour down to the
// bottom colour (or, in HSB mode, through all hues) with a handle the user drags;
// the handle's height is a percent, and the percent a value in the bar's range.
class ColorPanelBar : public QWidget
{
    Q_OBJECT
public:
    explicit ColorPanelBar(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    int getBorderWidth() const { return m_nBorderWidth; }
    void setBorderWidth(int width);
    int getBorderRadius() const { return m_nBorderRadius; }
    void setBorderRadius(int radius);
    QColor getBorderColor() const { return m_colorBorder; }
    void setBorderColor(const QColor &color);
    bool getAutoHeight() const { return m_bAutoHeight; }
    void setAutoHeight(bool autoHeight);
    int getPercentHeight() const { return m_nPercentHeight; }
    void setPercentHeight(int height);
    int getPercentBorder() const { return m_nPercentBorder; }
    void setPercentBorder(int border);
    int getPercentRadius() const { return m_nPercentRadius; }
    void setPercentRadius(int radius);
    QColor getPercentColor() const { return m_colorPercent; }
    void setPercentColor(const QColor &color);
    QColor getTopColor() const { return m_colorTop; }
    void setTopColor(const QColor &color);
    QColor getBottomColor() const { return m_colorBottom; }
    void setBottomColor(const QColor &color);
    QColor getDisableColor() const { return m_colorDisable; }
    void setDisableColor(const QColor &color);
    bool getShowOverlay() const { return m_bShowOverlay; }
    void setShowOverlay(bool show);
    QColor getOverlayColor() const { return m_colorOverlay; }
    void setOverlayColor(const QColor &color);
    bool getStaticMode() const { return m_bStaticMode; }
    void setStaticMode(bool staticMode);
    bool getOutMode() const { return m_bOutMode; }
    void setOutMode(bool outMode);
    bool getHSBMode() const { return m_bHSBMode; }
    void setHSBMode(bool hsbMode);
    bool getShowValue() const { return m_bShowValue; }
    void setShowValue(bool show);
    double getMinValue() const { return m_dMinValue; }
    void setMinValue(double value);
    double getMaxValue() const { return m_dMaxValue; }
    void setMaxValue(double value);
    double getValue() const { return m_dValue; }
    void setValue(double value);
    double getPercent() const { return m_dPercent; }
    void setPercent(double percent);
    QColor getColor() const { return m_color; }
    void setColor(const QColor &color);
    int getTravel() const { return m_nTravel; }
    bool getPressed() const { return m_bPressed; }
    QRect getBarRect() const { return m_rectBar; }

signals:
    void colorChanged(const QColor &color);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void drawBackground();
    void initColor();

    int m_nBorderWidth;
    int m_nBorderRadius;
    QColor m_colorBorder;
    bool m_bAutoHeight;
    int m_nPercentHeight;
    int m_nPercentBorder;
    int m_nPercentRadius;
    QColor m_colorPercent;
    QColor m_colorTop;
    QColor m_colorBottom;
    QColor m_colorDisable;
    bool m_bShowOverlay;
    QColor m_colorOverlay;
    bool m_bStaticMode;
    bool m_bOutMode;
    bool m_bHSBMode;
    bool m_bShowValue;
    double m_dMinValue;
    double m_dMaxValue;
    double m_dValue;
    double m_dPercent;
    QColor m_color;
    int m_nTravel;
    bool m_bPressed;
    QPixmap m_pixmapBg;
    QRect m_rectBar;
};

#endif // COLORPANELBAR_H
