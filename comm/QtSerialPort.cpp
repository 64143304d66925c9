#include "QtSerialPort.h"

#include <QDebug>
#include <QGuiApplication>
#include <QSerialPort>
#include <QX11Info>
#include <xcb/xcb.h>

// The bell QApplication::beep rings, without bringing the widget library into the
// link layer: on X11 that is the server's bell at the base volume, rung on the
// application's own connection; other platforms have none. A process without a GUI
// (a simulator, a fuzz target) stays silent.
static void beep()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()) || !QX11Info::isPlatformX11())
        return;
    if (xcb_connection_t *connection = QX11Info::connection()) {
        xcb_bell(connection, 0);
        xcb_flush(connection);
    }
}

QtSerialPort::QtSerialPort(QObject *parent)
    : QObject(parent)
    , m_serialport(new QSerialPort(this))
{
    connect(m_serialport, SIGNAL(readyRead()), this, SLOT(SltReadFromSerialport()));
}

QtSerialPort::~QtSerialPort()
{
    // closed here, then deleted with this object as its child: its connections go
    // with it, so no readyRead can reach a half-destroyed wrapper
    if (m_serialport && m_serialport->isOpen())
        m_serialport->close();
}

bool QtSerialPort::isOpen()
{
    if (!m_serialport)
        return false;
    return m_serialport->isOpen();
}

QString QtSerialPort::errorString()
{
    if (!m_serialport)
        return "串口未初始化！~";
    return m_serialport->errorString();
}

QString QtSerialPort::portName() const
{
    if (!m_serialport)
        return "null";
    return m_serialport->portName();
}

void QtSerialPort::open(QString portName, int baudRate, int dataBits, int stopBits, int parity)
{
    if (m_serialport->isOpen())
        m_serialport->close();

    m_serialport->setPortName(portName);
    m_serialport->setBaudRate(baudRate, QSerialPort::AllDirections);
    m_serialport->setDataBits(static_cast<QSerialPort::DataBits>(dataBits));
    QSerialPort::StopBits stop;
    if (stopBits == 0)
        stop = QSerialPort::OneStop;
    else if (stopBits == 1)
        stop = QSerialPort::OneAndHalfStop;
    else
        stop = static_cast<QSerialPort::StopBits>(stopBits);
    m_serialport->setStopBits(stop);
    m_serialport->setParity(static_cast<QSerialPort::Parity>(parity));

    // QSerialPort reports failed DTR/RTS or line-setting ioctls (ptys refuse some of
    // them) through errorOccurred only; the open itself decides success
    if (!m_serialport->open(QIODevice::ReadWrite))
        beep();
}

void QtSerialPort::close()
{
    // a frame written just before closing (the page's stop command) would be dropped
    // with QSerialPort's write buffer otherwise
    if (m_serialport->isOpen())
        m_serialport->flush();
    m_serialport->close();
}

void QtSerialPort::writeBytes(QByteArray data)
{
    if (!m_serialport)
        return;
    if (m_serialport->write(data) == -1)
        qWarning() << "Write data failed:" << m_serialport->errorString();
}

void QtSerialPort::SltReadFromSerialport()
{
    const QByteArray data = m_serialport->readAll();
    emit bytesRead(data);
}
