#ifndef QTWAITDIALOG_H
#define QTWAITDIALOG_H

#include <QDialog>
#include <QPointer>

class QLabel;
class WaitingSpinnerWidget;

// A small modal window with a spinner and a line of text, shown while the user has
// to wait for something; one instance serves the whole program.
class QtWaitDialog : public QDialog
{
    Q_OBJECT
public:
    static QtWaitDialog *Instance();
    ~QtWaitDialog() override;

    // the window the dialog is centred on; null is ignored
    void SetParentWidget(QWidget *parent);
    // shows text with a turning spinner; msec above 100 stops it by itself after that
    // time; modal runs a local event loop until Stop
    void ShowWaitMessage(const QString &text, int msec, bool modal);

    WaitingSpinnerWidget *spinner() const { return m_spinner; }
    QString text() const;

public slots:
    void Stop();

private:
    explicit QtWaitDialog(QWidget *parent = nullptr);
    void InitWidget();

    static QtWaitDialog *self;

    WaitingSpinnerWidget *m_spinner;
    QLabel *m_labText;
    // guarded: the registered window may go away before the singleton does
    QPointer<QWidget> m_parentWidget;
};

#endif // QTWAITDIALOG_H
