#include "QtCountLabel.h"

#include <QTimer>

#include "UiSkin.h"

#include <QPainter>

namespace {
const int FrameMs = 30;
}

QtCountLabel::QtCountLabel(QWidget *parent)
    : QWidget(parent)
    , m_repaintTimer(new QTimer(this))
{
    m_repaintTimer->setSingleShot(true);
    connect(m_repaintTimer, SIGNAL(timeout()), this, SLOT(SltRepaintDue()));
}

void QtCountLabel::setCounts(const QStringList &counts)
{
    if (counts == m_strCounts)
        return;
    m_strCounts = counts;
    if (m_repaintTimer->isActive())
        return; // the due repaint shows these too
    const qint64 since = m_lastRepaint.isValid() ? m_lastRepaint.elapsed() : FrameMs;
    if (since >= FrameMs)
        SltRepaintDue();
    else
        m_repaintTimer->start(int(FrameMs - since));
}

void QtCountLabel::SltRepaintDue()
{
    m_lastRepaint.start();
    update();
}

QVector<QRect> QtCountLabel::columnRects(const QSize &size, int count)
{
    QVector<QRect> rects;
    if (count <= 0)
        return rects;
    const int column = size.width() / count;
    for (int i = 0; i < count; ++i)
        rects.append(QRect(5 + i * column, 0, column - 5, size.height()));
    return rects;
}

void QtCountLabel::paintEvent(QPaintEvent *)
{
    if (m_strCounts.isEmpty())
        return;
    // the painter keeps the widget's own pen, which the style sheet colours
    QPainter painter(this);
    QFont font(UiSkin::m_strAppFontNormal);
    font.setPixelSize(13);
    painter.setFont(font);
    const QVector<QRect> rects = columnRects(size(), m_strCounts.size());
    for (int i = 0; i < rects.size(); ++i)
        painter.drawText(rects.at(i), Qt::AlignVCenter, m_strCounts.at(i));
}
