#include "QtWidgetBase.h"

#include <QPainter>
#include <QStyleOption>

QtWidgetBase::QtWidgetBase(QWidget *parent)
    : QWidget(parent)
{
}

QStringList QtWidgetBase::getCounts()
{
    return QStringList() << QString::fromUtf8("发送字节数: 0") << QString::fromUtf8("接收字节数: 0");
}

void QtWidgetBase::clearCounts()
{
}

void QtWidgetBase::paintEvent(QPaintEvent *)
{
    QStyleOption opt;
    opt.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &opt, &painter, this);
}

QStringList QtWidgetBase::byteCounts(quint64 sent, quint64 received)
{
    return QStringList() << QString("发送字节: %1").arg(sent) << QString("接收字节: %1").arg(received);
}

void QtWidgetBase::emitNotice(const QPair<QString, int> &notice)
{
    if (!notice.first.isEmpty())
        emit signalNotify(notice.first, notice.second);
}
