#include "LinkTap.h"

LinkTap::LinkTap(QObject *parent)
    : QObject(parent)
{
}

LinkTap::LinkTap(Writer writer, QObject *parent)
    : QObject(parent)
    , m_writer(std::move(writer))
{
}

void LinkTap::setWriter(Writer writer)
{
    m_writer = std::move(writer);
}

void LinkTap::reportOpened(const QString &name)
{
    // a page that reopens without a close in between still announces one life at a time
    if (m_bOpen)
        reportClosed();
    m_strName = name;
    m_bOpen = true;
    emit opened(name);
}

void LinkTap::reportClosed()
{
    if (!m_bOpen)
        return;
    m_bOpen = false;
    emit closed();
}

void LinkTap::reportReceived(const QByteArray &bytes)
{
    if (!bytes.isEmpty())
        emit received(bytes);
}

void LinkTap::reportSent(const QByteArray &bytes)
{
    if (!bytes.isEmpty())
        emit sent(bytes);
}

qint64 LinkTap::write(const QByteArray &bytes)
{
    if (!m_bOpen || !m_writer)
        return -1;
    return m_writer(bytes);
}
