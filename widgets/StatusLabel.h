#ifndef STATUSLABEL_H
#define STATUSLABEL_H

#include <QWidget>

// A small label with a status lamp on its right, for use inside pages.
class StatusLabel : public QWidget
{
    Q_OBJECT
    // the text's colour; the skins set it, UiSkin::m_strTextColor until one does
    Q_PROPERTY(QColor textColor READ textColor WRITE setTextColor)
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

    QColor textColor() const;
    void setTextColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_strText;
    bool m_bStatus = false;
    Qt::Alignment m_alignment = Qt::AlignVCenter;
    QColor m_textColor;
};

#endif // STATUSLABEL_H
