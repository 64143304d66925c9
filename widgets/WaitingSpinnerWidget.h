#ifndef WAITINGSPINNERWIDGET_H
#define WAITINGSPINNERWIDGET_H

#include <QColor>
#include <QTimer>
#include <QWidget>

// A ring of fading lines that turns while something is under way. The colour maths
// are static so that they can be checked without painting anything.
class WaitingSpinnerWidget : public QWidget
{
    Q_OBJECT
public:
    explicit WaitingSpinnerWidget(QWidget *parent = nullptr, bool centerOnParent = true,
                                  bool disableParentWhenSpinning = true);
    // a spinner of its own window, modal as told (for use without a host widget)
    WaitingSpinnerWidget(Qt::WindowModality modality, QWidget *parent = nullptr,
                         bool centerOnParent = true, bool disableParentWhenSpinning = true);

    void setColor(const QColor &color);
    void setRoundness(qreal roundness);
    void setMinimumTrailOpacity(qreal minimumTrailOpacity);
    void setTrailFadePercentage(qreal trail);
    void setRevolutionsPerSecond(qreal revolutionsPerSecond);
    void setNumberOfLines(int lines);
    void setLineLength(int length);
    void setLineWidth(int width);
    void setInnerRadius(int radius);

    QColor color() const { return m_color; }
    qreal roundness() const { return m_roundness; }
    qreal minimumTrailOpacity() const { return m_minimumTrailOpacity; }
    qreal trailFadePercentage() const { return m_trailFadePercentage; }
    qreal revolutionsPerSecond() const { return m_revolutionsPerSecond; }
    int numberOfLines() const { return m_numberOfLines; }
    int lineLength() const { return m_lineLength; }
    int lineWidth() const { return m_lineWidth; }
    int innerRadius() const { return m_innerRadius; }
    int currentCounter() const { return m_currentCounter; }
    int timerInterval() const { return m_timer->interval(); }

    bool isSpinning() const { return m_isSpinning; }

    // how many steps line `current` trails behind the leading line `primary`
    static int lineCountDistanceFromPrimary(int current, int primary, int totalNrOfLines);
    // colour of a line `distance` steps behind the leading one; the leading line has
    // the full colour, lines beyond the fading trail the minimum opacity (in percent)
    static QColor currentLineColor(int distance, int totalNrOfLines, qreal trailFadePerc,
                                   qreal minOpacity, QColor color);

public slots:
    void start();
    void stop();

private slots:
    void rotate();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void initialize();
    void updateSize();
    void updateTimer();
    void updatePosition();

    QColor m_color;
    qreal m_roundness;
    qreal m_minimumTrailOpacity;
    qreal m_trailFadePercentage;
    qreal m_revolutionsPerSecond;
    int m_numberOfLines;
    int m_lineLength;
    int m_lineWidth;
    int m_innerRadius;
    QTimer *m_timer;
    bool m_centerOnParent;
    bool m_disableParentWhenSpinning;
    int m_currentCounter;
    bool m_isSpinning;
};

#endif // WAITINGSPINNERWIDGET_H
