#ifndef QTSERIALPORT_H
#define QTSERIALPORT_H

#include <QByteArray>
#include <QObject>
#include <QString>

class QSerialPort;

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

public slots:
    // stopBits: 0 one, 1 one and a half, anything else as QSerialPort::StopBits;
    // parity and dataBits are the QSerialPort enum values
    void open(QString portName, int baudRate, int dataBits, int stopBits, int parity);
    void close();
    void writeBytes(QByteArray data);
    void SltReadFromSerialport();

signals:
    void bytesRead(QByteArray byData);

private:
    QSerialPort *m_serialport;
};

#endif // QTSERIALPORT_H
