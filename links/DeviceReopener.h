#ifndef DEVICEREOPENER_H
#define DEVICEREOPENER_H

#include <QObject>
#include <QString>

class QTimer;

// Decides when a serial device that went away is back. It is told when the link
// opened (the device's path) and when it closed, and whether that close was a loss
// (pulled, vanished) rather than the user's; after a loss it looks every interval
// for the device and asks for a reopen while the device is present and the link is
// still closed.
//
// The device is the same path, or for a USB serial adapter the same
// /dev/serial/by-id name: the kernel may give the adapter another number when it
// comes back (ttyUSB0 then ttyUSB1), and the by-id name follows the adapter.
class DeviceReopener : public QObject
{
    Q_OBJECT
public:
    explicit DeviceReopener(QObject *parent = nullptr);

    void setEnabled(bool on);
    bool isEnabled() const { return m_enabled; }
    void setInterval(int msec);
    void setByIdDir(const QString &dir) { m_byIdDir = dir; }

    // the by-id name (full path) of the device at path, or an empty string
    static QString byIdName(const QString &path, const QString &byIdDir);
    // where the remembered device is now, or an empty string while it is absent
    QString presentPath() const;
    bool isWaiting() const { return m_lost && !m_path.isEmpty(); }

public slots:
    void linkOpened(const QString &path);
    void linkClosed(bool lost);
    void SltCheck();

signals:
    void reopenWanted(const QString &path);

private:
    QTimer *m_timer;
    QString m_byIdDir = QStringLiteral("/dev/serial/by-id");
    QString m_path;
    QString m_byId;
    bool m_enabled = false;
    bool m_lost = false;
};

#endif // DEVICEREOPENER_H
