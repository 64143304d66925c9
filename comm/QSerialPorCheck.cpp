#include "QSerialPorCheck.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QTimer>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// The pseudo-terminal a link points to, one step and not further: /dev/stdin leads to
// a pty through /proc when the program runs in a terminal, and is not a port.
QString ptyTarget(const QFileInfo &entry)
{
    if (!entry.isSymLink())
        return QString();
    // the link's own text: QFile::symLinkTarget would follow further links
    const QByteArray path = QFile::encodeName(entry.absoluteFilePath());
    char buf[4096];
    const ssize_t n = ::readlink(path.constData(), buf, sizeof buf - 1);
    if (n <= 0)
        return QString();
    QString target = QFile::decodeName(QByteArray(buf, int(n)));
    if (QDir::isRelativePath(target))
        target = entry.absolutePath() + '/' + target;
    target = QDir::cleanPath(target);
    static const QString pts = QStringLiteral("/dev/pts/");
    if (!target.startsWith(pts))
        return QString();
    bool number = false;
    target.mid(pts.size()).toUInt(&number);
    if (!number)
        return QString(); // /dev/pts/ptmx is the multiplexer, not a terminal
    struct stat st;
    if (::stat(QFile::encodeName(target).constData(), &st) != 0 || !S_ISCHR(st.st_mode))
        return QString();
    return target;
}

QByteArray dirStamp(const char *path)
{
    struct stat st;
    if (::stat(path, &st) != 0)
        return QByteArray("-");
    QByteArray stamp;
    for (qint64 v : {qint64(st.st_mtim.tv_sec), qint64(st.st_mtim.tv_nsec), qint64(st.st_ctim.tv_sec),
                     qint64(st.st_ctim.tv_nsec), qint64(st.st_ino)})
        stamp += QByteArray::number(v) + ',';
    return stamp;
}

} // namespace

QSerialPorCheck::QSerialPorCheck(QObject *parent)
    : QObject(parent), m_checkTimer(new QTimer(this)), m_nScanCount(0)
{
    m_checkTimer->setInterval(1000);
    connect(m_checkTimer, SIGNAL(timeout()), this, SLOT(SltCheckSerialport()));
}

void QSerialPorCheck::start()
{
    if (!m_checkTimer->isActive())
        m_checkTimer->start();
}

void QSerialPorCheck::setInterval(int msec)
{
    if (m_checkTimer->isActive())
        m_checkTimer->stop();
    m_checkTimer->setInterval(msec);
    m_checkTimer->start();
}

bool QSerialPorCheck::isActive() const
{
    return m_checkTimer->isActive();
}

int QSerialPorCheck::interval() const
{
    return m_checkTimer->interval();
}

void QSerialPorCheck::SltCheckSerialport()
{
    if (!devicesMayHaveChanged())
        return;
    ++m_nScanCount;
    QStringList names;
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : ports)
        names << info.portName();
    m_virtualTargets.clear();
    const QStringList links = virtualPorts();
    for (const QString &link : links) {
        if (!names.contains(link))
            names << link;
        m_virtualTargets << ptyTarget(QFileInfo("/dev/" + link));
    }
    updateSerialports(names);
}

// A stat of /dev, and one of each listed virtual port's pseudo-terminal: a new device
// node or link changes /dev, a socat that ends takes its pty with it.
bool QSerialPorCheck::devicesMayHaveChanged()
{
    const QByteArray stamp = dirStamp("/dev");
    bool changed = m_nScanCount == 0 || stamp != m_devStamp;
    for (const QString &target : qAsConst(m_virtualTargets)) {
        struct stat st;
        if (changed)
            break;
        changed = target.isEmpty() || ::stat(QFile::encodeName(target).constData(), &st) != 0;
    }
    m_devStamp = stamp;
    return changed;
}

QStringList QSerialPorCheck::virtualPorts(const QString &devDir)
{
    QStringList names;
    const QFileInfoList entries = QDir(devDir).entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (!ptyTarget(entry).isEmpty())
            names << entry.fileName();
    }
    names.sort();
    return names;
}

void QSerialPorCheck::updateSerialports(const QStringList &serialports)
{
    if (serialports.size() == m_serialports.size())
        return;
    m_serialports = serialports;
    emit signalSerialChanged(m_serialports);
}
