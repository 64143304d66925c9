#ifndef QTCOUNTLABEL_H
#define QTCOUNTLABEL_H

#include <QRect>
#include <QElapsedTimer>
#include <QStringList>
#include <QVector>
#include <QWidget>

class QTimer;

// The count labels of the current page, in equal columns; the text colour comes
// from the style sheet.
//
// Counts change with every read of a busy link, a thousand times a second and more,
// and every repaint flushes the window to the screen: the label repaints at once when
// it has been quiet, else at most once a display frame.
class QtCountLabel : public QWidget
{
    Q_OBJECT
public:
    explicit QtCountLabel(QWidget *parent = nullptr);

    void setCounts(const QStringList &counts);
    QStringList counts() const { return m_strCounts; }

    // the rectangle of each of count entries in a widget of that size
    static QVector<QRect> columnRects(const QSize &size, int count);

protected:
    void paintEvent(QPaintEvent *event) override;

private slots:
    void SltRepaintDue();

private:
    QStringList m_strCounts;
    QTimer *m_repaintTimer;
    QElapsedTimer m_lastRepaint;
};

#endif // QTCOUNTLABEL_H
