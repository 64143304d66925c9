#include "QtIODevice.h"

QtIODevice::QtIODevice(QObject *parent)
    : QThread(parent)
{
}

void QtIODevice::run()
{
}

bool QtIODevice::isOpen()
{
    return false;
}

QString QtIODevice::errorString()
{
    return "Unknow device";
}

void QtIODevice::writeBytes(QByteArray data)
{
    Q_UNUSED(data)
}

void QtIODevice::open(QString serverAddress, QString serverPort)
{
    Q_UNUSED(serverAddress)
    Q_UNUSED(serverPort)
}

void QtIODevice::open(QString hostAddress, QString hostPort, QString peerAddress, QString peerPort)
{
    Q_UNUSED(hostAddress)
    Q_UNUSED(hostPort)
    Q_UNUSED(peerAddress)
    Q_UNUSED(peerPort)
}

void QtIODevice::open(QString portName, int baudRate, int dataBits, int stopBits, int parity)
{
    Q_UNUSED(portName)
    Q_UNUSED(baudRate)
    Q_UNUSED(dataBits)
    Q_UNUSED(stopBits)
    Q_UNUSED(parity)
}

void QtIODevice::close()
{
}
