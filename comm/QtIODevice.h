#ifndef QTIODEVICE_H
#define QTIODEVICE_H

#include <QByteArray>
#include <QString>
#include <QThread>

// Generic device interface of the transport kit. Every operation does nothing by
// default; a device that derives from it fills in what it supports. The thread base
// is never started by the kit itself.
class QtIODevice : public QThread
{
    Q_OBJECT
public:
    explicit QtIODevice(QObject *parent = nullptr);

    void run() override;
    virtual bool isOpen();
    virtual QString errorString();

public slots:
    virtual void writeBytes(QByteArray data);
    virtual void open(QString serverAddress, QString serverPort);
    virtual void open(QString hostAddress, QString hostPort, QString peerAddress, QString peerPort);
    virtual void open(QString portName, int baudRate, int dataBits, int stopBits, int parity);
    virtual void close();

signals:
    void deviceOpenSuccessfully();
    void deviceCloseSuccessfully();
    void bytesRead(QByteArray data);
    void bytesWritten(qint64);
    void errorStr(QString errorStr);
    void infoStr(QString informationStr);
    void peerHostInfo(QString host, quint16 port);
};

#endif // QTIODEVICE_H
