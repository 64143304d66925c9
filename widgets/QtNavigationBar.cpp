#include "QtNavigationBar.h"

#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <cmath>

QtNavigationBar::QtNavigationBar(QWidget *parent)
    : QWidget(parent)
    , m_bgColorStart(121, 121, 121)
    , m_bgColorEnd(78, 78, 78)
    , m_barColorStart(46, 132, 243)
    , m_barColorEnd(39, 110, 203)
    , m_textNormalColor(230, 230, 230)
    , m_textSelectColor(255, 255, 255)
    , m_currentIndex(-1)
    , m_bgRadius(0)
    , m_barRadius(0)
    , m_space(25)
    , m_lineWidth(3)
    , m_lineColor(255, 107, 107)
    , m_barStyle(BarStyle_Rect)
    , m_keyMove(false)
    , m_horizontal(true)
    , m_flat(false)
    , m_barLen(0)
    , m_targetLen(0)
    , m_nStep(0)
    , m_bForward(true)
    , m_bFirstPaint(true)
{
    m_oldBgColorEnd = m_bgColorEnd;
    m_oldBarColorEnd = m_barColorEnd;

    m_timer = new QTimer(this);
    m_timer->setInterval(10);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(slide()));

    setFocusPolicy(Qt::NoFocus);
}

QSize QtNavigationBar::sizeHint() const
{
    return QSize(500, 30);
}

QSize QtNavigationBar::minimumSizeHint() const
{
    return QSize(30, 30);
}

int QtNavigationBar::initStep(int distance)
{
    if (distance < 1)
        return 1;
    int n = 1;
    while (n * n <= distance)
        ++n;
    return int(n * 1.4);
}

bool QtNavigationBar::slideOnce(double &pos, int &step, double target, bool forward)
{
    if (step > 1)
        --step;
    pos += forward ? step : -step;
    const bool reached = forward ? pos >= target : pos <= target;
    if (reached)
        pos = target;
    return reached;
}

QString QtNavigationBar::itemName(int index) const
{
    if (index < 0 || index >= m_listItem.size())
        return QString();
    return m_listItem.at(index).first;
}

QRectF QtNavigationBar::itemRect(int index) const
{
    if (index < 0 || index >= m_listItem.size())
        return QRectF();
    return m_listItem.at(index).second;
}

bool QtNavigationBar::isSliding() const
{
    return m_timer->isActive();
}

QFont QtNavigationBar::itemFont() const
{
    QFont font = this->font();
    font.setWeight(75);
    return font;
}

// All items get the size of the longest name plus the space, laid end to end from
// the start of the bar.
void QtNavigationBar::updateItemRects()
{
    if (m_listItem.isEmpty())
        return;

    QString longest;
    for (const auto &item : qAsConst(m_listItem)) {
        if (item.first.length() > longest.length())
            longest = item.first;
    }
    const QFontMetrics fm(itemFont());
    const int textLen = m_horizontal ? fm.horizontalAdvance(longest) : fm.height();
    const int itemLen = textLen + m_space;

    int initLen = 0;
    for (auto &item : m_listItem) {
        if (m_horizontal)
            item.second = QRectF(initLen, 0, itemLen, height());
        else
            item.second = QRectF(0, initLen, width(), itemLen);
        initLen += itemLen;
    }
}

void QtNavigationBar::resizeEvent(QResizeEvent *)
{
    if (m_listItem.isEmpty())
        return;
    updateItemRects();

    if (m_currentItem.isEmpty()) {
        m_currentIndex = 0;
        m_currentItem = m_listItem.first().first;
    }
    for (int i = 0; i < m_listItem.size(); ++i) {
        if (m_listItem.at(i).first == m_currentItem) {
            moveTo(i);
            return;
        }
    }
    moveTo(0);
}

void QtNavigationBar::mousePressEvent(QMouseEvent *event)
{
    moveTo(event->localPos());
}

void QtNavigationBar::keyPressEvent(QKeyEvent *event)
{
    if (!m_keyMove) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        movePrevious();
        break;
    case Qt::Key_Right:
    case Qt::Key_Down:
        moveNext();
        break;
    default:
        QWidget::keyPressEvent(event);
        break;
    }
}

void QtNavigationBar::paintEvent(QPaintEvent *)
{
    updateItemRects();
    if (m_bFirstPaint && !m_listItem.isEmpty()) {
        m_bFirstPaint = false;
        // a slide that ran before the first paint already placed the bar
        if (m_rectBar.isNull())
            m_rectBar = m_listItem.first().second;
    }

    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    drawBg(&painter);
    drawBar(&painter);
    drawText(&painter);
}

void QtNavigationBar::drawBg(QPainter *painter)
{
    painter->save();
    painter->setPen(Qt::NoPen);
    QLinearGradient gradient(QPointF(0, 0), QPointF(0, height()));
    gradient.setColorAt(0.0, m_bgColorStart);
    gradient.setColorAt(1.0, m_bgColorEnd);
    painter->setBrush(gradient);
    painter->drawRoundedRect(rect(), m_bgRadius, m_bgRadius);
    painter->restore();
}

void QtNavigationBar::drawBar(QPainter *painter)
{
    painter->save();
    QLinearGradient gradient(m_rectBar.topLeft(), m_rectBar.bottomLeft());
    gradient.setColorAt(0.0, m_barColorStart);
    gradient.setColorAt(1.0, m_barColorEnd);
    painter->setBrush(gradient);

    if (m_barStyle == BarStyle_Rect) {
        painter->setPen(Qt::NoPen);
        painter->drawRoundedRect(m_rectBar, m_barRadius, m_barRadius);
    } else {
        QPen pen(QBrush(gradient), m_lineWidth);
        painter->setPen(pen);
        painter->drawRoundedRect(m_rectBar, m_barRadius, m_barRadius);

        pen.setColor(m_lineColor);
        pen.setBrush(m_lineColor);
        painter->setPen(pen);
        const double half = m_lineWidth / 2.0;
        const QRectF r = m_rectBar;
        switch (m_barStyle) {
        case BarStyle_Line_Top:
            painter->drawLine(QPointF(r.left(), r.top() + half), QPointF(r.right(), r.top() + half));
            break;
        case BarStyle_Line_Right:
            painter->drawLine(QPointF(r.left() + r.width() - half, r.top()),
                              QPointF(r.left() + r.width() - half, r.bottom()));
            break;
        case BarStyle_Line_Bottom:
            painter->drawLine(QPointF(r.left(), r.top() + r.height() - half),
                              QPointF(r.right(), r.top() + r.height() - half));
            break;
        case BarStyle_Line_Left:
            painter->drawLine(QPointF(r.left() + half, r.top()), QPointF(r.left() + half, r.bottom()));
            break;
        default:
            break;
        }
    }
    painter->restore();
}

static bool sameRect(const QRectF &a, const QRectF &b)
{
    return qFuzzyCompare(a.x() + 1, b.x() + 1) && qFuzzyCompare(a.y() + 1, b.y() + 1)
        && qFuzzyCompare(a.width() + 1, b.width() + 1) && qFuzzyCompare(a.height() + 1, b.height() + 1);
}

void QtNavigationBar::drawText(QPainter *painter)
{
    painter->save();
    painter->setFont(itemFont());
    const QRectF current = itemRect(m_currentIndex);
    for (const auto &item : qAsConst(m_listItem)) {
        const bool selected = m_currentIndex >= 0 && sameRect(item.second, current);
        painter->setPen(selected ? m_textSelectColor : m_textNormalColor);
        painter->drawText(item.second, Qt::AlignCenter, item.first);
    }
    painter->restore();
}

void QtNavigationBar::slide()
{
    if (slideOnce(m_barLen, m_nStep, m_targetLen, m_bForward))
        m_timer->stop();

    if (m_horizontal)
        m_rectBar = QRectF(m_barLen, 0, m_rectTarget.width(), height());
    else
        m_rectBar = QRectF(0, m_barLen, width(), m_rectTarget.height());
    update();
}

void QtNavigationBar::clearItem()
{
    m_listItem.clear();
    update();
}

void QtNavigationBar::moveFirst()
{
    if (m_currentIndex != 0)
        moveTo(0);
}

void QtNavigationBar::moveLast()
{
    const int last = m_listItem.size() - 1;
    if (m_currentIndex != last)
        moveTo(last);
}

void QtNavigationBar::movePrevious()
{
    if (m_currentIndex > 0)
        moveTo(m_currentIndex - 1);
}

void QtNavigationBar::moveNext()
{
    if (m_currentIndex < m_listItem.size() - 1)
        moveTo(m_currentIndex + 1);
}

void QtNavigationBar::moveTo(int index)
{
    if (index < 0 || index >= m_listItem.size())
        return;
    moveTo(QPointF(m_listItem.at(index).second.topLeft().toPoint()));
}

void QtNavigationBar::moveTo(const QString &item)
{
    for (int i = 0; i < m_listItem.size(); ++i) {
        if (m_listItem.at(i).first == item) {
            moveTo(i);
            return;
        }
    }
}

// Item rectangles share their borders; a point on a border belongs to the later
// item, so moving to an item by its top left reaches that item alone.
void QtNavigationBar::moveTo(const QPointF &point)
{
    int index = -1;
    for (int i = 0; i < m_listItem.size(); ++i) {
        if (m_listItem.at(i).second.contains(point))
            index = i;
    }
    if (index < 0)
        return;

    m_currentIndex = index;
    m_currentItem = m_listItem.at(index).first;
    m_rectTarget = m_listItem.at(index).second;

    if (m_horizontal) {
        m_targetLen = m_rectTarget.x();
        m_barLen = m_rectBar.x();
    } else {
        m_targetLen = m_rectTarget.y();
        m_barLen = m_rectBar.y();
    }
    m_bForward = m_targetLen > m_barLen;
    m_nStep = initStep(int(qAbs(m_targetLen - m_barLen)));
    m_timer->start();

    emit currentItemChanged(m_currentIndex, m_currentItem);
}

void QtNavigationBar::setBgColorStart(const QColor &color)
{
    if (m_bgColorStart != color) {
        m_bgColorStart = color;
        update();
    }
}

void QtNavigationBar::setBgColorEnd(const QColor &color)
{
    if (m_bgColorEnd != color) {
        m_bgColorEnd = color;
        m_oldBgColorEnd = color;
        update();
    }
}

void QtNavigationBar::setBarColorStart(const QColor &color)
{
    if (m_barColorStart != color) {
        m_barColorStart = color;
        update();
    }
}

void QtNavigationBar::setBarColorEnd(const QColor &color)
{
    if (m_barColorEnd != color) {
        m_barColorEnd = color;
        m_oldBarColorEnd = color;
        update();
    }
}

void QtNavigationBar::setTextNormalColor(const QColor &color)
{
    if (m_textNormalColor != color) {
        m_textNormalColor = color;
        update();
    }
}

void QtNavigationBar::setTextSelectColor(const QColor &color)
{
    if (m_textSelectColor != color) {
        m_textSelectColor = color;
        update();
    }
}

void QtNavigationBar::setItems(const QString &items)
{
    m_items = items;
    m_listItem.clear();
    const QStringList names = items.split(";", Qt::SkipEmptyParts);
    for (const QString &name : names)
        m_listItem.append(qMakePair(name, QRectF()));
    // rectangles now rather than at the next paint, so that moves work at once
    updateItemRects();
    update();
}

void QtNavigationBar::setCurrentIndex(int index)
{
    moveTo(index);
}

void QtNavigationBar::setCurrentItem(const QString &item)
{
    moveTo(item);
}

void QtNavigationBar::setBgRadius(int radius)
{
    if (m_bgRadius != radius) {
        m_bgRadius = radius;
        update();
    }
}

void QtNavigationBar::setBarRadius(int radius)
{
    if (m_barRadius != radius) {
        m_barRadius = radius;
        update();
    }
}

void QtNavigationBar::setSpace(int space)
{
    if (m_space != space) {
        m_space = space;
        updateItemRects();
        update();
    }
}

void QtNavigationBar::setLineWidth(int width)
{
    if (m_lineWidth != width) {
        m_lineWidth = width;
        update();
    }
}

void QtNavigationBar::setLineColor(const QColor &color)
{
    if (m_lineColor != color) {
        m_lineColor = color;
        update();
    }
}

void QtNavigationBar::setBarStyle(QtNavigationBar::BarStyle style)
{
    if (m_barStyle != style) {
        m_barStyle = style;
        update();
    }
}

void QtNavigationBar::setKeyMove(bool keyMove)
{
    if (m_keyMove != keyMove) {
        m_keyMove = keyMove;
        setFocusPolicy(keyMove ? Qt::StrongFocus : Qt::NoFocus);
    }
}

void QtNavigationBar::setHorizontal(bool horizontal)
{
    if (m_horizontal != horizontal) {
        m_horizontal = horizontal;
        updateItemRects();
        update();
    }
}

void QtNavigationBar::setFlat(bool flat)
{
    if (m_flat == flat)
        return;
    m_flat = flat;
    if (flat) {
        m_bgColorEnd = m_bgColorStart;
        m_barColorEnd = m_barColorStart;
    } else {
        m_bgColorEnd = m_oldBgColorEnd;
        m_barColorEnd = m_oldBarColorEnd;
    }
    update();
}
