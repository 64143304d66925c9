#include "Recorder.h"

#include "SimEndpoint.h"
#include "SimLog.h"

#include <QCoreApplication>
#include <QTimer>
#include <QtEndian>

const QByteArray Recorder::Magic("LARKREC1");

Recorder::Recorder(SimEndpoint *endpoint, QObject *parent)
    : QObject(parent)
    , m_endpoint(endpoint)
{
}

bool Recorder::record(const QString &path, QString *error)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate) || m_file.write(Magic) != Magic.size()) {
        *error = QString("cannot write %1").arg(path);
        return false;
    }
    m_file.flush();
    connect(m_endpoint, SIGNAL(received(QByteArray)), this, SLOT(received(QByteArray)));
    return true;
}

void Recorder::received(const QByteArray &data)
{
    if (!m_clock.isValid())
        m_clock.start();
    uchar head[12];
    qToLittleEndian<qint64>(m_clock.nsecsElapsed() / 1000, head);
    qToLittleEndian<quint32>(quint32(data.size()), head + 8);
    m_file.write(reinterpret_cast<const char *>(head), 12);
    m_file.write(data);
    // every chunk reaches the disk at once, so an interrupted recording is whole
    m_file.flush();
    ++m_chunks;
}

bool Recorder::replay(const QString &path, double speed, QString *error)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly)) {
        *error = QString("cannot read %1").arg(path);
        return false;
    }
    const QByteArray all = m_file.readAll();
    if (!all.startsWith(Magic)) {
        *error = QString("%1 is not a larksim recording").arg(path);
        return false;
    }
    for (int at = Magic.size(); at < all.size();) {
        if (all.size() - at < 12) {
            *error = QString("%1 is cut short").arg(path);
            return false;
        }
        const auto *p = reinterpret_cast<const uchar *>(all.constData() + at);
        const qint64 us = qFromLittleEndian<qint64>(p);
        const int size = int(qFromLittleEndian<quint32>(p + 8));
        if (size < 0 || all.size() - at - 12 < size) {
            *error = QString("%1 is cut short").arg(path);
            return false;
        }
        m_play.append({us, all.mid(at + 12, size)});
        at += 12 + size;
    }
    m_speed = speed;
    connect(m_endpoint, SIGNAL(peerChanged(bool)), this, SLOT(peerChanged(bool)));
    if (m_endpoint->hasPeer())
        peerChanged(true);
    return true;
}

void Recorder::peerChanged(bool present)
{
    if (!present || m_next >= 0)
        return;
    SimLog::line(QString("replaying %1 chunks").arg(m_play.size()));
    m_next = 0;
    m_clock.start();
    playNext();
}

void Recorder::playNext()
{
    while (m_next < m_play.size()) {
        const qint64 dueUs = m_speed > 0 ? qint64(m_play.at(m_next).us / m_speed) : 0;
        const qint64 waitMs = (dueUs - m_clock.nsecsElapsed() / 1000) / 1000;
        if (waitMs > 0) {
            QTimer::singleShot(int(waitMs), Qt::PreciseTimer, this, SLOT(playNext()));
            return;
        }
        m_endpoint->write(m_play.at(m_next++).bytes);
    }
    if (m_endpoint->pending() > 0) {
        QTimer::singleShot(10, this, SLOT(playNext()));
        return;
    }
    if (m_next == m_play.size()) {
        SimLog::line("replay done");
        ++m_next;
        QTimer::singleShot(m_endpoint->lingerMs(), qApp, SLOT(quit()));
    }
}
