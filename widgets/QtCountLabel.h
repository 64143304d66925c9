#ifndef QTCOUNTLABEL_H
#define QTCOUNTLABEL_H

#include <QRect>
#include <QStringList>
#include <QVector>
#include <QWidget>

// The count labels of the current page, in equal columns; the text colour comes
// from the style sheet.
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

private:
    QStringList m_strCounts;
};

#endif // QTCOUNTLABEL_H
