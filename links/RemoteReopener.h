#ifndef REMOTEREOPENER_H
#define REMOTEREOPENER_H

#include <QObject>
#include <QString>

class QTimer;

// Decides when to try again a remote serial port ("rfc2217://HOST:PORT") whose session
// was lost: the server went away, reset the session, or the port watcher closed it.
// Unlike a local device, a remote one cannot be seen coming back; only an attempt
// tells. So after a loss it asks for a reopen 0.5 s later, and after each failed
// attempt waits twice as long, up to 10 s, as a reconnecting TCP client does.
// A close by the user ends the trying; so does turning it off.
class RemoteReopener : public QObject
{
    Q_OBJECT
public:
    explicit RemoteReopener(QObject *parent = nullptr);

    void setEnabled(bool on);
    bool isEnabled() const { return m_enabled; }
    // a loss is waiting for its reopen, which comes
    bool isWaiting() const { return m_lost && m_enabled; }

public slots:
    void linkOpened(const QString &name);
    void linkClosed(bool lost);
    // the reopen asked for did not open the port
    void attemptFailed();

signals:
    void reopenWanted(const QString &name);
    // the next attempt comes after delayMs
    void retrying(const QString &name, int delayMs);

private slots:
    void SltRetry();

private:
    void schedule();

    QTimer *m_timer;
    QString m_name;
    int m_failures = 0;
    bool m_enabled = false;
    bool m_lost = false;
};

#endif // REMOTEREOPENER_H
