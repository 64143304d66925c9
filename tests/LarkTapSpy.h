#ifndef LARKTAPSPY_H
#define LARKTAPSPY_H

#include <QSignalSpy>

// What a page's link tap told a test: its life as "open NAME closed xN", bytes each way.
struct LarkTapSpy {
    explicit LarkTapSpy(QObject *tap)
        : opened(tap, SIGNAL(opened(QString))), closed(tap, SIGNAL(closed())), in(tap, SIGNAL(received(QByteArray))), out(tap, SIGNAL(sent(QByteArray))) {}
    QSignalSpy opened, closed, in, out;
    QString life() const { return QString(opened.count() == 1 ? "open %1 closed x%2" : "opened x%3").arg(opened.value(0).value(0).toString()).arg(closed.count()).arg(opened.count()); }
    QByteArray received() const { return joined(in); }
    QByteArray sent() const { return joined(out); }
    static QByteArray joined(const QSignalSpy &spy)
    {
        QByteArray all;
        for (const QList<QVariant> &args : spy)
            all += args.at(0).toByteArray();
        return all;
    }
};

#endif // LARKTAPSPY_H
