#include "QtMessageTip.h"

#include <QFontMetrics>
#include <QMutex>
#include <QMutexLocker>
#include <QPainter>
#include <QPainterPath>

QtMessageTip *QtMessageTip::self = nullptr;

QtMessageTip *QtMessageTip::Instance()
{
    if (!self) {
        static QMutex mutex;
        QMutexLocker locker(&mutex);
        if (!self)
            self = new QtMessageTip();
    }
    return self;
}

QtMessageTip::QtMessageTip(QWidget *parent)
    : QWidget(parent)
    , m_parentWidget(nullptr)
    , m_nMode(Toast)
    , m_nShowSequence(0)
{
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose);

    m_font = QFont("Microsoft YaHei");
    m_font.setPixelSize(13);

    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(sltTimeOut()));
}

QtMessageTip::~QtMessageTip()
{
    // the owner deletes the singleton at shutdown; a later Instance() must not hand
    // out the dead object
    if (self == this)
        self = nullptr;
}

QSize QtMessageTip::sizeHint() const
{
    return QSize(120, 40);
}

void QtMessageTip::SetParentWidget(QWidget *parent)
{
    if (parent)
        m_parentWidget = parent;
}

void QtMessageTip::calcTextWidth()
{
    const QFontMetrics fm(m_font);
    resize(fm.horizontalAdvance(m_strText) + 20, fm.height() + 25);
}

void QtMessageTip::ShowMessage(const QString &text, QPoint pos)
{
    if (text.isEmpty())
        return;

    m_timer->stop();
    m_nMode = ToolTip;
    m_strText = text;
    calcTextWidth();
    move(pos);
    update();
    show();

    const int sequence = ++m_nShowSequence;
    QTimer::singleShot(2000, this, [this, sequence]() { sltHideTip(sequence); });
}

void QtMessageTip::sltHideTip(int sequence)
{
    if (sequence == m_nShowSequence)
        hide();
}

void QtMessageTip::ShowToastMessage(const QString &text, int msec)
{
    if (isVisible())
        hide();

    ++m_nShowSequence;
    m_nMode = Toast;
    m_strText = text;
    update();
    calcTextWidth();

    if (m_parentWidget) {
        // a child widget's pos() is relative to its own parent; toasts are placed in
        // screen coordinates
        const QPoint origin = m_parentWidget->isWindow() ? m_parentWidget->pos()
                                                         : m_parentWidget->mapToGlobal(QPoint(0, 0));
        move(origin.x() + (m_parentWidget->width() - width()) / 2,
             origin.y() + (m_parentWidget->height() - height()) / 2);
    }
    update();
    show();

    // the previous toast's time must not run on into this one
    m_timer->stop();
    if (msec > 100) {
        m_timer->setInterval(msec);
        m_timer->start();
    }
}

void QtMessageTip::sltTimeOut()
{
    m_strText.clear();
    update();
    hide();
}

void QtMessageTip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(m_font);

    if (m_nMode == ToolTip) {
        const QRect body(1, 10, width() - 2, height() - 10);
        QPainterPath path;
        path.addRoundedRect(body, 5, 5);
        QPolygon arrow;
        arrow << QPoint(11, 10) << QPoint(16, 2) << QPoint(21, 10);
        path.addPolygon(arrow);
        // the arrow overlaps the body's top edge; winding fill keeps the overlap solid
        path.setFillRule(Qt::WindingFill);

        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor("#f03e10"));
        painter.drawPath(path);

        painter.setPen(QColor("#ffffff"));
        painter.drawText(body, Qt::AlignCenter, m_strText);
    } else {
        const QRect body = rect().adjusted(2, 2, -2, -2);
        painter.setPen(QColor("#797979"));
        painter.setBrush(QColor("#252526"));
        painter.drawRoundedRect(body, 5, 5);

        painter.setPen(QColor("#f2f2f2"));
        painter.drawText(body, Qt::AlignCenter, m_strText);
    }
}
