#ifndef QTFOLDBUTTON_H
#define QTFOLDBUTTON_H

#include <QToolButton>

// The thin button between a page's settings column and its views that hides and
// shows the column; its arrow and tool tip say what the next click does.
class QtFoldButton : public QToolButton
{
    Q_OBJECT
public:
    QtFoldButton(QWidget *column, QWidget *parent);

    // The page shape of the serial and network pages: the settings column, this button
    // (wired to the page's SltBtnFoldClicked), and the receive view over the send box.
    static QtFoldButton *layOutPage(QWidget *page, QWidget *column, QWidget *view, QWidget *sendBox,
                                    int margin, int spacing, int viewSpacing);

public slots:
    void SltBtnFoldClicked();

private:
    void updateLook(bool shown);

    QWidget *m_widgetColumn;
};

#endif // QTFOLDBUTTON_H
