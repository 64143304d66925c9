#include "NetworkToolWidget.h"
#include "IconHelper.h"
#include "LinkTap.h"
#include "NetworkMessageFormat.h"
#include "QtRecvSaveFormat.h"
#include "NumberTool.h"
#include "QtFoldButton.h"
#include "QtRecvConfigGroup.h"
#include "QtRecvViewFeeder.h"
#include "QtMessageBox.h"
#include "QtMessageTip.h"
#include "QtSendBoxWidget.h"
#include "QtSendConfigGroup.h"
#include "StatusLabel.h"
#include "TcpServer.h"
#include "UiSkin.h"

#include <QTimer>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHostAddress>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkDatagram>
#include <QPushButton>
#include <QRadioButton>
#include <QTcpSocket>
#include <QTextBrowser>
#include <QUdpSocket>
#include <QVBoxLayout>

// How long received text may wait before it is drawn. Short enough to look
// immediate, long enough that a flood is drawn in a few large insertions.
static const int RecvViewDelayMs = 30;

NetworkToolWidget::NetworkToolWidget(QWidget *parent)
    : QtWidgetBase(parent)
    , m_tcpServer(nullptr)
    , m_sendCount(0)
    , m_recvCount(0)
    , m_tcpSocket(nullptr)
    , m_udpSocket(nullptr)
{
    clearCounts();
    m_tap = new LinkTap([this](const QByteArray &bytes) { return sendCounted(bytes); }, this);
    InitWidget();
    InitNetwork();
}

NetworkToolWidget::~NetworkToolWidget()
{
    m_tap->reportClosed();
    // The transports report their last disconnects while they go down; by then the
    // widgets those slots touch are half destroyed, so the page stops listening first.
    m_tcpServer->disconnect(this);
    m_tcpServer->CloseListen();
    m_tcpSocket->disconnect(this);
    m_udpSocket->disconnect(this);
    delete m_tcpSocket;
    m_tcpSocket = nullptr;
    delete m_udpSocket;
    m_udpSocket = nullptr;
}

QStringList NetworkToolWidget::getCounts()
{
    return byteCounts(m_sendCount, m_recvCount);
}

void NetworkToolWidget::clearCounts()
{
    m_sendCount = 0;
    m_recvCount = 0;
}

void NetworkToolWidget::InitWidget()
{
    setObjectName("NetworkToolWidget");

    m_widgetConfig = InitConfigWidget();
    m_textRecv = new QTextBrowser(this);
    m_textRecv->setObjectName("textRecv");
    m_textRecv->setUndoRedoEnabled(false);
    m_textRecv->setPlaceholderText("数据接收区显示");

    // The view holds the last RecvViewMaxChars characters: a text view lays out every
    // character it holds, and a flood of hex (one endless paragraph) would otherwise
    // cost more with every byte until the page froze. Saves take the whole text.
    m_recvFeeder = new QtRecvViewFeeder(m_textRecv, this);
    m_recvFeeder->setMaxViewChars(RecvViewMaxChars);
    m_recvFeeder->setSliceChars(RecvViewMaxChars);
    m_recvFeeder->setDelay(RecvViewDelayMs);
    m_recvFeeder->setFollowEnd(true);

    m_sendBox = new QtSendBoxWidget(this, 3);
    m_groupSend->bindSendBox(m_sendBox);

    m_btnFold = QtFoldButton::layOutPage(this, m_widgetConfig, m_textRecv, m_sendBox, 2, 2, 5);

    connect(m_sendBox, SIGNAL(signalSendData(QByteArray)), this, SLOT(SltSendData(QByteArray)));
    connect(m_sendBox, SIGNAL(signalNotify(QString,int)), this, SIGNAL(signalNotify(QString,int)));
}

QWidget *NetworkToolWidget::InitConfigWidget()
{
    QWidget *column = new QWidget(this);
    column->setObjectName("widgetNetConfig");
    column->setFixedWidth(220);

    // port configuration
    QGroupBox *groupPort = new QGroupBox("端口配置", column);
    m_cbxNetType = new QComboBox(groupPort);
    m_cbxNetType->setObjectName("cbxNetType");
    m_cbxNetType->addItems(QStringList() << "TCP Server" << "TCP Client" << "UDP");
    m_cbxNetType->setCurrentIndex(0);

    m_labAddress = new QLabel("2.本地IP地址", groupPort);
    m_labAddress->setObjectName("labAddress");
    m_cbxAddress = new QComboBox(groupPort);
    m_cbxAddress->setObjectName("cbxAddress");
    m_cbxAddress->setEditable(true);
    m_cbxAddress->addItems(NumberTool::GetHostIpAddress());

    // before the first change of mode the port caption is the client's one; the
    // table of captions applies from then on
    m_labPort = new QLabel("3.服务器端口", groupPort);
    m_labPort->setObjectName("labPort");
    m_edtPort = new QLineEdit("8000", groupPort);
    m_edtPort->setObjectName("edtPort");

    m_widgetClients = new QWidget(groupPort);
    m_widgetClients->setObjectName("widgetClients");
    QLabel *labClients = new QLabel("客户端", m_widgetClients);
    m_btnDisconnect = new QPushButton("断开", m_widgetClients);
    m_btnDisconnect->setObjectName("btnDisconnect");
    m_btnDisconnect->setIcon(QIcon(IconHelper::Instance()->getPixmap(UiSkin::m_strTextColor, QChar(0xE68B), 10, 14, 14)));
    m_cbxClients = new QComboBox(m_widgetClients);
    m_cbxClients->setObjectName("cbxClients");
    m_cbxClients->addItem("All Clients");
    QGridLayout *clientsLayout = new QGridLayout(m_widgetClients);
    clientsLayout->setContentsMargins(0, 0, 0, 0);
    clientsLayout->setSpacing(5);
    clientsLayout->addWidget(labClients, 0, 0);
    clientsLayout->addWidget(m_btnDisconnect, 0, 1, Qt::AlignRight);
    clientsLayout->addWidget(m_cbxClients, 1, 0, 1, 2);

    m_widgetUdpDest = new QWidget(groupPort);
    m_widgetUdpDest->setObjectName("widgetUdpDest");
    m_edtDestAddress = new QLineEdit("127.0.0.1", m_widgetUdpDest);
    m_edtDestAddress->setObjectName("edtDestAddress");
    m_edtDestPort = new QLineEdit("8001", m_widgetUdpDest);
    m_edtDestPort->setObjectName("edtDestPort");
    QGridLayout *udpLayout = new QGridLayout(m_widgetUdpDest);
    udpLayout->setContentsMargins(0, 0, 0, 0);
    udpLayout->setSpacing(5);
    udpLayout->addWidget(new QLabel("目的地址:", m_widgetUdpDest), 0, 0);
    udpLayout->addWidget(m_edtDestAddress, 0, 1);
    udpLayout->addWidget(new QLabel("目的端口:", m_widgetUdpDest), 1, 0);
    udpLayout->addWidget(m_edtDestPort, 1, 1);
    m_widgetUdpDest->setVisible(false);

    m_statusLabel = new StatusLabel(groupPort);
    m_statusLabel->setObjectName("statusLabel");
    m_statusLabel->setFixedSize(22, 22);
    m_statusLabel->setText(QString());
    m_statusLabel->setStatus(false);
    m_btnOpen = new QPushButton("启动监听", groupPort);
    m_btnOpen->setObjectName("btnOpen");

    QHBoxLayout *openLayout = new QHBoxLayout();
    openLayout->setContentsMargins(0, 0, 0, 0);
    openLayout->setSpacing(5);
    openLayout->addWidget(m_statusLabel);
    openLayout->addWidget(m_btnOpen, 1);

    QVBoxLayout *portLayout = new QVBoxLayout(groupPort);
    portLayout->setContentsMargins(5, 5, 5, 5);
    portLayout->setSpacing(5);
    portLayout->addWidget(new QLabel("1. 协议类型", groupPort));
    portLayout->addWidget(m_cbxNetType);
    portLayout->addWidget(m_labAddress);
    portLayout->addWidget(m_cbxAddress);
    portLayout->addWidget(m_labPort);
    portLayout->addWidget(m_edtPort);
    portLayout->addWidget(m_widgetClients);
    portLayout->addWidget(m_widgetUdpDest);
    portLayout->addLayout(openLayout);

    QtRecvConfigGroup *groupRecv = new QtRecvConfigGroup(column);
    m_rbtnRecvAscii = groupRecv->m_rbtnRecvAscii;
    m_rbtnRecvHex = groupRecv->m_rbtnRecvHex;
    m_chkStopShow = groupRecv->m_chkStopShow;
    // kept for the look of the serial page; the network view has no log tags
    m_chkLogMode = groupRecv->m_chkLogMode;
    m_groupSend = new QtSendConfigGroup(column);

    QVBoxLayout *columnLayout = new QVBoxLayout(column);
    columnLayout->setContentsMargins(2, 2, 2, 2);
    columnLayout->setSpacing(5);
    columnLayout->addWidget(groupPort);
    columnLayout->addWidget(groupRecv, 1);
    columnLayout->addWidget(m_groupSend);

    connect(m_cbxNetType, SIGNAL(currentIndexChanged(int)), this, SLOT(SltChangeNetType(int)));
    connect(m_btnOpen, SIGNAL(clicked()), this, SLOT(SltBtnOpenClicked()));
    connect(m_btnDisconnect, SIGNAL(clicked()), this, SLOT(SltDisconnectClient()));
    connect(groupRecv->m_btnClearRecv, SIGNAL(clicked()), this, SLOT(clearRecv()));
    connect(groupRecv->m_btnSaveFile, SIGNAL(clicked()), this, SLOT(SltSaveDataToFile()));
    return column;
}

void NetworkToolWidget::InitNetwork()
{
    m_tcpServer = new TcpServer(this);
    connect(m_tcpServer, SIGNAL(signalClientConnected(QString)), this, SLOT(SltNewClientConnected(QString)));
    connect(m_tcpServer, SIGNAL(signalClientDisconnected(QString)), this, SLOT(SltClientDisconnected(QString)));
    connect(m_tcpServer, SIGNAL(signalReadMessage(QString,QByteArray)), this, SLOT(SltRecvSocketMessage(QString,QByteArray)));

    m_tcpSocket = new QTcpSocket();
    connect(m_tcpSocket, SIGNAL(connected()), this, SLOT(SltConnectedToHost()));
    connect(m_tcpSocket, SIGNAL(disconnected()), this, SLOT(SltDisConnectedToHost()));
    connect(m_tcpSocket, SIGNAL(readyRead()), this, SLOT(SltReadyFromHost()));

    m_udpSocket = new QUdpSocket();
    connect(m_udpSocket, SIGNAL(readyRead()), this, SLOT(SltReadyFromUdp()));

    m_links = NetLinkSet(m_tcpServer, m_tcpSocket, m_udpSocket);
}

void NetworkToolWidget::SltChangeNetType(int index)
{
    // by mode: the two captions, the clients group, the UDP destination, the button
    static const struct {
        const char *address;
        const char *port;
        bool clients;
        bool udpDest;
        const char *button;
    } modes[] = {{"2.本地IP地址", "2.本地端口", true, false, "启动监听"},
                 {"2.服务器IP地址", "3.服务器端口", false, false, "建立连接"},
                 {"2.本地IP地址", "2.本地端口", false, true, "打开"}};
    if (index < 0 || index > UdpMode)
        return;
    m_labAddress->setText(modes[index].address);
    m_labPort->setText(modes[index].port);
    m_widgetClients->setVisible(modes[index].clients);
    m_widgetUdpDest->setVisible(modes[index].udpDest);
    m_btnOpen->setText(modes[index].button);
}

void NetworkToolWidget::SltBtnOpenClicked()
{
    static void (NetworkToolWidget::*const starts[])() = {&NetworkToolWidget::StartTcpServer,
                                                          &NetworkToolWidget::StartTcpClient,
                                                          &NetworkToolWidget::StartUdpSocket};
    m_cbxNetType->setEnabled(true);
    const int index = m_cbxNetType->currentIndex();
    if (index >= 0 && index <= UdpMode)
        (this->*starts[index])();
}

void NetworkToolWidget::showLinkState(bool running, const QString &button)
{
    m_statusLabel->setStatus(running);
    m_sendBox->setDeviceStatus(running);
    m_btnOpen->setText(button);
    if (running)
        m_tap->reportOpened(m_links.linkName(NetLinkSet::kind(m_cbxNetType->currentIndex())));
    else
        m_tap->reportClosed();
}

void NetworkToolWidget::StartTcpServer()
{
    const quint16 port = NetworkMessageFormat::portFromText(m_edtPort->text());
    if (m_tcpServer->isListening()) {
        m_tcpServer->CloseListen();
        showLinkState(false, "启动监听");
        emit signalNotify(QString("TCP服务监听[端口:%1]已关闭!!").arg(port), 0);
        return;
    }
    if (m_tcpServer->listen(QHostAddress::Any, port)) {
        m_cbxNetType->setEnabled(false);
        showLinkState(true, "停止监听");
        emit signalNotify(QString("TCP服务监听[端口:%1]已启动!!").arg(port), 0);
    } else {
        emit signalNotify(QString("TCP服务监听[端口:%1]失败，请确认该端口是否可用!!").arg(port), 255);
    }
}

void NetworkToolWidget::StartTcpClient()
{
    // A refused attempt leaves the socket open though unconnected; the next press
    // then means "try again", not "disconnect" (nothing was ever connected).
    if (m_tcpSocket->isOpen() && m_tcpSocket->state() == QAbstractSocket::UnconnectedState)
        m_tcpSocket->close();
    if (m_tcpSocket->isOpen()) {
        m_tcpSocket->close();
        showLinkState(false, "建立连接");
        emit signalNotify("[ TCP Client ] 已断开连接！", 0);
        return;
    }
    const quint16 port = NetworkMessageFormat::portFromText(m_edtPort->text());
    emit signalNotify("正在与服务器建立连接....", 0);
    m_tcpSocket->connectToHost(m_cbxAddress->currentText(), port, QIODevice::ReadWrite,
                               QAbstractSocket::AnyIPProtocol);
}

void NetworkToolWidget::SltConnectedToHost()
{
    showLinkState(true, "断开连接");
    emit signalNotify("[TCP Client]与服务器连接成功！！！", 0);
}

void NetworkToolWidget::SltDisConnectedToHost()
{
    if (m_tcpSocket->isOpen())
        m_tcpSocket->close();
    showLinkState(false, "建立连接");
    emit signalNotify("[TCP Client]与服务器已断开连接~~~", 0);
}

void NetworkToolWidget::StartUdpSocket()
{
    if (m_udpSocket->state() == QAbstractSocket::BoundState) {
        m_udpSocket->abort();
        showLinkState(false, "打开");
        return;
    }
    const quint16 port = NetworkMessageFormat::portFromText(m_edtPort->text());
    if (m_udpSocket->bind(QHostAddress::Any, port)) {
        m_cbxNetType->setEnabled(false);
        showLinkState(true, "关闭");
        emit signalNotify(QString("UDP服务监听[端口:%1]已启动!!").arg(port), 0);
    } else {
        emit signalNotify(QString("UDP服务监听[端口:%1]失败，请确认该端口是否可用!!").arg(port), 255);
    }
}

void NetworkToolWidget::SltNewClientConnected(QString name)
{
    if (m_cbxClients->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0)
        m_cbxClients->addItem(name);
}

void NetworkToolWidget::SltClientDisconnected(QString name)
{
    const int index = m_cbxClients->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    // item 0 is "All Clients", never a client's name
    if (index > 0)
        m_cbxClients->removeItem(index);
}

void NetworkToolWidget::SltDisconnectClient()
{
    if (m_cbxClients->count() < 2)
        return;
    if (m_cbxClients->currentIndex() == 0) {
        if (QtMessageBox::question("是否确认断开所有连接?", "询问") == 1)
            m_tcpServer->disconnectClient(QString());
    } else {
        // the name is taken before asking: the client may leave while the box is up
        const QString name = m_cbxClients->currentText();
        if (QtMessageBox::question("是否确认断开当前客户端?", "询问") == 1)
            m_tcpServer->disconnectClient(name);
    }
}

void NetworkToolWidget::SltSendData(QByteArray byData)
{
    sendCounted(byData);
}

qint64 NetworkToolWidget::sendCounted(const QByteArray &byData)
{
    // counted before any test, also when a tip stops a UDP send below
    m_sendCount += quint64(byData.size());
    emit signalRefresCounts(PageIndex);

    qint64 written = -1;
    switch (m_cbxNetType->currentIndex()) {
    case TcpServerMode:
        // the clients box at the moment of sending decides: all of them or one
        if (m_cbxClients->currentIndex() == 0) {
            written = m_links.write(NetLinkSet::TcpServerLink, byData);
        } else if (m_tcpServer->isListening()) {
            m_tcpServer->SltSendMsgToClient(m_cbxClients->currentText(), byData);
            written = byData.size();
        }
        break;
    case TcpClientMode:
        if (m_tcpSocket->isOpen())
            written = m_tcpSocket->write(byData);
        break;
    case UdpMode: {
        if (m_edtDestAddress->text().isEmpty()) {
            QtMessageTip::Instance()->ShowMessage("UDP目的地址配置错误！", m_edtDestAddress->mapToGlobal(QPoint(0, 0)));
            return -1;
        }
        const quint16 port = NetworkMessageFormat::portFromText(m_edtDestPort->text());
        if (port == 0) {
            QtMessageTip::Instance()->ShowMessage("UDP目的端口配置错误！", m_edtDestPort->mapToGlobal(QPoint(0, 0)));
            return -1;
        }
        written = m_udpSocket->writeDatagram(byData, QHostAddress(m_edtDestAddress->text()), port);
        break;
    }
    default:
        break;
    }
    if (written >= 0)
        m_tap->reportSent(byData);
    return written;
}

void NetworkToolWidget::SltRecvSocketMessage(QString name, QByteArray byData)
{
    m_tap->reportReceived(byData);
    m_recvCount += quint64(byData.size());
    emit signalRefresCounts(PageIndex);

    // stopped data is counted but not kept
    if (m_chkStopShow->isChecked())
        return;

    // hex runs on where the last text ended; a line is a paragraph of its own
    if (m_rbtnRecvHex->isChecked())
        m_recvFeeder->appendText(NetworkMessageFormat::hexText(byData));
    else
        m_recvFeeder->appendParagraph(NetworkMessageFormat::asciiLine(name, byData));
}

void NetworkToolWidget::SltReadyFromHost()
{
    const QByteArray bytes = m_tcpSocket->readAll();
    SltRecvSocketMessage(NetworkMessageFormat::serverSenderName(), bytes);
}

// A flood keeps datagrams pending as fast as they are read: a bounded number per turn
// of the event loop, and the rest on the next, so the window keeps responding. The
// socket tells of no new datagram while some wait unread, hence the zero timer.
void NetworkToolWidget::SltReadyFromUdp()
{
    for (int n = 0; n < 256 && m_udpSocket->hasPendingDatagrams(); ++n) {
        const QNetworkDatagram datagram = m_udpSocket->receiveDatagram();
        const QString name = NetworkMessageFormat::udpSenderName(datagram.senderAddress(),
                                                                 quint16(datagram.senderPort()));
        SltRecvSocketMessage(name, datagram.data());
    }
    if (m_udpSocket->hasPendingDatagrams())
        QTimer::singleShot(0, this, SLOT(SltReadyFromUdp()));
}

QString NetworkToolWidget::recvText()
{
    return m_recvFeeder->plainText();
}

void NetworkToolWidget::clearRecv()
{
    m_recvFeeder->clear();
}

// the page's own names for what the shared parts do
void NetworkToolWidget::SltBtnFoldClicked() { m_btnFold->SltBtnFoldClicked(); }
void NetworkToolWidget::SltChangeSendPage(int index) { m_groupSend->SltChangeSendPage(index); }
void NetworkToolWidget::SltChangeAutoInterval() { m_groupSend->SltChangeAutoInterval(); }
void NetworkToolWidget::SltSaveDataToFile() { saveDataToFile(QString()); }
void NetworkToolWidget::saveDataToFile(const QString &fileName) { emitNotice(QtRecvSaveFormat::save(this, recvText(), fileName)); }
