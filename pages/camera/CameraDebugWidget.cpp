#include "CameraDebugWidget.h"
#include "Rfc2217Port.h"

#include <QHash>

#include "CameraFrame.h"
#include "CameraImageDecoder.h"
#include "CameraRegisterRequest.h"
#include "ImageFormatConfig.h"
#include "ImageViewer.h"
#include "LinkTap.h"
#include "NumberTool.h"
#include "QextSerialPort.h"
#include "QtMessageTip.h"
#include "QtSerialPortForm.h"
#include "StatusLabel.h"
#include "TcpServer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDebug>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkDatagram>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QRegExpValidator>
#include <QStackedWidget>
#include <QTcpSocket>
#include <QTimer>
#include <QUdpSocket>
#include <QVBoxLayout>

CameraDebugWidget::CameraDebugWidget(QWidget *parent)
    : QtWidgetBase(parent)
    , m_tcpServer(nullptr)
    , m_tcpClient(nullptr)
    , m_udpSocket(nullptr)
    , m_serialPort(nullptr)
    , m_recvBuffer(m_decoder.recvBuffer())
    , m_bRecvImage(m_decoder.recvImage())
    , m_nFrameLen(m_decoder.frameLen())
    , m_nJpegStart(m_decoder.jpegStart())
    , m_nJpegEnd(m_decoder.jpegEnd())
    , m_imgFormat(m_decoder.imageFormats())
    , m_frameHead(CameraFrame::head())
    , m_jpegSoi("\xFF\xD8", 2)
    , m_jpegEoi("\xFF\xD9", 2)
    , m_nRecvBytes(0)
    , m_nLastBytes(0)
    , m_nFrameCount(0)
    , m_nLastFrames(0)
    , m_dFrameRate(0)
{
    m_rateTimer = new QTimer(this);
    m_rateTimer->setInterval(1000);
    connect(m_rateTimer, SIGNAL(timeout()), this, SLOT(SltCalculationRate()));
    m_tap = new LinkTap([this](const QByteArray &bytes) { return writeToLink(bytes); }, this);
    InitWidget();
    InitLinks();
}

CameraDebugWidget::~CameraDebugWidget()
{
    m_tap->reportClosed();
    // the links report their last disconnects while they go down, into a page that
    // is half destroyed by then
    m_tcpServer->disconnect(this);
    m_tcpServer->CloseListen();
    m_tcpClient->disconnect(this);
    m_udpSocket->disconnect(this);
    m_serialPort->disconnect(this);
    delete m_tcpServer;
    delete m_tcpClient;
    delete m_udpSocket;
    if (m_serialPort->isOpen())
        m_serialPort->close();
    delete m_serialPort;
}

void CameraDebugWidget::InitWidget()
{
    setObjectName("CameraDebugWidget");

    // left column: link, protocol and send settings, then the open button
    QWidget *column = new QWidget(this);
    column->setObjectName("widgetCameraConfig");
    column->setFixedWidth(230);

    QGroupBox *groupPort = new QGroupBox("端口设置", column);
    m_cbxProtocol = new QComboBox(groupPort);
    m_cbxProtocol->setObjectName("cbxProtocol");
    m_cbxProtocol->addItems({"Tcp Server", "TCP Client", "UDP"});

    m_stackedConfig = new QStackedWidget(groupPort);
    QWidget *netPage = new QWidget(m_stackedConfig);
    m_labAddress = new QLabel("2.本地IP地址", netPage);
    m_cbxAddress = new QComboBox(netPage);
    m_cbxAddress->setObjectName("cbxAddress");
    m_cbxAddress->setEditable(true);
    m_cbxAddress->addItems(NumberTool::GetHostIpAddress());
    m_edtPort = new QLineEdit("8000", netPage);
    m_edtPort->setObjectName("edtPort");
    QVBoxLayout *netLayout = new QVBoxLayout(netPage);
    netLayout->setContentsMargins(0, 0, 0, 0);
    netLayout->setSpacing(5);
    netLayout->addWidget(m_labAddress);
    netLayout->addWidget(m_cbxAddress);
    netLayout->addWidget(new QLabel("3.服务器端口", netPage));
    netLayout->addWidget(m_edtPort);
    netLayout->addStretch();

    QWidget *serialPage = new QWidget(m_stackedConfig);
    QGridLayout *serialLayout = new QGridLayout(serialPage);
    serialLayout->setContentsMargins(0, 0, 0, 0);
    serialLayout->setSpacing(5);
    // the port itself is picked in the link box
    m_serialForm = new QtSerialPortForm(serialPage, serialLayout, 0, m_tap);
    m_cbxBaudrate = m_serialForm->m_cbxBaud;
    m_cbxParity = m_serialForm->m_cbxParity;
    m_cbxDataBits = m_serialForm->m_cbxDataBits;
    m_cbxStopBits = m_serialForm->m_cbxStopBits;
    serialLayout->setColumnStretch(1, 1);
    m_stackedConfig->addWidget(netPage);
    m_stackedConfig->addWidget(serialPage);

    QVBoxLayout *portLayout = new QVBoxLayout(groupPort);
    portLayout->setContentsMargins(5, 10, 5, 5);
    portLayout->setSpacing(5);
    portLayout->addWidget(new QLabel("1.协议类型", groupPort));
    portLayout->addWidget(m_cbxProtocol);
    portLayout->addWidget(m_stackedConfig);

    QGroupBox *groupProtocol = new QGroupBox("协议配置", column);
    m_rbProtocol = new QRadioButton("协议传输", groupProtocol);
    m_rbProtocol->setChecked(true);
    m_rbJpeg = new QRadioButton("JPEG数据", groupProtocol);
    m_chkBigEndian = new QCheckBox("数据大端", groupProtocol);
    m_chkCrc = new QCheckBox("CRC-16", groupProtocol);
    m_cbxDeviceCount = new QComboBox(groupProtocol);
    m_cbxDeviceCount->addItems({"1", "2"});
    QGridLayout *protocolLayout = new QGridLayout(groupProtocol);
    protocolLayout->setContentsMargins(5, 10, 5, 5);
    protocolLayout->setSpacing(10);
    protocolLayout->addWidget(m_rbProtocol, 0, 0);
    protocolLayout->addWidget(m_rbJpeg, 0, 1);
    protocolLayout->addWidget(m_chkBigEndian, 1, 0);
    protocolLayout->addWidget(m_chkCrc, 1, 1);
    protocolLayout->addWidget(new QLabel("设备数:", groupProtocol), 2, 0);
    protocolLayout->addWidget(m_cbxDeviceCount, 2, 1);
    protocolLayout->setRowStretch(3, 1);

    QGroupBox *groupSend = new QGroupBox("发送区设置", column);
    groupSend->setObjectName("groupBoxSendCfg");
    m_cbxDeviceAddr = new QComboBox(groupSend);
    m_cbxDeviceAddr->addItems({"0", "1"});
    m_edtRegAddrLen = new QLineEdit("1", groupSend);
    m_edtRegAddrLen->setObjectName("edtRegAddrLen");
    m_edtRegAddrLen->setValidator(new QRegExpValidator(QRegExp("[1-4]"), m_edtRegAddrLen));
    m_edtRegValueLen = new QLineEdit("1", groupSend);
    m_edtRegValueLen->setObjectName("edtRegValueLen");
    m_edtRegValueLen->setValidator(new QRegExpValidator(QRegExp("[1-4]"), m_edtRegValueLen));
    m_edtAutoDelay = new QLineEdit("1000", groupSend);
    m_edtAutoDelay->setValidator(new QRegExpValidator(QRegExp("\\d+"), m_edtAutoDelay));
    m_chkAutoSend = new QCheckBox("自动发送", groupSend);
    m_btnClearInput = new QPushButton("清除重填", groupSend);
    QGridLayout *sendLayout = new QGridLayout(groupSend);
    sendLayout->setContentsMargins(5, 10, 5, 5);
    sendLayout->setSpacing(5);
    sendLayout->addWidget(new QLabel("设备地址", groupSend), 0, 0);
    sendLayout->addWidget(m_cbxDeviceAddr, 0, 1);
    sendLayout->addWidget(new QLabel("寄存器地址长度", groupSend), 1, 0);
    sendLayout->addWidget(m_edtRegAddrLen, 1, 1);
    sendLayout->addWidget(new QLabel("字节", groupSend), 1, 2);
    sendLayout->addWidget(new QLabel("寄存器值长度", groupSend), 2, 0);
    sendLayout->addWidget(m_edtRegValueLen, 2, 1);
    sendLayout->addWidget(new QLabel("字节", groupSend), 2, 2);
    sendLayout->addWidget(new QLabel("自动发送间隔", groupSend), 3, 0);
    sendLayout->addWidget(m_edtAutoDelay, 3, 1);
    sendLayout->addWidget(new QLabel("毫秒", groupSend), 3, 2);
    sendLayout->addWidget(m_chkAutoSend, 4, 0);
    sendLayout->addWidget(m_btnClearInput, 4, 1, 1, 2);

    m_statusLabel = new StatusLabel(column);
    m_statusLabel->setObjectName("statusLabel");
    m_statusLabel->setFixedWidth(60);
    m_btnOpen = new QPushButton("开始监听", column);
    m_btnOpen->setObjectName("btnOpen");
    m_serialForm->setLampAndButton(m_statusLabel, m_btnOpen);
    QHBoxLayout *openLayout = new QHBoxLayout;
    openLayout->setContentsMargins(0, 0, 0, 0);
    openLayout->setSpacing(5);
    openLayout->addWidget(m_statusLabel);
    openLayout->addWidget(m_btnOpen, 1);

    QVBoxLayout *leftLayout = new QVBoxLayout(column);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(10);
    leftLayout->addWidget(groupPort);
    leftLayout->addWidget(groupProtocol, 1);
    leftLayout->addWidget(groupSend);
    leftLayout->addLayout(openLayout);

    // right column: the image above the register strip
    m_imageViewer = new ImageViewer(this);
    m_formatConfig = new ImageFormatConfig(this);
    QVBoxLayout *rightLayout = new QVBoxLayout;
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->setSpacing(5);
    rightLayout->addWidget(m_imageViewer, 1);
    rightLayout->addWidget(m_formatConfig);

    QHBoxLayout *mainLayout = new QHBoxLayout(this);
    mainLayout->setContentsMargins(5, 5, 5, 5);
    mainLayout->setSpacing(5);
    mainLayout->addWidget(column);
    mainLayout->addLayout(rightLayout, 1);

    connect(m_cbxProtocol, SIGNAL(currentIndexChanged(int)), this, SLOT(SltChangeProtocol(int)));
    connect(m_cbxDeviceCount, SIGNAL(currentIndexChanged(int)), this, SLOT(SltChangeImageShow(int)));
    connect(m_edtAutoDelay, SIGNAL(returnPressed()), this, SLOT(sltChangeDelay()));
    connect(m_chkAutoSend, SIGNAL(clicked(bool)), this, SLOT(sltSetAutoSend(bool)));
    connect(m_btnClearInput, SIGNAL(clicked()), m_formatConfig, SLOT(SltClearInput()));
    connect(m_btnOpen, SIGNAL(clicked(bool)), this, SLOT(SltBtnOpenClicked()));
    connect(m_formatConfig, SIGNAL(signalReadWriteReg(QString,QString,int)),
            this, SLOT(SltReadWriteRegister(QString,QString,int)));
    connect(m_formatConfig, SIGNAL(autoSendFinished()), this, SLOT(sltAutoSendFinised()));
}

void CameraDebugWidget::InitLinks()
{
    m_tcpServer = new TcpServer;
    connect(m_tcpServer, SIGNAL(signalReadMessage(QString,QByteArray)), this, SLOT(SltRecvImageData(QString,QByteArray)));

    m_tcpClient = new QTcpSocket;
    connect(m_tcpClient, SIGNAL(readyRead()), this, SLOT(SltReadFromTcpSocket()));
    connect(m_tcpClient, SIGNAL(connected()), this, SLOT(SltTcpSocketConnected()));
    connect(m_tcpClient, SIGNAL(disconnected()), this, SLOT(SltTcpSocketDisConnected()));

    m_udpSocket = new QUdpSocket;
    connect(m_udpSocket, SIGNAL(readyRead()), this, SLOT(SltReadyFromUdp()));

    m_serialPort = new QextSerialPort(QextSerialPort::EventDriven);
    connect(m_serialPort, SIGNAL(readyRead()), this, SLOT(SltRecvSerialportData()));
    connect(m_serialPort, SIGNAL(disconnected()), this, SLOT(SltSerialportLost()));

    m_links = NetLinkSet(m_tcpServer, m_tcpClient, m_udpSocket);
}

QString CameraDebugWidget::getImageSuffix(unsigned char format)
{
    return CameraFrame::imageSuffix(format);
}

// ---- counters ----

QStringList CameraDebugWidget::getCounts()
{
    return QStringList{QString("帧编号: %1").arg(m_nFrameCount),
                       QString("接收速率: %1").arg(NumberTool::size(m_nRecvBytes - m_nLastBytes)),
                       QString("接收帧率: %1 FPS").arg(m_dFrameRate)};
}

void CameraDebugWidget::clearCounts()
{
    // the frame baseline stays, so the next tick may report a wrapped rate
    m_nFrameCount = 0;
    m_nRecvBytes = 0;
    m_nLastBytes = 0;
    m_dFrameRate = 0;
}

void CameraDebugWidget::SltCalculationRate()
{
    m_dFrameRate = double(quint32(m_nFrameCount - m_nLastFrames));
    emit signalRefresCounts(PageIndex);
    m_nLastFrames = m_nFrameCount;
    m_nLastBytes = m_nRecvBytes;
}

void CameraDebugWidget::SltChangeImageShow(int index)
{
    m_imageViewer->setImageShowCount(index + 1);
}

// ---- frames out ----

void CameraDebugWidget::SendMessageToDevice(unsigned char cmd, unsigned char addr, QByteArray data)
{
    const QByteArray frame = CameraFrame::build(cmd, addr, data);
    qDebug().noquote() << "send data" << NumberTool::byteToHex(frame);
    WriteDataToDevice(frame);
}

void CameraDebugWidget::SendReplyMessage(unsigned char addr, unsigned char status)
{
    SendMessageToDevice(CameraFrame::CMD_REPLY, addr, QByteArray(1, char(status)));
}

void CameraDebugWidget::WriteDataToDevice(const QByteArray &data)
{
    writeToLink(data);
}

qint64 CameraDebugWidget::writeToLink(const QByteArray &data)
{
    // the link box decides, also while the link it names is down: such writes fail
    const NetLinkSet::Kind kind = NetLinkSet::kind(m_cbxProtocol->currentIndex());
    const qint64 written = kind == NetLinkSet::SerialLink ? m_serialPort->write(data) : m_links.write(kind, data);
    if (written >= 0)
        m_tap->reportSent(data);
    return written;
}

void CameraDebugWidget::SltReadWriteRegister(const QString &strAddr, const QString &strValue, int regId)
{
    const CameraRegisterRequest request(strAddr, strValue, regId, m_edtRegAddrLen->text().toInt(),
                                        m_edtRegValueLen->text().toInt());
    if (!request.error().isEmpty()) {
        QtMessageTip::Instance()->ShowToastMessage(request.error(), 2000);
        return;
    }
    SendMessageToDevice(request.command(), uchar(m_cbxDeviceAddr->currentIndex()), request.payload());
}

// ---- bytes in ----

void CameraDebugWidget::SltRecvImageData(const QString &name, const QByteArray &byData)
{
    Q_UNUSED(name)
    m_tap->reportReceived(byData);
    m_nRecvBytes += byData.size();
    handleChunk(byData);
}

void CameraDebugWidget::handleChunk(const QByteArray &byData)
{
    CameraLinkDecoder::Options options;
    options.jpegMode = m_rbJpeg->isChecked();
    options.crcCheck = m_chkCrc->isChecked();
    options.valueLength = m_edtRegValueLen->text().toInt();
    std::vector<CameraLinkEvent> events;
    m_decoder.receive(byData, options, events);

    // Of the images one chunk completes, only the last for each viewer area can be
    // seen: the view paints after the chunk. A board that announces a huge format and
    // then sends empty frames would otherwise have every one decoded at full size, some
    // 30 ms each. An image that draws nothing leaves the one before it in place, so
    // the last one that draws something is the one shown.
    std::vector<QPixmap> shown(events.size());
    QHash<int, QVector<int>> byArea;
    for (int i = 0; i < int(events.size()); ++i) {
        const int area = drawArea(events[size_t(i)]);
        if (area >= 0)
            byArea[area].append(i);
    }
    for (const QVector<int> &draws : qAsConst(byArea)) {
        for (int j = draws.size() - 1; j >= 0; --j) {
            shown[size_t(draws[j])] = drawnPixmap(events[size_t(draws[j])]);
            if (!shown[size_t(draws[j])].isNull())
                break;
        }
    }
    for (size_t i = 0; i < events.size(); ++i) {
        const int area = drawArea(events[i]);
        if (area < 0)
            applyEvent(events[i]);
        else if (!shown[i].isNull())
            m_imageViewer->setPixmap(area, shown[i]);
    }
}

int CameraDebugWidget::drawArea(const CameraLinkEvent &e) const
{
    switch (e.kind) {
    case CameraLinkEvent::DrawRaw:
        return e.slot;
    case CameraLinkEvent::DrawRgb565:
        return m_imgFormat[e.slot].device;
    case CameraLinkEvent::DrawJpeg:
        return 0;
    default:
        return -1;
    }
}

QPixmap CameraDebugWidget::drawnPixmap(const CameraLinkEvent &e) const
{
    QPixmap pixmap;
    switch (e.kind) {
    case CameraLinkEvent::DrawRaw: {
        const s_img_format &f = m_imgFormat[e.slot];
        pixmap = QPixmap::fromImage(CameraImageDecoder::rawRgb888(f.width, f.height, e.data));
        break;
    }
    case CameraLinkEvent::DrawRgb565: {
        const s_img_format &f = m_imgFormat[e.slot];
        pixmap = QPixmap::fromImage(CameraImageDecoder::rgb565(f.width, f.height, e.data.constData() + e.offset,
                                                               e.length, m_chkBigEndian->isChecked()));
        break;
    }
    case CameraLinkEvent::DrawJpeg:
        pixmap.loadFromData(e.data);
        break;
    default:
        break;
    }
    return pixmap;
}

// the two parsers run inside the decoder, on the bytes already in the buffer
void CameraDebugWidget::parseProtocolData()
{
    handleChunk(QByteArray());
}

void CameraDebugWidget::parseJpegData()
{
    handleChunk(QByteArray());
}

void CameraDebugWidget::stopRecvImage()
{
    m_decoder.stopRecvImage();
}

void CameraDebugWidget::applyEvent(const CameraLinkEvent &e)
{
    switch (e.kind) {
    case CameraLinkEvent::RestartFrameTimer:
        m_frameTimer.restart();
        break;
    case CameraLinkEvent::Notify:
        emit signalNotify(e.text, 0);
        break;
    case CameraLinkEvent::DrawRaw:
    case CameraLinkEvent::DrawRgb565:
    case CameraLinkEvent::DrawJpeg:
        m_imageViewer->setPixmap(drawArea(e), drawnPixmap(e));
        break;
    case CameraLinkEvent::FrameDone:
        ++m_nFrameCount;
        break;
    case CameraLinkEvent::RefreshCounts:
        emit signalRefresCounts(PageIndex);
        break;
    case CameraLinkEvent::Reply:
        SendReplyMessage(0, uchar(e.value));
        break;
    case CameraLinkEvent::RegisterValue:
        m_formatConfig->SetRegValue(e.regId, e.value);
        break;
    case CameraLinkEvent::Toast:
        QtMessageTip::Instance()->ShowToastMessage(e.text, 2000);
        break;
    }
}

void CameraDebugWidget::saveDataWithRGB565(s_img_format *format, const QByteArray &data)
{
    const QImage image = CameraImageDecoder::rgb565(format->width, format->height, data.constData(),
                                                    data.size(), m_chkBigEndian->isChecked());
    m_imageViewer->setPixmap(format->device, QPixmap::fromImage(image));
}

void CameraDebugWidget::SltRecvSerialportData()
{
    SltRecvImageData("serialport", m_serialPort->readAll());
}

void CameraDebugWidget::SltReadFromTcpSocket()
{
    SltRecvImageData("tcp", m_tcpClient->readAll());
}

void CameraDebugWidget::SltReadyFromUdp()
{
    // several datagrams may make one chunk, which matters to the head test
    QByteArray data;
    while (m_udpSocket->hasPendingDatagrams())
        data.append(m_udpSocket->receiveDatagram().data());
    SltRecvImageData("udp", data);
}

// ---- links ----

void CameraDebugWidget::SltChangeProtocol(int index)
{
    // by link: the address caption (the serial settings have none), the button
    // running and idle
    static const struct {
        const char *caption;
        const char *running;
        const char *idle;
    } texts[] = {{"2.本地IP地址", "关闭监听", "开始监听"},
                 {"2.服务器地址", "断开连接", "开始连接"},
                 {"2.本地IP地址", "关闭监听", "开始监听"},
                 {nullptr, "关闭串口", "打开串口"}};
    const NetLinkSet::Kind kind = NetLinkSet::kind(index);
    m_stackedConfig->setCurrentIndex(kind == NetLinkSet::SerialLink && index >= 0 ? 1 : 0);
    if (index < 0)
        return; // the box is being refilled
    if (texts[kind].caption)
        m_labAddress->setText(texts[kind].caption);
    m_btnOpen->setText(linkRunning(kind) ? texts[kind].running : texts[kind].idle);
}

bool CameraDebugWidget::linkRunning(NetLinkSet::Kind kind) const
{
    return kind == NetLinkSet::SerialLink ? m_serialPort->isOpen() : m_links.isRunning(kind);
}

void CameraDebugWidget::setModeEnabled(bool enabled)
{
    m_rbProtocol->setEnabled(enabled);
    m_rbJpeg->setEnabled(enabled);
}

void CameraDebugWidget::setStatus(bool bOpen, const QString &btnText, QString message)
{
    m_decoder.resetLink();
    setModeEnabled(!bOpen);
    if (bOpen) {
        m_statusLabel->setStatus(true);
        m_cbxProtocol->setEnabled(false);
        m_rateTimer->start();
        m_tap->reportOpened(m_links.linkName(NetLinkSet::kind(m_cbxProtocol->currentIndex())));
    } else {
        m_statusLabel->setStatus(false);
        m_rateTimer->stop();
        m_tap->reportClosed();
    }
    m_btnOpen->setText(btnText);
    emit signalNotify(message, 0);
}

bool CameraDebugWidget::reopenPort(const QString &path)
{
    if (!m_serialPort->isOpen()) {
        // the link box lists serial ports by their short names among the network modes
        const int index = m_cbxProtocol->findText(path.mid(5), Qt::MatchContains);
        if (index < 0)
            return false;
        m_cbxProtocol->setCurrentIndex(index);
        SltBtnOpenClicked();
    }
    return m_serialPort->isOpen();
}

void CameraDebugWidget::SltBtnOpenClicked()
{
    const NetLinkSet::Kind kind = NetLinkSet::kind(m_cbxProtocol->currentIndex());
    m_cbxProtocol->setEnabled(true);
    const int port = m_edtPort->text().toInt();
    stopRecvImage();
    if (kind == NetLinkSet::TcpServerLink) {
        if (m_tcpServer->isListening()) {
            setStatus(false, "启动监听", QString("TCP服务监听[端口:%1]已关闭!!").arg(port));
            m_tcpServer->CloseListen();
        } else if (m_tcpServer->listen(QHostAddress::Any, quint16(port))) {
            setStatus(true, "关闭监听", QString("TCP服务监听[端口:%1]已启动!!").arg(port));
        } else {
            emit signalNotify(QString("TCP服务监听[端口:%1]失败，请确认该端口是否可用!!").arg(port), 255);
        }
    } else if (kind == NetLinkSet::TcpClientLink) {
        if (m_tcpClient->isOpen()) {
            m_tcpClient->close();
            setStatus(false, "开始连接", "TcpClient已断开连接!!");
        } else if (!m_cbxAddress->currentText().isEmpty()) {
            m_tcpClient->connectToHost(m_cbxAddress->currentText(), quint16(port), QIODevice::ReadWrite,
                                       QAbstractSocket::AnyIPProtocol);
        } else {
            QtMessageTip::Instance()->ShowToastMessage("请填写正确的服务器地址！", 2000);
        }
    } else if (kind == NetLinkSet::UdpLink) {
        if (m_udpSocket->state() == QAbstractSocket::BoundState) {
            setStatus(false, "启动监听", QString("UDP服务监听[端口:%1]已关闭!!").arg(port));
            m_udpSocket->close();
        } else if (m_udpSocket->bind(QHostAddress::Any, quint16(port))) {
            setStatus(true, "关闭监听", QString("UDP服务监听[端口:%1]已启动!!").arg(port));
        } else {
            emit signalNotify(QString("UDP服务监听[端口:%1]失败，请确认该端口是否可用!!").arg(port), 255);
        }
    } else {
        if (m_serialPort->isOpen()) {
            emit signalNotify(SerialSettings::closedText(m_serialPort->portName()), 0);
            CloseSerialport();
        } else {
            OpenSerialport();
        }
    }
}

// the client stays outside setStatus: only the button and the tap follow it
void CameraDebugWidget::SltTcpSocketConnected()
{
    m_btnOpen->setText("断开连接");
    m_tap->reportOpened(m_links.linkName(NetLinkSet::TcpClientLink));
}

void CameraDebugWidget::SltTcpSocketDisConnected()
{
    m_btnOpen->setText("开始连接");
    m_tap->reportClosed();
}

void CameraDebugWidget::OpenSerialport()
{
    QRegExp rx("(tty\\w+)", Qt::CaseSensitive);
    const QString text = m_cbxProtocol->currentText();
    // a remote port goes by the path the serial page gives it, "/dev/" + its name
    const QString remote = Rfc2217Port::remoteName(text.mid(text.indexOf(Rfc2217Port::scheme())));
    if (remote.isEmpty() && rx.indexIn(text) < 0) {
        emit signalNotify(SerialSettings::failedText(text), 255);
        return;
    }
    const QString name = "/dev/" + (remote.isEmpty() ? rx.cap(1) : remote);
    if (!m_serialForm->settings(name).open(m_serialPort)) {
        emit signalNotify(SerialSettings::failedText(name), 255);
        return;
    }
    m_serialForm->showOpened(m_serialPort->portName());
    emit signalNotify(SerialSettings::openedText(m_serialPort->portName()), 0);
    m_cbxProtocol->setEnabled(false);
    m_rateTimer->start();
    setModeEnabled(false);
}

void CameraDebugWidget::CloseSerialport()
{
    m_serialPort->close();
    m_cbxProtocol->setEnabled(true);
    m_serialForm->showClosed();
    m_rateTimer->stop();
    setModeEnabled(true);
}

void CameraDebugWidget::SltSerialportChanged(const QStringList &serialports)
{
    const int index = m_cbxProtocol->currentIndex();
    m_cbxProtocol->clear();
    m_cbxProtocol->addItems({"TCP Server", "TCP Client", "UDP"});
    for (const QString &name : serialports)
        m_cbxProtocol->addItem("串口    " + name);
    for (const QString &name : qAsConst(m_remoteLinks))
        m_cbxProtocol->addItem("串口    " + name);
    if (index < 3)
        m_cbxProtocol->setCurrentIndex(index);
    if (!m_serialPort->isOpen())
        return;
    // the port knows its full path and the list short names: any change closes it
    if (!serialports.contains(m_serialPort->portName())) {
        CloseSerialport();
        emit signalNotify(SerialSettings::pulledText(), 255);
        return;
    }
    m_cbxProtocol->setCurrentText("串口    " + m_serialPort->portName());
}

bool CameraDebugWidget::addRemoteLink(const QString &name, QString *error)
{
    const QString remote = Rfc2217Port::remoteName(name.trimmed());
    QString host;
    quint16 port = 0;
    if (!Rfc2217Port::parseName(remote, &host, &port)) {
        if (error)
            *error = QString("远程串口地址应为 rfc2217://主机:端口: %1").arg(name);
        return false;
    }
    if (!m_remoteLinks.contains(remote)) {
        m_remoteLinks << remote;
        m_cbxProtocol->addItem("串口    " + remote);
    }
    if (m_cbxProtocol->isEnabled())
        m_cbxProtocol->setCurrentIndex(m_cbxProtocol->findText("串口    " + remote));
    return true;
}

void CameraDebugWidget::SltSerialportLost()
{
    if (!m_serialPort->isOpen())
        return;
    CloseSerialport();
    emit signalNotify(SerialSettings::pulledText(), 255);
}

// ---- register strip ----

void CameraDebugWidget::sltSetAutoSend(bool bOk)
{
    if (bOk && !m_statusLabel->isWork()) {
        m_chkAutoSend->setChecked(false);
        QtMessageTip::Instance()->ShowToastMessage("当前未打开设备！", 2000);
        return;
    }
    m_formatConfig->setAutoSend(bOk);
}

void CameraDebugWidget::sltChangeDelay()
{
    const int delay = m_edtAutoDelay->text().toInt();
    if (delay > 1)
        m_formatConfig->setAutoSendDelay(delay);
}

void CameraDebugWidget::sltAutoSendFinised()
{
    m_chkAutoSend->setChecked(false);
    QtMessageTip::Instance()->ShowToastMessage("自动发送任务执行完成", 2000);
}

void CameraDebugWidget::showErrorMsgTip(QWidget *widget, QString text)
{
    QtMessageTip::Instance()->ShowMessage(text, widget->mapToGlobal(QPoint(0, widget->height())));
}
