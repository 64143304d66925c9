#include "DeviceReopener.h"

#include <QDir>
#include <QFileInfo>
#include <QTimer>

DeviceReopener::DeviceReopener(QObject *parent)
    : QObject(parent), m_timer(new QTimer(this))
{
    m_timer->setInterval(500);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(SltCheck()));
}

void DeviceReopener::setEnabled(bool on)
{
    m_enabled = on;
    if (on && isWaiting())
        m_timer->start();
    else if (!on)
        m_timer->stop();
}

void DeviceReopener::setInterval(int msec)
{
    m_timer->setInterval(msec);
}

QString DeviceReopener::byIdName(const QString &path, const QString &byIdDir)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    if (target.isEmpty())
        return QString();
    const QFileInfoList links = QDir(byIdDir).entryInfoList(QDir::System | QDir::Files | QDir::NoDotAndDotDot);
    for (const QFileInfo &link : links)
        if (link.isSymLink() && link.canonicalFilePath() == target)
            return link.absoluteFilePath();
    return QString();
}

QString DeviceReopener::presentPath() const
{
    // an adapter known by its identity is back only when that identity is: its old
    // number may meanwhile belong to another adapter
    if (!m_byId.isEmpty())
        return QFileInfo(m_byId).canonicalFilePath();
    // a link to a pseudo-terminal that is gone still exists as a name: only a path
    // that leads to a device counts
    const QFileInfo info(m_path);
    return info.exists() ? m_path : QString();
}

void DeviceReopener::linkOpened(const QString &path)
{
    m_timer->stop();
    m_lost = false;
    m_path = path;
    m_byId = byIdName(path, m_byIdDir);
}

void DeviceReopener::linkClosed(bool lost)
{
    m_lost = lost && !m_path.isEmpty();
    if (m_lost && m_enabled) {
        m_timer->start();
        // a close by the port watcher leaves the device in place: back at once
        QTimer::singleShot(0, this, SLOT(SltCheck()));
    } else {
        m_timer->stop();
    }
}

void DeviceReopener::SltCheck()
{
    if (!m_enabled || !isWaiting())
        return;
    const QString path = presentPath();
    if (!path.isEmpty())
        emit reopenWanted(path);
}
