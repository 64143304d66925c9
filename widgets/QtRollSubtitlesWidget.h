#ifndef QTROLLSUBTITLESWIDGET_H
#define QTROLLSUBTITLESWIDGET_H

#include <QWidget>

class QTimer;

// The notification text of the status bar. It can roll the text leftwards
// (SltTimerOut), but nothing starts the roll: messages stand at the left edge and a
// message wider than the widget is cut at its right edge.
class QtRollSubtitlesWidget : public QWidget
{
    Q_OBJECT
public:
    explicit QtRollSubtitlesWidget(QWidget *parent = nullptr);

    // mode 0 rolls when rolling runs; an empty text is ignored and the old one stands
    void setText(const QString &text, int mode = 0);
    // an invalid colour name is ignored
    void setTextColor(const QString &color);
    void clear();
    QString text() const { return m_strText; }
    QString textColor() const { return m_strColor; }
    int textWidth() const { return m_nTextWidth; }
    int xPos() const { return m_nXpos; }
    int mode() const { return m_nMode; }
    bool isRolling() const;

    QSize sizeHint() const override;

public slots:
    void SltTimerOut();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    static QFont textFont();
    int measureText() const;

    QTimer *m_timer;
    int m_nXpos = 0;
    int m_nMode = 0;
    int m_nTextWidth = 0;
    QString m_strColor;
    int m_nFontSize = 14;
    QString m_strText;
};

#endif // QTROLLSUBTITLESWIDGET_H
