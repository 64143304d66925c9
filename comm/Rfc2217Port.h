#ifndef RFC2217PORT_H
#define RFC2217PORT_H

#include "TelnetComPort.h"

#include <QIODevice>
#include <QString>

class QTcpSocket;

// A serial port on another machine, reached over a telnet session with the COM port
// option (a ser2net "telnet(rfc2217)" accepter, a terminal server). It reads and
// writes like a local port; port settings, control lines and purges go to the server
// as commands. Settings given before open() are sent once the session starts.
//
// The name is "rfc2217://HOST:PORT". open() waits for the TCP connection (bounded by
// connectTimeout, loopback and LAN servers answer at once); the server's
// acknowledgements arrive later and are only logged: a server that refuses a setting
// still carries bytes. A dropped session closes the device and emits aboutToClose
// and disconnected, as a pulled USB adapter would.
class Rfc2217Port : public QIODevice
{
    Q_OBJECT
public:
    explicit Rfc2217Port(QObject *parent = nullptr);
    ~Rfc2217Port() override;

    static QString scheme() { return QStringLiteral("rfc2217://"); }
    // the remote name inside a serial page's path ("/dev/" + box text), or an empty
    // string when the name is a local device
    static QString remoteName(const QString &portName);
    // host and port of a remote name; false when it names no usable host and port
    static bool parseName(const QString &portName, QString *host, quint16 *port);

    void setPortName(const QString &name) { m_name = name; }
    QString portName() const { return m_name; }
    void setConnectTimeout(int msec) { m_connectTimeout = msec; }

    bool open(OpenMode mode) override;
    void close() override;
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override;
    qint64 bytesToWrite() const override;
    bool waitForReadyRead(int msecs) override;
    bool waitForBytesWritten(int msecs) override;

    void setBaudRate(quint32 baud);
    void setDataBits(int bits);
    // TelnetComPort::Parity values
    void setParity(quint8 parity);
    // 1 or 2 stop bits; 3 is one and a half
    void setStopBits(int code);
    // TelnetComPort::FlowNone, FlowXonXoff or FlowHardware
    void setFlowControl(quint8 flow);
    void setDtr(bool on);
    void setRts(bool on);
    // TelnetComPort::Purge values
    void purge(quint8 what);

    // the last acknowledged baud rate (0 before the server answered)
    quint32 confirmedBaudRate() const { return m_confirmedBaud; }

signals:
    void disconnected();
    // the server answered a setting command (TelnetComPort::Command, value)
    void settingConfirmed(int command, QByteArray value);

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private slots:
    void SltSocketReadyRead();
    void SltSocketDisconnected();

private:
    void sendCommand(const QByteArray &bytes);
    QByteArray settingsCommands() const;

    QString m_name;
    QTcpSocket *m_socket;
    TelnetComPort m_telnet;
    QByteArray m_buffer;
    int m_connectTimeout = 3000;
    quint32 m_baud = 9600;
    int m_dataBits = 8;
    quint8 m_parity = TelnetComPort::ParityNone;
    int m_stopBits = 1;
    quint8 m_flow = TelnetComPort::FlowNone;
    quint32 m_confirmedBaud = 0;
};

#endif // RFC2217PORT_H
