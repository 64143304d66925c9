#ifndef QTSTATUSBAR_H
#define QTSTATUSBAR_H

#include "QtWidgetBase.h"

class QPushButton;
class QtCountLabel;
class QtRollSubtitlesWidget;

// The strip at the bottom of the main window: the notification text on the left,
// the current page's count labels and the clear button on the right.
class QtStatusBar : public QtWidgetBase
{
    Q_OBJECT
public:
    explicit QtStatusBar(QWidget *parent = nullptr);

    // the clear button is shown exactly when there are counts to clear
    void setLabelCounts(const QStringList &counts);

    QtRollSubtitlesWidget *notifyWidget() const { return m_widgetNotify; }
    QtCountLabel *countLabel() const { return m_labCount; }
    QPushButton *clearButton() const { return m_btnClear; }

signals:
    void clearCount();

public slots:
    // level 255 is an error and shows red; every other level is a normal message
    void showSystemNotify(const QString &text, int level);

private:
    void InitWidget();

    QtRollSubtitlesWidget *m_widgetNotify = nullptr;
    QtCountLabel *m_labCount = nullptr;
    QPushButton *m_btnClear = nullptr;
};

#endif // QTSTATUSBAR_H
