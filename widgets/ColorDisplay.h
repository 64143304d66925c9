#ifndef COLORDISPLAY_H
#define COLORDISPLAY_H

#include <QColor>
#include <QList>
#include <QWidget>

class QLabel;
class QLineEdit;

// The read-out of the colour picker: a preview, the colour's hue, saturation and
// lightness, its red, green and blue, and its name, which may be typed over.
class ColorDisplay : public QWidget
{
    Q_OBJECT
public:
    explicit ColorDisplay(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QColor color() const { return m_color; }

    // the six numbers shown: HSL hue, HSL saturation, lightness, red, green, blue
    static QList<int> colorNumbers(const QColor &color);

public slots:
    void SltDisplayColor(const QColor &color);
    void SltChangeColor();

private:
    void InitWidget();

    QColor m_color;
    QLabel *m_labColor;
    QList<QLineEdit *> m_edtNumbers;
    QLineEdit *m_edtHex;
};

#endif // COLORDISPLAY_H
