#ifndef QTWIDGETBASE_H
#define QTWIDGETBASE_H

#include <QStringList>
#include <QWidget>

// Base of the pages and most custom widgets: draws style sheet backgrounds and
// carries the page contract the main window relies on (counts for the status bar,
// notifications).
class QtWidgetBase : public QWidget
{
    Q_OBJECT
public:
    explicit QtWidgetBase(QWidget *parent = nullptr);

    // texts of this page's count labels, ready for display
    virtual QStringList getCounts();
    // zero this page's counters
    virtual void clearCounts();

signals:
    void signalNotify(const QString &text, int level);
    void signalRefresCounts(int index);

protected:
    void paintEvent(QPaintEvent *event) override;
};

#endif // QTWIDGETBASE_H
