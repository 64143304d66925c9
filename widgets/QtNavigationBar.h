#ifndef QTNAVIGATIONBAR_H
#define QTNAVIGATIONBAR_H

#include <QColor>
#include <QList>
#include <QPair>
#include <QRectF>
#include <QWidget>

class QTimer;

// A self-drawn bar of text items with a highlight that slides to the chosen item.
// All items get the size of the longest one. The item rectangles and the slide are
// computed outside painting (itemRect, initStep, slideOnce), paintEvent only draws.
class QtNavigationBar : public QWidget
{
    Q_OBJECT
public:
    enum BarStyle {
        BarStyle_Rect = 0,      // a filled bar
        BarStyle_Line_Top = 1,  // a filled bar with a line on one of its edges
        BarStyle_Line_Right = 2,
        BarStyle_Line_Bottom = 3,
        BarStyle_Line_Left = 4
    };
    Q_ENUM(BarStyle)

    Q_PROPERTY(QColor bgColorStart READ getBgColorStart WRITE setBgColorStart)
    Q_PROPERTY(QColor bgColorEnd READ getBgColorEnd WRITE setBgColorEnd)
    Q_PROPERTY(QColor barColorStart READ getBarColorStart WRITE setBarColorStart)
    Q_PROPERTY(QColor barColorEnd READ getBarColorEnd WRITE setBarColorEnd)
    Q_PROPERTY(QColor textNormalColor READ getTextNormalColor WRITE setTextNormalColor)
    Q_PROPERTY(QColor textSelectColor READ getTextSelectColor WRITE setTextSelectColor)
    Q_PROPERTY(QString items READ getItems WRITE setItems)
    Q_PROPERTY(int currentIndex READ getCurrentIndex WRITE setCurrentIndex)
    Q_PROPERTY(QString currentItem READ getCurrentItem WRITE setCurrentItem)
    Q_PROPERTY(int bgRadius READ getBgRadius WRITE setBgRadius)
    Q_PROPERTY(int barRadius READ getBarRadius WRITE setBarRadius)
    Q_PROPERTY(int space READ getSpace WRITE setSpace)
    Q_PROPERTY(int lineWidth READ getLineWidth WRITE setLineWidth)
    Q_PROPERTY(QColor lineColor READ getLineColor WRITE setLineColor)
    Q_PROPERTY(BarStyle barStyle READ getBarStyle WRITE setBarStyle)
    Q_PROPERTY(bool keyMove READ getKeyMove WRITE setKeyMove)
    Q_PROPERTY(bool horizontal READ getHorizontal WRITE setHorizontal)
    Q_PROPERTY(bool flat READ getFlat WRITE setFlat)

public:
    explicit QtNavigationBar(QWidget *parent = nullptr);

    QColor getBgColorStart() const { return m_bgColorStart; }
    QColor getBgColorEnd() const { return m_bgColorEnd; }
    QColor getBarColorStart() const { return m_barColorStart; }
    QColor getBarColorEnd() const { return m_barColorEnd; }
    QColor getTextNormalColor() const { return m_textNormalColor; }
    QColor getTextSelectColor() const { return m_textSelectColor; }
    QString getItems() const { return m_items; }
    int getCurrentIndex() const { return m_currentIndex; }
    QString getCurrentItem() const { return m_currentItem; }
    int getBgRadius() const { return m_bgRadius; }
    int getBarRadius() const { return m_barRadius; }
    int getSpace() const { return m_space; }
    int getLineWidth() const { return m_lineWidth; }
    QColor getLineColor() const { return m_lineColor; }
    BarStyle getBarStyle() const { return m_barStyle; }
    bool getKeyMove() const { return m_keyMove; }
    bool getHorizontal() const { return m_horizontal; }
    bool getFlat() const { return m_flat; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // Starting speed of a slide over that distance, in pixels per tick: the slide
    // slows by one each tick down to 1, so it starts fast and ends gently.
    static int initStep(int distance);
    // One tick of a slide: slows the step, moves pos toward target; true when the
    // target is reached (pos is then exactly the target).
    static bool slideOnce(double &pos, int &step, double target, bool forward);

    int itemCount() const { return m_listItem.size(); }
    QString itemName(int index) const;
    // the rectangle of the item at index for the current size and font; empty if none
    QRectF itemRect(int index) const;
    QRectF barRect() const { return m_rectBar; }
    bool isSliding() const;

public slots:
    void setBgColorStart(const QColor &color);
    void setBgColorEnd(const QColor &color);
    void setBarColorStart(const QColor &color);
    void setBarColorEnd(const QColor &color);
    void setTextNormalColor(const QColor &color);
    void setTextSelectColor(const QColor &color);
    void setItems(const QString &items);
    void setCurrentIndex(int index);
    void setCurrentItem(const QString &item);
    void setBgRadius(int radius);
    void setBarRadius(int radius);
    void setSpace(int space);
    void setLineWidth(int width);
    void setLineColor(const QColor &color);
    void setBarStyle(QtNavigationBar::BarStyle style);
    void setKeyMove(bool keyMove);
    void setHorizontal(bool horizontal);
    void setFlat(bool flat);

    void clearItem();
    void moveFirst();
    void moveLast();
    void movePrevious();
    void moveNext();
    void moveTo(int index);
    void moveTo(const QString &item);
    void moveTo(const QPointF &point);

signals:
    void currentItemChanged(int index, const QString &item);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private slots:
    void slide();

private:
    QFont itemFont() const;
    void updateItemRects();
    void drawBg(QPainter *painter);
    void drawBar(QPainter *painter);
    void drawText(QPainter *painter);

    QColor m_bgColorStart;
    QColor m_bgColorEnd;
    QColor m_barColorStart;
    QColor m_barColorEnd;
    QColor m_textNormalColor;
    QColor m_textSelectColor;
    QString m_items;
    int m_currentIndex;
    QString m_currentItem;
    int m_bgRadius;
    int m_barRadius;
    int m_space;
    int m_lineWidth;
    QColor m_lineColor;
    BarStyle m_barStyle;
    bool m_keyMove;
    bool m_horizontal;
    bool m_flat;

    // the end colours as set, restored when flat is turned off
    QColor m_oldBgColorEnd;
    QColor m_oldBarColorEnd;

    QList<QPair<QString, QRectF>> m_listItem;
    QRectF m_rectBar;
    QRectF m_rectTarget;
    double m_barLen;
    double m_targetLen;
    int m_nStep;
    bool m_bForward;
    bool m_bFirstPaint;
    QTimer *m_timer;
};

#endif // QTNAVIGATIONBAR_H
