#include "Rfc2217Port.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QTcpSocket>

Rfc2217Port::Rfc2217Port(QObject *parent)
    : QIODevice(parent), m_socket(new QTcpSocket(this))
{
    connect(m_socket, SIGNAL(readyRead()), this, SLOT(SltSocketReadyRead()));
    connect(m_socket, SIGNAL(disconnected()), this, SLOT(SltSocketDisconnected()));
    connect(m_socket, SIGNAL(bytesWritten(qint64)), this, SIGNAL(bytesWritten(qint64)));
}

Rfc2217Port::~Rfc2217Port()
{
    m_socket->disconnect(this);
}

QString Rfc2217Port::remoteName(const QString &portName)
{
    const int at = portName.indexOf(scheme());
    // "/dev/rfc2217://…" from a serial page, or the name itself
    if (at < 0 || (at > 0 && portName.left(at) != QLatin1String("/dev/")))
        return QString();
    return portName.mid(at);
}

bool Rfc2217Port::parseName(const QString &portName, QString *host, quint16 *port)
{
    const QString name = remoteName(portName);
    const QString hostPort = name.mid(scheme().size());
    const int colon = hostPort.lastIndexOf(':');
    bool ok = false;
    *port = colon > 0 && !name.isEmpty() ? hostPort.mid(colon + 1).toUShort(&ok) : 0;
    *host = hostPort.left(colon);
    if (host->startsWith('[') && host->endsWith(']'))
        *host = host->mid(1, host->size() - 2);
    return ok && *port != 0 && !host->isEmpty();
}

bool Rfc2217Port::open(OpenMode mode)
{
    if (isOpen() || mode == NotOpen)
        return false;
    QString host;
    quint16 port = 0;
    if (!parseName(m_name, &host, &port)) {
        setErrorString(QStringLiteral("远程串口地址应为 rfc2217://主机:端口"));
        return false;
    }
    m_telnet = TelnetComPort();
    m_buffer.clear();
    m_confirmedBaud = 0;
    m_socket->connectToHost(host, port);
    if (!m_socket->waitForConnected(m_connectTimeout)) {
        setErrorString(m_socket->errorString());
        m_socket->abort();
        return false;
    }
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QIODevice::open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    m_socket->write(TelnetComPort::greeting() + settingsCommands());
    return true;
}

QByteArray Rfc2217Port::settingsCommands() const
{
    using T = TelnetComPort;
    return T::setBaudRate(m_baud) + T::setByte(T::SetDataSize, quint8(m_dataBits))
           + T::setByte(T::SetParity, m_parity) + T::setByte(T::SetStopSize, quint8(m_stopBits))
           + T::setByte(T::SetControl, m_flow);
}

void Rfc2217Port::close()
{
    if (!isOpen())
        return;
    QIODevice::close();
    if (m_socket->state() == QAbstractSocket::ConnectedState)
        m_socket->flush();
    m_socket->disconnectFromHost();
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        m_socket->abort();
    m_buffer.clear();
}

qint64 Rfc2217Port::bytesAvailable() const
{
    return m_buffer.size() + QIODevice::bytesAvailable();
}

qint64 Rfc2217Port::bytesToWrite() const
{
    return m_socket->bytesToWrite();
}

bool Rfc2217Port::waitForReadyRead(int msecs)
{
    QElapsedTimer t;
    t.start();
    while (m_buffer.isEmpty() && isOpen()) {
        const int left = msecs < 0 ? -1 : int(msecs - t.elapsed());
        if (msecs >= 0 && left <= 0)
            return false;
        if (!m_socket->waitForReadyRead(left))
            return false;
        SltSocketReadyRead();
    }
    return !m_buffer.isEmpty();
}

bool Rfc2217Port::waitForBytesWritten(int msecs)
{
    return m_socket->waitForBytesWritten(msecs);
}

qint64 Rfc2217Port::readData(char *data, qint64 maxSize)
{
    const qint64 n = qMin<qint64>(maxSize, m_buffer.size());
    memcpy(data, m_buffer.constData(), size_t(n));
    m_buffer.remove(0, int(n));
    return n;
}

qint64 Rfc2217Port::writeData(const char *data, qint64 maxSize)
{
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        return -1;
    const QByteArray escaped = TelnetComPort::escape(QByteArray::fromRawData(data, int(maxSize)));
    if (m_socket->write(escaped) != escaped.size())
        return -1;
    return maxSize;
}

void Rfc2217Port::SltSocketReadyRead()
{
    const QByteArray data = m_telnet.feed(m_socket->readAll());
    const QByteArray answer = m_telnet.takeOutgoing();
    if (!answer.isEmpty())
        m_socket->write(answer);
    for (const TelnetComPort::Reply &r : m_telnet.takeReplies()) {
        if (r.command == TelnetComPort::SetBaudRate && r.value.size() == 4) {
            const uchar *v = reinterpret_cast<const uchar *>(r.value.constData());
            m_confirmedBaud = (quint32(v[0]) << 24) | (quint32(v[1]) << 16) | (quint32(v[2]) << 8) | v[3];
        }
        emit settingConfirmed(r.command, r.value);
    }
    if (data.isEmpty())
        return;
    m_buffer.append(data);
    emit readyRead();
}

void Rfc2217Port::SltSocketDisconnected()
{
    if (!isOpen())
        return;
    qWarning("Rfc2217Port: %s closed the session", qPrintable(m_name));
    // what arrived before the end stays readable until the owner closes
    QIODevice::close();
    emit disconnected();
}

void Rfc2217Port::sendCommand(const QByteArray &bytes)
{
    if (isOpen() && m_socket->state() == QAbstractSocket::ConnectedState)
        m_socket->write(bytes);
}

void Rfc2217Port::setBaudRate(quint32 baud)
{
    m_baud = baud;
    sendCommand(TelnetComPort::setBaudRate(baud));
}

void Rfc2217Port::setDataBits(int bits)
{
    m_dataBits = bits;
    sendCommand(TelnetComPort::setByte(TelnetComPort::SetDataSize, quint8(bits)));
}

void Rfc2217Port::setParity(quint8 parity)
{
    m_parity = parity;
    sendCommand(TelnetComPort::setByte(TelnetComPort::SetParity, parity));
}

void Rfc2217Port::setStopBits(int code)
{
    m_stopBits = code;
    sendCommand(TelnetComPort::setByte(TelnetComPort::SetStopSize, quint8(code)));
}

void Rfc2217Port::setFlowControl(quint8 flow)
{
    m_flow = flow;
    sendCommand(TelnetComPort::setByte(TelnetComPort::SetControl, flow));
}

void Rfc2217Port::setDtr(bool on)
{
    sendCommand(TelnetComPort::setByte(TelnetComPort::SetControl, on ? TelnetComPort::DtrOn : TelnetComPort::DtrOff));
}

void Rfc2217Port::setRts(bool on)
{
    sendCommand(TelnetComPort::setByte(TelnetComPort::SetControl, on ? TelnetComPort::RtsOn : TelnetComPort::RtsOff));
}

void Rfc2217Port::purge(quint8 what)
{
    m_buffer.clear();
    sendCommand(TelnetComPort::setByte(TelnetComPort::PurgeData, what));
}
