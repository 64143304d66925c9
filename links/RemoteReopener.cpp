#include "RemoteReopener.h"
#include "SocketReconnector.h"

#include <QTimer>

RemoteReopener::RemoteReopener(QObject *parent)
    : QObject(parent), m_timer(new QTimer(this))
{
    m_timer->setSingleShot(true);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(SltRetry()));
}

void RemoteReopener::setEnabled(bool on)
{
    m_enabled = on;
    if (!on)
        m_timer->stop();
    else if (m_lost && !m_timer->isActive())
        schedule();
}

void RemoteReopener::linkOpened(const QString &name)
{
    m_timer->stop();
    m_name = name;
    m_lost = false;
    m_failures = 0;
}

void RemoteReopener::linkClosed(bool lost)
{
    m_lost = lost && !m_name.isEmpty();
    m_timer->stop();
    if (m_lost && m_enabled)
        schedule();
}

void RemoteReopener::attemptFailed()
{
    if (m_lost && m_enabled)
        schedule();
}

void RemoteReopener::schedule()
{
    const int delay = SocketReconnector::delayAfter(++m_failures);
    m_timer->start(delay);
    emit retrying(m_name, delay);
}

void RemoteReopener::SltRetry()
{
    if (m_enabled && m_lost)
        emit reopenWanted(m_name);
}
