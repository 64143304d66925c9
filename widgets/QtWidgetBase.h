#ifndef QTWIDGETBASE_H
#define QTWIDGETBASE_H

#include <QPair>
#include <QStringList>
#include <QWidget>

class LinkTap;

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

    // the page's link as tools see it (capture, plots, automation); pages without a
    // link have none
    virtual LinkTap *linkTap() const { return nullptr; }

    // "发送字节: %1", "接收字节: %1": the counts of the pages that send and receive bytes
    static QStringList byteCounts(quint64 sent, quint64 received);
    // signalNotify with a notice's text and level; a notice without text says nothing
    void emitNotice(const QPair<QString, int> &notice);

signals:
    void signalNotify(const QString &text, int level);
    void signalRefresCounts(int index);

protected:
    void paintEvent(QPaintEvent *event) override;
};

#endif // QTWIDGETBASE_H
