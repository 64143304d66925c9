#ifndef QSERIALPORCHECK_H
#define QSERIALPORCHECK_H

#include <QObject>
#include <QStringList>

class QTimer;

// Polls the system's serial ports once a second and reports the list whenever the
// number of ports changed. Only the count is compared: a port that vanishes in the
// same tick in which another appears goes unnoticed, and the pages rely on exactly
// this rule.
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
    // the decision of one tick, given the short names the system reports now
    void updateSerialports(const QStringList &serialports);

signals:
    void signalSerialChanged(QStringList serials);

public slots:
    void SltCheckSerialport();

private:
    QTimer *m_checkTimer;
    QStringList m_serialports;
};

#endif // QSERIALPORCHECK_H
