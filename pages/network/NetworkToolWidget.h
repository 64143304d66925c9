#ifndef NETWORKTOOLWIDGET_H
#define NETWORKTOOLWIDGET_H

#include "NetLinkSet.h"
#include "QtWidgetBase.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class LinkTap;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTcpSocket;
class QTextBrowser;
class QUdpSocket;
class QtFoldButton;
class QtRecvViewFeeder;
class QtSendBoxWidget;
class QtSendConfigGroup;
class StatusLabel;
class TcpServer;

// The network assistant page (page index 2): a TCP server, a TCP client or a UDP
// endpoint, with a view of what arrives and a send box for what goes out. All three
// transports are made once and live as long as the page; the mode combo box picks
// which one the open button and the send path use.
class NetworkToolWidget : public QtWidgetBase
{
    Q_OBJECT
public:
    enum NetType { TcpServerMode = 0, TcpClientMode = 1, UdpMode = 2 };
    static constexpr int PageIndex = 2;
    static constexpr int RecvViewMaxChars = 1 << 18;

    explicit NetworkToolWidget(QWidget *parent = nullptr);
    ~NetworkToolWidget() override;

    QStringList getCounts() override;
    void clearCounts() override;
    LinkTap *linkTap() const override { return m_tap; }

    // "保存到文件" with the file name already chosen (an empty name asks for one)
    void saveDataToFile(const QString &fileName);
    // all text received for display since the last clear, as the view's plain text
    // (the view shows the last RecvViewMaxChars characters of it)
    QString recvText();
    QTextBrowser *recvView() const { return m_textRecv; }
    QtRecvViewFeeder *recvFeeder() const { return m_recvFeeder; }

    quint64 sendCount() const { return m_sendCount; }
    quint64 recvCount() const { return m_recvCount; }
    TcpServer *tcpServer() const { return m_tcpServer; }
    QTcpSocket *tcpSocket() const { return m_tcpSocket; }
    QUdpSocket *udpSocket() const { return m_udpSocket; }
    QtSendBoxWidget *sendBox() const { return m_sendBox; }

public slots:
    void clearRecv();
    void SltChangeNetType(int index);
    void SltBtnOpenClicked();
    void SltChangeSendPage(int index);
    void SltBtnFoldClicked();
    void SltChangeAutoInterval();
    void SltSaveDataToFile();
    void SltNewClientConnected(QString name);
    void SltClientDisconnected(QString name);
    void SltSendData(QByteArray byData);
    void SltRecvSocketMessage(QString name, QByteArray byData);
    void SltDisconnectClient();
    void SltConnectedToHost();
    void SltDisConnectedToHost();
    void SltReadyFromHost();
    void SltReadyFromUdp();

private:
    void InitWidget();
    void InitNetwork();
    QWidget *InitConfigWidget();
    void StartTcpServer();
    void StartTcpClient();
    void StartUdpSocket();
    // lamp, send box, button text and the tap follow the link of the current mode
    void showLinkState(bool running, const QString &button);
    // the page's one write: counted, to the link of the mode; bytes taken or -1
    qint64 sendCounted(const QByteArray &byData);

    QWidget *m_widgetConfig;
    QtFoldButton *m_btnFold;

    QComboBox *m_cbxNetType;
    QComboBox *m_cbxAddress;
    QLineEdit *m_edtPort;
    QLabel *m_labAddress;
    QLabel *m_labPort;
    StatusLabel *m_statusLabel;
    QPushButton *m_btnOpen;

    QWidget *m_widgetClients;
    QPushButton *m_btnDisconnect;
    QComboBox *m_cbxClients;

    QWidget *m_widgetUdpDest;
    QLineEdit *m_edtDestAddress;
    QLineEdit *m_edtDestPort;

    QRadioButton *m_rbtnRecvAscii;
    QRadioButton *m_rbtnRecvHex;
    QCheckBox *m_chkStopShow;
    QCheckBox *m_chkLogMode;

    QtSendConfigGroup *m_groupSend;

    QTextBrowser *m_textRecv;
    QtSendBoxWidget *m_sendBox;

    TcpServer *m_tcpServer;
    quint64 m_sendCount;
    quint64 m_recvCount;
    QTcpSocket *m_tcpSocket;
    QUdpSocket *m_udpSocket;

    QtRecvViewFeeder *m_recvFeeder;
    NetLinkSet m_links;
    LinkTap *m_tap;
};

#endif // NETWORKTOOLWIDGET_H
