#ifndef QSERIALPORCHECK_H
#define QSERIALPORCHECK_H

#include <QObject>
#include <QStringList>

class QTimer;

// Polls the system's serial ports once a second and reports the list whenever the
// number of ports changed. Only the count is compared: a port that vanishes in the
// same tick in which another appears goes unnoticed, and the pages rely on exactly
// this rule.
//
// The list is what Qt enumerates, followed by the virtual ports: symbolic links
// directly in /dev to a pseudo-terminal, as `socat ... link=/dev/ttyV0` or a board
// simulator makes them. Enumerating opens every tty the system knows of, some
// thousands of files a second, so a tick enumerates only when a device can have come
// or gone: when /dev changed, or a listed virtual port lost its pseudo-terminal.
class QSerialPorCheck : public QObject
{
    Q_OBJECT
public:
    explicit QSerialPorCheck(QObject *parent = nullptr);

    void start();
    void setInterval(int msec);
    bool isActive() const;
    int interval() const;

    QStringList serialports() const { return m_serialports; }
    // how many ticks enumerated the ports
    int scanCount() const { return m_nScanCount; }
    // the short names of the symbolic links in devDir that point to a pseudo-terminal
    // (/dev/pts/N, which must exist), sorted
    static QStringList virtualPorts(const QString &devDir = QStringLiteral("/dev"));
    // the decision of one tick, given the short names the system reports now
    void updateSerialports(const QStringList &serialports);

signals:
    void signalSerialChanged(QStringList serials);

public slots:
    void SltCheckSerialport();

private:
    bool devicesMayHaveChanged();

    QTimer *m_checkTimer;
    QStringList m_serialports;
    // what /dev looked like at the last enumeration (modification and change times,
    // inode), and the pseudo-terminals the virtual ports then pointed to
    QByteArray m_devStamp;
    QStringList m_virtualTargets;
    int m_nScanCount;
};

#endif // QSERIALPORCHECK_H
