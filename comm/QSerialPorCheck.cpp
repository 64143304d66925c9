#include "QSerialPorCheck.h"

#include <QSerialPortInfo>
#include <QTimer>

QSerialPorCheck::QSerialPorCheck(QObject *parent)
    : QObject(parent), m_checkTimer(new QTimer(this))
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
    QStringList names;
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : ports)
        names << info.portName();
    updateSerialports(names);
}

void QSerialPorCheck::updateSerialports(const QStringList &serialports)
{
    if (serialports.size() == m_serialports.size())
        return;
    m_serialports = serialports;
    emit signalSerialChanged(m_serialports);
}
