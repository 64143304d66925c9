#ifndef COLORGRIDDISPLAY_H
#define COLORGRIDDISPLAY_H

#include <QColor>
#include <QMap>
#include <QStringList>
#include <QWidget>

class ColorRole;

// A titled grid of colour swatches; clicking a swatch makes it current and
// reports its colour.
class ColorGridDisplay : public QWidget
{
    Q_OBJECT
public:
    explicit ColorGridDisplay(QWidget *parent = nullptr);
    ~ColorGridDisplay() override;

    QSize sizeHint() const override;

    void setGridColors(const QStringList &colors);
    void setGridColor(int id, const QColor &color);
    void setCurrentGridColor(const QColor &color);
    void setCellSize(int rows, int columns);
    void setTitle(const QString &title);

    // the colour of a cell, invalid if there is no such cell
    QColor gridColor(int id) const;
    int currentId() const { return m_nCurrentId; }
    // the cell containing pos, or -1 (the title strip and the gaps hold none)
    int cellAt(const QPoint &pos) const;

signals:
    void colorChanged(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QString m_strTitle;
    int m_nRows;
    int m_nColumns;
    int m_nCellWidth;
    int m_nCellHeight;
    QMap<int, ColorRole *> m_mapColors;
    int m_nCurrentId;
};

#endif // COLORGRIDDISPLAY_H
