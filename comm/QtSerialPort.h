#ifndef QTSERIALPORT_H
#define QTSERIALPORT_H

#include <QByteArray>
#include <QObject>
#include <QString>

class QSerialPort;
class Rfc2217Port;

// The PID page's port: a thin wrapper round QSerialPort with the operation names of
// QtIODevice. Received bytes are passed on as they come, with no framing.
// Failures are not returned: a failed open beeps, a failed write warns on the
// console; callers look at isOpen() and errorString() afterwards.
class QtSerialPort : public QObject
{
    Q_OBJECT
public:
    explicit QtSerialPort(QObject *parent = nullptr);
    ~QtSerialPort() override;

    bool isOpen();
    QString errorString();
    QString portName() const;
    // modem control lines of the open port; false when refused (a pseudo-terminal)
    bool setDtr(bool on);
    bool setRts(bool on);
    // 0 none, 1 RTS/CTS, 2 XON/XOFF; kept for the next open, applied now if open
    void setFlowControl(int flow);

public slots:
    // stopBits: 0 one, 1 one and a half, anything else as QSerialPort::StopBits;
    // parity and dataBits are the QSerialPort enum values
    void open(QString portName, int baudRate, int dataBits, int stopBits, int parity);
    void close();
    void writeBytes(QByteArray data);
    void SltReadFromSerialport();

signals:
    void bytesRead(QByteArray byData);
    // the remote session ended from the far side; isOpen() is false from then on
    void disconnected();

private:
    void openRemote(const QString &portName, int baudRate, int dataBits, int stopBits, int parity);

    QSerialPort *m_serialport;
    Rfc2217Port *m_remote = nullptr;
    int m_flow = 0;
};

#endif // QTSERIALPORT_H
