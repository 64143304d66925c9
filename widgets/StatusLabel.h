#ifndef STATUSLABEL_H
#define STATUSLABEL_H

#include <QWidget>

// A small label with a status lamp on its right, for use inside pages.
class StatusLabel : public QWidget
{
    Q_OBJECT
public:
    explicit StatusLabel(QWidget *parent = nullptr);

    void setText(const QString &text);
    void setStatus(bool status);
    void setAlignment(Qt::Alignment alignment);
    QString text() const { return m_strText; }
    bool isWork() const { return m_bStatus; }
    Qt::Alignment alignment() const { return m_alignment; }

    // the lamp's circle in a widget of that size: 14 by 14, 7 pixels from the right
    static QRect lampRect(const QSize &size);
    // the lamp's fill for a status
    static QColor lampColor(bool status);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_strText;
    bool m_bStatus = false;
    Qt::Alignment m_alignment = Qt::AlignVCenter;
};

#endif // STATUSLABEL_H
