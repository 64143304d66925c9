#ifndef SERIALPORTWIDGET_H
#define SERIALPORTWIDGET_H

#include "QtWidgetBase.h"

#include <QByteArray>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTimer;
class QextSerialPort;
class LinkTap;
class QtFoldButton;
class QtRecvViewFeeder;
class QtSendBoxWidget;
class QtSendConfigGroup;
class QtSerialPortForm;
class QtTerminalWidget;
class StatusLabel;

// Page 0 of the main window, the serial assistant: pick a port and its framing, open
// it, watch what arrives as text or hexadecimal, send typed, listed or periodic data.
// Nothing of it is kept between runs.
class SerialportWidget : public QtWidgetBase
{
    Q_OBJECT
public:
    // the receive view: reads gathered per display frame, a bounded tail shown, view
    // lines of running hex bounded. Once text scrolls through the view, every frame
    // repaints all of it and sends it to the display, which cost more than laying the
    // text out: frames come at most 10 times a second (a read after a quiet spell
    // shows at once), and each takes up to 48K characters, so the view still keeps up
    // with some 480K characters a second.
    static constexpr int RecvViewDelayMs = 100;
    static constexpr int RecvViewMaxChars = 1 << 17;
    static constexpr int RecvViewSlackChars = 1 << 17;
    static constexpr int RecvViewSliceChars = 3 << 14;
    static constexpr int RecvViewLineChars = 1 << 13;

    explicit SerialportWidget(QWidget *parent = nullptr);
    ~SerialportWidget() override;

    QSize sizeHint() const override;
    QStringList getCounts() override;
    void clearCounts() override;
    LinkTap *linkTap() const override { return m_tap; }

    void CloseSerialport();
    void parseSerialportData(QByteArray data);
    // "保存到文件" with the file name already chosen (an empty name asks for one)
    void saveDataToFile(const QString &fileName);

    QextSerialPort *serialport() const { return m_serialport; }
    // opens the port at path ("/dev/…") with the settings the page shows, as its open
    // button would; true when the port is open afterwards
    bool reopenPort(const QString &path);
    QtTerminalWidget *terminal() const { return m_terminal; }
    QtRecvViewFeeder *recvFeeder() const { return m_recvFeeder; }
    QtSendBoxWidget *sendBox() const { return m_sendBox; }
    QByteArray recvBuffer() const { return m_recvBuffer; }
    quint32 sendCount() const { return m_sendCount; }
    quint32 recvCount() const { return m_recvCount; }

public slots:
    void SltSerialportChanged(const QStringList &serialports);
    // a remote port whose session ended: closed as a pulled port is, with its notice
    void SltSerialportLost();
    void clearRecv();
    void SltOpenSerialport();
    void SltWriteDataToSerialport(QByteArray byCmd);
    void SltRecvFromSerialport();
    void SltDelayChanged();
    void SltBtnFoldClicked();
    void SltChangeSendPage(int index);
    void SltChangeAutoInterval();
    void SltSaveDataToFile();

private:
    void InitWidget();
    void InitSerialPortConfig();
    QWidget *InitConfigColumn();
    // the page's one write: the port's bytes, the send count, the tap
    qint64 writeToPort(const QByteArray &bytes);

    QWidget *m_widgetConfig;
    QtFoldButton *m_btnFold;

    QtSerialPortForm *m_portForm;
    QComboBox *m_cbxPort;
    QComboBox *m_cbxBaud;
    QComboBox *m_cbxParity;
    QComboBox *m_cbxDataBits;
    QComboBox *m_cbxStopBits;
    QPushButton *m_btnOpen;
    StatusLabel *m_statusLabel;

    QRadioButton *m_rbtnRecvAscii;
    QRadioButton *m_rbtnRecvHex;
    QCheckBox *m_chkStopShow;
    QCheckBox *m_chkLogMode;

    QtSendConfigGroup *m_groupSend;
    QLineEdit *m_edtAutoInterval;

    QtTerminalWidget *m_terminal;
    QtRecvViewFeeder *m_recvFeeder;
    QtSendBoxWidget *m_sendBox;

    quint32 m_sendCount;
    quint32 m_recvCount;
    QTimer *m_recvTimer;
    QextSerialPort *m_serialport;
    QByteArray m_recvBuffer;
    LinkTap *m_tap;
};

#endif // SERIALPORTWIDGET_H
