#ifndef QTMESSAGETIP_H
#define QTMESSAGETIP_H

#include <QFont>
#include <QPoint>
#include <QTimer>
#include <QPointer>
#include <QWidget>

// The one floating note of the program: a red tip under a field that was filled in
// wrongly (ShowMessage), or a dark toast in the middle of the main window
// (ShowToastMessage). Both are hidden again, never closed.
class QtMessageTip : public QWidget
{
    Q_OBJECT
public:
    enum TipMode { ToolTip = 0, Toast = 1 };

    static QtMessageTip *Instance();
    ~QtMessageTip() override;

    // the window toasts are centred on; null is ignored
    void SetParentWidget(QWidget *parent);
    // a tip at pos (global coordinates) for two seconds; an empty text does nothing
    void ShowMessage(const QString &text, QPoint pos);
    // a toast for msec milliseconds; 100 or less keeps it up until the next call
    void ShowToastMessage(const QString &text, int msec);

    QString text() const { return m_strText; }
    int mode() const { return m_nMode; }

    QSize sizeHint() const override;

private slots:
    void sltTimeOut();
    void sltHideTip(int sequence);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    explicit QtMessageTip(QWidget *parent = nullptr);
    void calcTextWidth();

    static QtMessageTip *self;

    // guarded: the registered window may go away before the singleton does
    QPointer<QWidget> m_parentWidget;
    int m_nMode;
    QString m_strText;
    QFont m_font;
    QTimer *m_timer;
    // bumped by every show, so that a tip's pending hide cannot take down whatever
    // was shown after it
    int m_nShowSequence;
};

#endif // QTMESSAGETIP_H
