#ifndef GRAPHCONFIGWIDGET_H
#define GRAPHCONFIGWIDGET_H

#include <QMap>
#include <QWidget>

class GraphItem;

// Legend and switch of the PID plot: two rows (targets, actual values) of five
// channels. Each entry is keyed (row << 8) + channel, row 1 or 2 and channel 1..5;
// graph g of the plot is entry ((g / 5 + 1) << 8) + g % 5 + 1.
// Entry rectangles are laid out in resizeEvent and only drawn by paintEvent, so the
// hit test of a click uses exactly what is on screen.
class GraphConfigWidget : public QWidget
{
    Q_OBJECT
    // titles, check glyphs and names; the skins set it, "#F2F2F2" until one does
    Q_PROPERTY(QColor textColor READ textColor WRITE setTextColor)
public:
    explicit GraphConfigWidget(QWidget *parent = nullptr);
    ~GraphConfigWidget() override;

    static int keyFromGraphIndex(int index) { return ((index / 5 + 1) << 8) + index % 5 + 1; }
    static int graphIndexFromKey(int key) { return ((key >> 8) & 255) * 5 - 6 + (key & 255); }

    QColor getGraphColor(int index) const;
    // the entry's check state; hides QWidget::isVisible on purpose, callers ask
    // about curves here
    bool isVisible(int index);
    bool hasVisibleGraph();

    QSize sizeHint() const override;

    QColor textColor() const { return m_textColor; }
    void setTextColor(const QColor &color);

signals:
    void signalGraphClicked(int index, bool checked);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layoutItems(int height);

    QMap<int, GraphItem *> m_items;
    QColor m_textColor = QColor("#F2F2F2");
};

#endif // GRAPHCONFIGWIDGET_H
