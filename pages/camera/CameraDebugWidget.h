#ifndef CAMERADEBUGWIDGET_H
#define CAMERADEBUGWIDGET_H

#include "CameraImageFormat.h"
#include "CameraLinkDecoder.h"
#include "NetLinkSet.h"
#include "QtWidgetBase.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QStringList>

class QPixmap;
class ImageFormatConfig;
class ImageViewer;
class LinkTap;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QStackedWidget;
class QTcpSocket;
class QTimer;
class QUdpSocket;
class QextSerialPort;
class QtSerialPortForm;
class StatusLabel;
class TcpServer;

// The camera debug assistant (page index 1): one link to a board with a camera, a
// TCP server, a TCP client, UDP or a serial port, chosen in the link combo box
// (0 server, 1 client, 2 UDP, 3 and up the listed serial ports). Every received
// chunk goes through SltRecvImageData, every frame out through WriteDataToDevice.
// The board pushes framed images and format announcements and is answered; the
// register strip under the image reads and writes its registers. "JPEG数据" takes
// a bare JPEG stream instead of frames.
class CameraDebugWidget : public QtWidgetBase
{
    Q_OBJECT
public:
    static constexpr int PageIndex = 1;
    typedef CameraImageFormat s_img_format;

    explicit CameraDebugWidget(QWidget *parent = nullptr);
    ~CameraDebugWidget() override;

    QStringList getCounts() override;
    void clearCounts() override;
    LinkTap *linkTap() const override { return m_tap; }

    static QString getImageSuffix(unsigned char format);
    void SendMessageToDevice(unsigned char cmd, unsigned char addr, QByteArray data);
    void SendReplyMessage(unsigned char addr, unsigned char status);
    void WriteDataToDevice(const QByteArray &data);
    void saveDataWithRGB565(s_img_format *format, const QByteArray &data);
    void stopRecvImage();
    void showErrorMsgTip(QWidget *widget, QString text);

    ImageViewer *imageViewer() const { return m_imageViewer; }
    ImageFormatConfig *formatConfig() const { return m_formatConfig; }
    TcpServer *tcpServer() const { return m_tcpServer; }
    QTcpSocket *tcpClient() const { return m_tcpClient; }
    QUdpSocket *udpSocket() const { return m_udpSocket; }
    QextSerialPort *serialPort() const { return m_serialPort; }
    // opens the port at path ("/dev/…") with the settings the page shows, as its open
    // button would; true when the port is open afterwards
    bool reopenPort(const QString &path);
    // a remote port ("rfc2217://HOST:PORT") in the link box, after the ports and kept
    // there for the program's run; false, with the reason, for a name that is none
    bool addRemoteLink(const QString &name, QString *error = nullptr);
    const s_img_format &imageFormat(int slot) const { return m_imgFormat[slot & 1]; }
    quint32 frameCount() const { return m_nFrameCount; }
    qint64 recvBytes() const { return m_nRecvBytes; }

public slots:
    void SltSerialportChanged(const QStringList &serialports);
    // a remote port whose session ended: closed as a pulled port is, with its notice
    void SltSerialportLost();
    void SltChangeProtocol(int index);
    void SltRecvImageData(const QString &name, const QByteArray &byData);
    void SltRecvSerialportData();
    void SltReadyFromUdp();
    void SltTcpSocketConnected();
    void SltTcpSocketDisConnected();
    void SltReadFromTcpSocket();
    void SltBtnOpenClicked();
    void SltCalculationRate();
    void SltChangeImageShow(int index);
    void SltReadWriteRegister(const QString &strAddr, const QString &strValue, int regId);
    void sltChangeDelay();
    void sltSetAutoSend(bool bOk);
    void sltAutoSendFinised();

private:
    void InitWidget();
    void InitLinks();
    void OpenSerialport();
    void CloseSerialport();
    void setStatus(bool bOpen, const QString &btnText, QString message);
    void parseProtocolData();
    void parseJpegData();
    void handleChunk(const QByteArray &byData);
    void applyEvent(const CameraLinkEvent &event);
    // the viewer area an image event draws into, or -1 for other events
    int drawArea(const CameraLinkEvent &event) const;
    // the picture an image event shows (null: nothing to show, the area keeps its own)
    QPixmap drawnPixmap(const CameraLinkEvent &event) const;
    void setModeEnabled(bool enabled);
    bool linkRunning(NetLinkSet::Kind kind) const;
    // the page's one write, to the link the box names; bytes taken or -1
    qint64 writeToLink(const QByteArray &data);

    // link settings
    QComboBox *m_cbxProtocol;
    QStackedWidget *m_stackedConfig;
    QLabel *m_labAddress;
    QComboBox *m_cbxAddress;
    QLineEdit *m_edtPort;
    QtSerialPortForm *m_serialForm;
    QStringList m_remoteLinks; // the remote ports added to the link box, by name
    QComboBox *m_cbxBaudrate;
    QComboBox *m_cbxParity;
    QComboBox *m_cbxDataBits;
    QComboBox *m_cbxStopBits;
    // protocol settings
    QRadioButton *m_rbProtocol;
    QRadioButton *m_rbJpeg;
    QCheckBox *m_chkBigEndian;
    QCheckBox *m_chkCrc;
    QComboBox *m_cbxDeviceCount;
    // send settings
    QComboBox *m_cbxDeviceAddr;
    QLineEdit *m_edtRegAddrLen;
    QLineEdit *m_edtRegValueLen;
    QLineEdit *m_edtAutoDelay;
    QCheckBox *m_chkAutoSend;
    QPushButton *m_btnClearInput;
    StatusLabel *m_statusLabel;
    QPushButton *m_btnOpen;

    ImageViewer *m_imageViewer;
    ImageFormatConfig *m_formatConfig;

    TcpServer *m_tcpServer;
    QTcpSocket *m_tcpClient;
    QUdpSocket *m_udpSocket;
    QextSerialPort *m_serialPort;
    NetLinkSet m_links;
    LinkTap *m_tap;

    // The receive state lives in the decoder, which applies the link's rules; the
    // page sees it under these names.
    CameraLinkDecoder m_decoder;
    QByteArray &m_recvBuffer;
    bool &m_bRecvImage;
    qint32 &m_nFrameLen;
    qint32 &m_nJpegStart;
    qint32 &m_nJpegEnd;
    s_img_format (&m_imgFormat)[2];
    QByteArray m_frameHead;
    QByteArray m_jpegSoi;
    QByteArray m_jpegEoi;
    QElapsedTimer m_frameTimer;

    qint64 m_nRecvBytes;
    qint64 m_nLastBytes;
    quint32 m_nFrameCount;
    quint32 m_nLastFrames;
    double m_dFrameRate;
    QTimer *m_rateTimer;
};

#endif // CAMERADEBUGWIDGET_H
