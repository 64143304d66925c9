#ifndef LARKTAPSPY_H
#define LARKTAPSPY_H

#include <QByteArray>
#include <QSignalSpy>

// What a page's link tap told, gathered for a test: its life and the bytes both ways.
struct LarkTapSpy {
    explicit LarkTapSpy(QObject *tap)
        : opened(tap, SIGNAL(opened(QString)))
        , closed(tap, SIGNAL(closed()))
        , received(tap, SIGNAL(received(QByteArray)))
        , sent(tap, SIGNAL(sent(QByteArray)))
    {
    }
    QSignalSpy opened, closed, received, sent;

    // the life so far, "open NAME" and "closed" in order of the calls seen so far
    // (closes follow opens: a tap never closes what it did not open)
    QString life() const
    {
        QString text = opened.isEmpty() ? QString() : "open " + opened.last().at(0).toString();
        return closed.isEmpty() ? text : text + QString(" closed x%1").arg(closed.count());
    }
    static QByteArray joined(const QSignalSpy &spy)
    {
        QByteArray all;
        for (const QList<QVariant> &args : spy)
            all += args.at(0).toByteArray();
        return all;
    }
};

#endif // LARKTAPSPY_H
