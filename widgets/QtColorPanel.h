#ifndef QTCOLORPANEL_H
#define QTCOLORPANEL_H

#include <QColor>
#include <QStringList>
#include <QWidget>

class ColorDisplay;
class ColorGridDisplay;
class ColorPanelBar;
class ColorPanelHSB;

// The colour picker: base and custom swatches on the left, the hue field, the value
// bar and the read-out on the right, and the buttons that hand the colour on.
class QtColorPanel : public QWidget
{
    Q_OBJECT
public:
    explicit QtColorPanel(QWidget *parent = nullptr);

    QSize sizeHint() const override;

    // the 48 swatches of the base grid, by rows of 8
    static const QStringList strBaseColors;

    ColorGridDisplay *baseGrid() const { return m_gridBase; }
    ColorGridDisplay *customGrid() const { return m_gridCustom; }
    ColorDisplay *colorDisplay() const { return m_colorDisplay; }
    ColorPanelHSB *panelHSB() const { return m_panelHSB; }
    ColorPanelBar *panelBar() const { return m_panelBar; }

signals:
    void signalClicke(int id, const QColor &color);

public slots:
    void SltBtnOkClicked();
    void SltBtnCancelClicked();
    void SltAddCustomColor();

private:
    void InitWidget();

    ColorGridDisplay *m_gridBase;
    ColorGridDisplay *m_gridCustom;
    ColorDisplay *m_colorDisplay;
    ColorPanelHSB *m_panelHSB;
    ColorPanelBar *m_panelBar;
};

#endif // QTCOLORPANEL_H
