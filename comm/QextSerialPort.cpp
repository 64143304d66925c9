#include "QextSerialPort.h"
#include "Rfc2217Port.h"

#include <QDebug>
#include <QSerialPort>

#include <poll.h>

namespace {

QSerialPort::DataBits toQt(QextSerialPort::DataBitsType bits)
{
    switch (bits) {
    case QextSerialPort::DATA_5: return QSerialPort::Data5;
    case QextSerialPort::DATA_6: return QSerialPort::Data6;
    case QextSerialPort::DATA_7: return QSerialPort::Data7;
    default: return QSerialPort::Data8;
    }
}

QSerialPort::Parity toQt(QextSerialPort::ParityType parity)
{
    switch (parity) {
    case QextSerialPort::PAR_ODD: return QSerialPort::OddParity;
    case QextSerialPort::PAR_EVEN: return QSerialPort::EvenParity;
    case QextSerialPort::PAR_SPACE: return QSerialPort::SpaceParity;
    case QextSerialPort::PAR_MARK: return QSerialPort::MarkParity;
    default: return QSerialPort::NoParity;
    }
}

QSerialPort::FlowControl toQt(QextSerialPort::FlowType flow)
{
    switch (flow) {
    case QextSerialPort::FLOW_HARDWARE: return QSerialPort::HardwareControl;
    case QextSerialPort::FLOW_XONXOFF: return QSerialPort::SoftwareControl;
    default: return QSerialPort::NoFlowControl;
    }
}

} // namespace

QextSerialPort::QextSerialPort(QueryMode mode, QObject *parent)
    : QextSerialPort(QStringLiteral("/dev/ttyS0"), mode, parent)
{
}

QextSerialPort::QextSerialPort(const QString &name, QueryMode mode, QObject *parent)
    : QIODevice(parent), m_queryMode(mode), m_portName(name), m_port(new QSerialPort(this))
{
    // Polling mode has no notifier of its own here: the caller reads when it wants,
    // and readyRead is simply not listened to.
    connect(m_port, SIGNAL(readyRead()), this, SIGNAL(readyRead()));
    connect(m_port, SIGNAL(bytesWritten(qint64)), this, SIGNAL(bytesWritten(qint64)));
    connect(m_port, SIGNAL(errorOccurred(QSerialPort::SerialPortError)), this,
            SLOT(SltPortError(QSerialPort::SerialPortError)));
}

QextSerialPort::~QextSerialPort()
{
    if (isOpen())
        close();
}

void QextSerialPort::setPortName(const QString &name)
{
    m_portName = name;
}

QString QextSerialPort::portName() const
{
    return m_portName;
}

bool QextSerialPort::isSupportedBaudRate(int rate)
{
    switch (rate) {
#define QEXT_BAUD_CASE(r) case r:
    QEXT_BAUD_RATES(QEXT_BAUD_CASE)
#undef QEXT_BAUD_CASE
        return true;
    default:
        return false;
    }
}

bool QextSerialPort::open(OpenMode mode)
{
    if (isOpen())
        return false;
    if (mode == NotOpen)
        return false;
    if (!Rfc2217Port::remoteName(m_portName).isEmpty())
        return openRemote();
    m_port->setPortName(m_portName);
    // Always read-write: the pages send and receive on the same port.
    if (!m_port->open(QIODevice::ReadWrite)) {
        setErrorString(m_port->errorString());
        return false;
    }
    applySettings();
    // Unbuffered: QSerialPort already buffers, a second copy would only cost time.
    QIODevice::open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    return true;
}

bool QextSerialPort::openRemote()
{
    if (!m_remote) {
        m_remote = new Rfc2217Port(this);
        connect(m_remote, SIGNAL(readyRead()), this, SIGNAL(readyRead()));
        connect(m_remote, SIGNAL(bytesWritten(qint64)), this, SIGNAL(bytesWritten(qint64)));
        connect(m_remote, SIGNAL(disconnected()), this, SIGNAL(disconnected()));
    }
    m_remote->setPortName(m_portName);
    applyRemoteSettings();
    if (!m_remote->open(QIODevice::ReadWrite)) {
        setErrorString(m_remote->errorString());
        return false;
    }
    QIODevice::open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    return true;
}

void QextSerialPort::applyRemoteSettings()
{
    const quint8 parity[] = {TelnetComPort::ParityNone, TelnetComPort::ParityOdd, TelnetComPort::ParityEven,
                             TelnetComPort::ParitySpace, TelnetComPort::ParityMark};
    const quint8 flow[] = {TelnetComPort::FlowNone, TelnetComPort::FlowHardware, TelnetComPort::FlowXonXoff};
    m_remote->setBaudRate(quint32(m_settings.BaudRate));
    m_remote->setDataBits(int(m_settings.DataBits));
    m_remote->setParity(parity[m_settings.Parity]);
    m_remote->setStopBits(m_settings.StopBits == STOP_2 ? 2 : 1);
    m_remote->setFlowControl(flow[m_settings.FlowControl]);
}

bool QextSerialPort::isRemote() const
{
    return m_remote && m_remote->isOpen();
}

bool QextSerialPort::clear()
{
    if (isRemote()) {
        m_remote->purge(TelnetComPort::PurgeBoth);
        return true;
    }
    return m_port->isOpen() && m_port->clear();
}

bool QextSerialPort::setDtr(bool on)
{
    if (isRemote()) {
        m_remote->setDtr(on);
        return true;
    }
    if (!m_port->isOpen())
        return false;
    const bool ok = m_port->setDataTerminalReady(on);
    m_port->clearError();
    return ok;
}

bool QextSerialPort::setRts(bool on)
{
    if (isRemote()) {
        m_remote->setRts(on);
        return true;
    }
    if (!m_port->isOpen())
        return false;
    const bool ok = m_port->setRequestToSend(on);
    m_port->clearError();
    return ok;
}

void QextSerialPort::close()
{
    if (m_remote)
        m_remote->close();
    if (m_port->isOpen())
        m_port->close();
    if (isOpen())
        QIODevice::close();
}

qint64 QextSerialPort::bytesAvailable() const
{
    if (isRemote())
        return m_remote->bytesAvailable() + QIODevice::bytesAvailable();
    return m_port->bytesAvailable() + QIODevice::bytesAvailable();
}

qint64 QextSerialPort::readData(char *data, qint64 maxSize)
{
    if (m_remote && m_remote->bytesAvailable() > 0)
        return m_remote->read(data, maxSize);
    if (!m_port->isOpen())
        return 0;
    return m_port->read(data, maxSize);
}

qint64 QextSerialPort::writeData(const char *data, qint64 maxSize)
{
    if (isRemote())
        return m_remote->write(data, maxSize);
    if (!m_port->isOpen())
        return -1;
    return m_port->write(data, maxSize);
}

void QextSerialPort::SltPortError(QSerialPort::SerialPortError error)
{
    // A pty refuses the modem line ioctls and some settings: never fatal. A device
    // that went away (the board was pulled) reports a resource error; the port stays
    // "open" for the page, which learns of it from the port watcher, but the dead
    // descriptor is released so that its notifier cannot spin.
    // QSerialPort reports a read that found the other end hung up as an error (of
    // varying kind) and then keeps its notifier armed, so the hang-up is checked on
    // the descriptor itself.
    Q_UNUSED(error)
    if (!m_port->isOpen() || m_port->handle() < 0)
        return;
    pollfd pfd;
    pfd.fd = int(m_port->handle());
    pfd.events = POLLIN;
    pfd.revents = 0;
    if (::poll(&pfd, 1, 0) < 0)
        return;
    if (pfd.revents & (POLLHUP | POLLERR | POLLNVAL)) {
        qWarning("QextSerialPort: %s has gone away", qPrintable(m_portName));
        m_port->close();
    }
}

// Every setter stores its value and comes here: an open port takes the whole set at
// once, and the error a pty reports for a setting it refuses is cleared, since it is
// never fatal. A closed port takes the set when it opens.
void QextSerialPort::applySettings()
{
    // a remote port takes the settings whether or not it is open: they go with the open
    if (isRemote())
        applyRemoteSettings();
    if (!m_port->isOpen())
        return;
    m_port->setBaudRate(int(m_settings.BaudRate));
    m_port->setDataBits(toQt(m_settings.DataBits));
    m_port->setParity(toQt(m_settings.Parity));
    m_port->setStopBits(m_settings.StopBits == STOP_2 ? QSerialPort::TwoStop : QSerialPort::OneStop);
    m_port->setFlowControl(toQt(m_settings.FlowControl));
    m_port->clearError();
}

void QextSerialPort::setBaudRate(BaudRateType rate)
{
    if (!isSupportedBaudRate(int(rate))) {
        qWarning("QextSerialPort: baud rate %d is not supported by POSIX systems", int(rate));
        return;
    }
    m_settings.BaudRate = rate;
    applySettings();
}

void QextSerialPort::setDataBits(DataBitsType bits)
{
    if (bits < DATA_5 || bits > DATA_8) {
        qWarning("QextSerialPort: %d data bits are not supported", int(bits));
        return;
    }
    if (bits == DATA_5 && m_settings.StopBits == STOP_2) {
        qWarning("QextSerialPort: 5 data bits cannot be used with 2 stop bits");
        return;
    }
    m_settings.DataBits = bits;
    applySettings();
}

void QextSerialPort::setStopBits(StopBitsType bits)
{
    if (bits != STOP_1 && bits != STOP_2) {
        qWarning("QextSerialPort: this stop bits setting is not supported by POSIX systems");
        return;
    }
    if (bits == STOP_2 && m_settings.DataBits == DATA_5) {
        qWarning("QextSerialPort: 2 stop bits cannot be used with 5 data bits");
        return;
    }
    m_settings.StopBits = bits;
    applySettings();
}

void QextSerialPort::setParity(ParityType parity)
{
    if (parity < PAR_NONE || parity > PAR_MARK) {
        qWarning("QextSerialPort: parity %d is not supported", int(parity));
        return;
    }
    m_settings.Parity = parity;
    applySettings();
}

void QextSerialPort::setFlowControl(FlowType flow)
{
    m_settings.FlowControl = flow;
    applySettings();
}

void QextSerialPort::setTimeout(long millisec)
{
    // Event-driven reads never block, so the value only matters for polling callers
    // that use waitForReadyRead themselves.
    m_settings.Timeout_Millisec = millisec;
}
