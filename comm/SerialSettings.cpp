#include "SerialSettings.h"
#include "QextSerialPort.h"
#include "QtSerialPort.h"

bool SerialSettings::open(QextSerialPort *port, int timeoutMs) const
{
    port->setPortName(path);
    if (!port->open(QIODevice::ReadWrite))
        return false;
    port->setBaudRate(baudRate);
    port->setDataBits(dataBits);
    port->setStopBits(stopBits);
    port->setParity(parity);
    if (timeoutMs >= 0)
        port->setTimeout(timeoutMs);
    return true;
}

bool SerialSettings::open(QtSerialPort *port) const
{
    port->open(path, baudRate, dataBits, stopBits, parity);
    return port->isOpen();
}

QString SerialSettings::openedText(const QString &name)
{
    return QString("串口[%1]打开成功!").arg(name);
}

QString SerialSettings::failedText(const QString &name)
{
    return QString("串口[%1]打开失败!!!").arg(name);
}

QString SerialSettings::closedText(const QString &name)
{
    return QString("串口[%1]已关闭!!").arg(name);
}

QString SerialSettings::pulledText()
{
    return QString("当前串口已拔出，请重新打开!");
}
