#include "QtSerialPort.h"
#include "Rfc2217Port.h"

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
    if (m_remote)
        m_remote->close();
}

bool QtSerialPort::isOpen()
{
    if (m_remote && m_remote->isOpen())
        return true;
    if (!m_serialport)
        return false;
    return m_serialport->isOpen();
}

QString QtSerialPort::errorString()
{
    if (!m_serialport)
        return "串口未初始化！~";
    if (m_remote && !m_remote->errorString().isEmpty() && !m_serialport->isOpen())
        return m_remote->errorString();
    return m_serialport->errorString();
}

QString QtSerialPort::portName() const
{
    if (!m_serialport)
        return "null";
    if (m_remote && m_remote->isOpen())
        return m_remote->portName();
    return m_serialport->portName();
}

void QtSerialPort::open(QString portName, int baudRate, int dataBits, int stopBits, int parity)
{
    if (m_serialport->isOpen())
        m_serialport->close();
    if (m_remote)
        m_remote->close();

    if (!Rfc2217Port::remoteName(portName).isEmpty()) {
        openRemote(portName, baudRate, dataBits, stopBits, parity);
        return;
    }
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
    m_serialport->setFlowControl(static_cast<QSerialPort::FlowControl>(m_flow));

    // QSerialPort reports failed DTR/RTS or line-setting ioctls (ptys refuse some of
    // them) through errorOccurred only; the open itself decides success
    if (!m_serialport->open(QIODevice::ReadWrite))
        beep();
}

void QtSerialPort::openRemote(const QString &portName, int baudRate, int dataBits, int stopBits, int parity)
{
    if (!m_remote) {
        m_remote = new Rfc2217Port(this);
        connect(m_remote, SIGNAL(readyRead()), this, SLOT(SltReadFromSerialport()));
        connect(m_remote, SIGNAL(disconnected()), this, SIGNAL(disconnected()));
    }
    // QSerialPort's parity values: 0 none, 2 even, 3 odd, 4 space, 5 mark
    quint8 p = TelnetComPort::ParityNone;
    switch (parity) {
    case 2: p = TelnetComPort::ParityEven; break;
    case 3: p = TelnetComPort::ParityOdd; break;
    case 4: p = TelnetComPort::ParitySpace; break;
    case 5: p = TelnetComPort::ParityMark; break;
    }
    const quint8 flow[] = {TelnetComPort::FlowNone, TelnetComPort::FlowHardware, TelnetComPort::FlowXonXoff};
    m_remote->setPortName(portName);
    m_remote->setBaudRate(quint32(baudRate));
    m_remote->setDataBits(dataBits);
    m_remote->setParity(p);
    m_remote->setStopBits(stopBits == 0 ? 1 : stopBits == 1 ? 3 : 2);
    m_remote->setFlowControl(flow[qBound(0, m_flow, 2)]);
    if (!m_remote->open(QIODevice::ReadWrite))
        beep();
}

bool QtSerialPort::setDtr(bool on)
{
    if (m_remote && m_remote->isOpen()) {
        m_remote->setDtr(on);
        return true;
    }
    const bool ok = m_serialport->isOpen() && m_serialport->setDataTerminalReady(on);
    m_serialport->clearError();
    return ok;
}

bool QtSerialPort::setRts(bool on)
{
    if (m_remote && m_remote->isOpen()) {
        m_remote->setRts(on);
        return true;
    }
    const bool ok = m_serialport->isOpen() && m_serialport->setRequestToSend(on);
    m_serialport->clearError();
    return ok;
}

void QtSerialPort::setFlowControl(int flow)
{
    m_flow = flow;
    const quint8 remote[] = {TelnetComPort::FlowNone, TelnetComPort::FlowHardware, TelnetComPort::FlowXonXoff};
    if (m_remote && m_remote->isOpen())
        m_remote->setFlowControl(remote[qBound(0, flow, 2)]);
    if (m_serialport->isOpen()) {
        m_serialport->setFlowControl(static_cast<QSerialPort::FlowControl>(flow));
        m_serialport->clearError();
    }
}

void QtSerialPort::close()
{
    if (m_remote)
        m_remote->close();
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
    if (m_remote && m_remote->isOpen()) {
        m_remote->write(data);
        return;
    }
    if (m_serialport->write(data) == -1)
        qWarning() << "Write data failed:" << m_serialport->errorString();
}

void QtSerialPort::SltReadFromSerialport()
{
    const QByteArray data = (m_remote && m_remote->bytesAvailable() > 0) ? m_remote->readAll() : m_serialport->readAll();
    emit bytesRead(data);
}
