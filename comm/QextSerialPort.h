#ifndef QEXTSERIALPORT_H
#define QEXTSERIALPORT_H

#include <QIODevice>
#include <QSerialPort>
#include <QString>

// Serial port of the serial and camera pages, in the form those pages were written
// against: settings are this class's own enumerations, open() opens the device raw
// for reading and writing, and readyRead comes from the event loop. The transfer
// itself is done by a QSerialPort; what this class adds is the Linux rule set of the
// settings (only the termios speeds are accepted, 5 data bits never go with 2 stop
// bits), refusals being console warnings that keep the previous value.
//
// A name holding "rfc2217://HOST:PORT" (also behind the pages' "/dev/" prefix) opens a
// remote port over the network instead (Rfc2217Port); every setting goes there.
class Rfc2217Port;

class QextSerialPort : public QIODevice
{
    Q_OBJECT
public:
    enum QueryMode { Polling, EventDriven };

    // The one list of the rates POSIX systems take: it makes both the enumeration and
    // isSupportedBaudRate, so the two cannot drift apart.
#define QEXT_BAUD_RATES(X)                                                                  \
    X(50) X(75) X(110) X(134) X(150) X(200) X(300) X(600) X(1200) X(1800) X(2400) X(4800)   \
    X(9600) X(19200) X(38400) X(57600) X(115200) X(230400) X(460800) X(500000) X(576000)  \
    X(921600) X(1000000) X(1152000) X(1500000) X(2000000) X(2500000) X(3000000) X(3500000) \
    X(4000000)
#define QEXT_BAUD_ENUM(rate) BAUD##rate = rate,
    enum BaudRateType { QEXT_BAUD_RATES(QEXT_BAUD_ENUM) };
#undef QEXT_BAUD_ENUM
    enum DataBitsType { DATA_5 = 5, DATA_6 = 6, DATA_7 = 7, DATA_8 = 8 };
    // The pages pass combo box indices: parity 0 none, 1 odd, 2 even.
    enum ParityType { PAR_NONE = 0, PAR_ODD = 1, PAR_EVEN = 2, PAR_SPACE = 3, PAR_MARK = 4 };
    // The pages pass combo box indices: 0 one stop bit, 1 two. 1.5 stop bits exist on
    // Windows only and are refused here.
    enum StopBitsType { STOP_1 = 0, STOP_2 = 1, STOP_1_5 = 2 };
    enum FlowType { FLOW_OFF = 0, FLOW_HARDWARE = 1, FLOW_XONXOFF = 2 };

    struct PortSettings {
        BaudRateType BaudRate = BAUD9600;
        DataBitsType DataBits = DATA_8;
        ParityType Parity = PAR_NONE;
        StopBitsType StopBits = STOP_1;
        FlowType FlowControl = FLOW_OFF;
        long Timeout_Millisec = 10;
    };

    explicit QextSerialPort(QueryMode mode = EventDriven, QObject *parent = nullptr);
    QextSerialPort(const QString &name, QueryMode mode = EventDriven, QObject *parent = nullptr);
    ~QextSerialPort() override;

    void setPortName(const QString &name);
    // exactly the name given to setPortName, full path included
    QString portName() const;
    QueryMode queryMode() const { return m_queryMode; }
    PortSettings settings() const { return m_settings; }

    bool open(OpenMode mode) override;
    void close() override;
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override;

    void setBaudRate(BaudRateType rate);
    void setBaudRate(int rate) { setBaudRate(BaudRateType(rate)); }
    void setDataBits(DataBitsType bits);
    void setDataBits(int bits) { setDataBits(DataBitsType(bits)); }
    void setStopBits(StopBitsType bits);
    void setStopBits(int bits) { setStopBits(StopBitsType(bits)); }
    void setParity(ParityType parity);
    void setParity(int parity) { setParity(ParityType(parity)); }
    void setFlowControl(FlowType flow);
    void setTimeout(long millisec);

    BaudRateType baudRate() const { return m_settings.BaudRate; }
    DataBitsType dataBits() const { return m_settings.DataBits; }
    StopBitsType stopBits() const { return m_settings.StopBits; }
    ParityType parity() const { return m_settings.Parity; }
    FlowType flowControl() const { return m_settings.FlowControl; }

    static bool isSupportedBaudRate(int rate);

    // Modem control lines of the open port. False when there is no open port or the
    // device refused (a pseudo-terminal has no modem lines); the open port is not
    // affected either way.
    bool setDtr(bool on);
    bool setRts(bool on);
    // whether the open port is a remote one
    bool isRemote() const;
    // drops what waits in both directions, in the driver or on the remote server
    bool clear();

signals:
    // the remote session ended from the far side (the server went away or reset it);
    // the port stays open for its owner to close, as a pulled device's does
    void disconnected();

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private slots:
    void SltPortError(QSerialPort::SerialPortError error);

private:
    void applySettings();
    bool openRemote();
    void applyRemoteSettings();

    QueryMode m_queryMode;
    QString m_portName;
    PortSettings m_settings;
    QSerialPort *m_port;
    Rfc2217Port *m_remote = nullptr;
};

#endif // QEXTSERIALPORT_H
