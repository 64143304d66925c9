#include "SerialportWidget.h"
#include "IconHelper.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QextSerialPort.h"
#include "QtFileDialog.h"
#include "QtRecvSaveFormat.h"
#include "QtSendBoxWidget.h"
#include "QtTerminalWidget.h"
#include "SerialDisplayQueue.h"
#include "SerialRecvRule.h"
#include "StatusLabel.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTime>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

SerialportWidget::SerialportWidget(QWidget *parent)
    : QtWidgetBase(parent)
    , m_sendCount(0)
    , m_recvCount(0)
{
    // the one writer of the process-wide new line the send boxes append
    NumberTool::m_newLine.append(char(13));
    NumberTool::m_newLine.append(char(10));

    m_serialport = new QextSerialPort(QextSerialPort::EventDriven);
    m_recvTimer = new QTimer(this);
    m_recvTimer->setSingleShot(true);
    m_recvTimer->setInterval(50);

    InitWidget();
    clearCounts();
    InitSerialPortConfig();
}

SerialportWidget::~SerialportWidget()
{
    if (m_serialport->isOpen())
        m_serialport->close();
    delete m_serialport;
    m_serialport = nullptr;
}

QSize SerialportWidget::sizeHint() const
{
    return QSize(900, 600);
}

QStringList SerialportWidget::getCounts()
{
    return QStringList() << QString("发送字节: %1").arg(m_sendCount)
                         << QString("接收字节: %1").arg(m_recvCount);
}

void SerialportWidget::clearCounts()
{
    m_sendCount = 0;
    m_recvCount = 0;
}

QWidget *SerialportWidget::InitConfigColumn()
{
    QWidget *column = new QWidget(this);

    // port settings
    QGroupBox *groupPort = new QGroupBox("串口配置", column);
    m_cbxPort = new QComboBox(groupPort);
    m_cbxPort->setObjectName("cbxPort");
    m_cbxBaud = new QComboBox(groupPort);
    m_cbxBaud->setObjectName("cbxBaud");
    m_cbxBaud->setEditable(true);
    m_cbxParity = new QComboBox(groupPort);
    m_cbxParity->setObjectName("cbxParity");
    m_cbxDataBits = new QComboBox(groupPort);
    m_cbxDataBits->setObjectName("cbxDataBits");
    m_cbxStopBits = new QComboBox(groupPort);
    m_cbxStopBits->setObjectName("cbxStopBits");
    m_statusLabel = new StatusLabel(groupPort);
    m_statusLabel->setStatus(false);
    m_btnOpen = new QPushButton("打开串口", groupPort);
    m_btnOpen->setObjectName("btnOpen");

    QGridLayout *gridPort = new QGridLayout(groupPort);
    gridPort->setContentsMargins(5, 5, 5, 5);
    gridPort->setSpacing(5);
    const QStringList names = {"端口", "波特率", "校验位", "数据位", "停止位"};
    QComboBox *boxes[] = {m_cbxPort, m_cbxBaud, m_cbxParity, m_cbxDataBits, m_cbxStopBits};
    for (int i = 0; i < names.size(); ++i) {
        gridPort->addWidget(new QLabel(names.at(i), groupPort), i, 0);
        gridPort->addWidget(boxes[i], i, 1);
    }
    gridPort->addWidget(m_statusLabel, names.size(), 0);
    gridPort->addWidget(m_btnOpen, names.size(), 1);
    gridPort->setColumnStretch(1, 1);

    // receive settings
    QGroupBox *groupRecv = new QGroupBox("接收区设置", column);
    m_rbtnRecvAscii = new QRadioButton("ASCII", groupRecv);
    m_rbtnRecvAscii->setObjectName("rbtnRecvAscii");
    m_rbtnRecvAscii->setChecked(true);
    m_rbtnRecvHex = new QRadioButton("HEX", groupRecv);
    m_rbtnRecvHex->setObjectName("rbtnRecvHex");
    QButtonGroup *groupRecvFormat = new QButtonGroup(groupRecv);
    groupRecvFormat->addButton(m_rbtnRecvAscii, 0);
    groupRecvFormat->addButton(m_rbtnRecvHex, 1);
    m_chkStopShow = new QCheckBox("停止显示", groupRecv);
    m_chkStopShow->setObjectName("chkStopShow");
    m_chkLogMode = new QCheckBox("日志模式", groupRecv);
    m_chkLogMode->setObjectName("chkLogMode");
    QPushButton *btnClearRecv = new QPushButton("清空接收区", groupRecv);
    btnClearRecv->setObjectName("btnClearRecv");
    QPushButton *btnSaveFile = new QPushButton("保存到文件", groupRecv);
    btnSaveFile->setObjectName("btnSaveFile");

    QGridLayout *gridRecv = new QGridLayout(groupRecv);
    gridRecv->setContentsMargins(5, 5, 5, 5);
    gridRecv->setSpacing(5);
    gridRecv->addWidget(m_rbtnRecvAscii, 0, 0);
    gridRecv->addWidget(m_rbtnRecvHex, 0, 1);
    gridRecv->addWidget(m_chkStopShow, 1, 0);
    gridRecv->addWidget(m_chkLogMode, 1, 1);
    gridRecv->setRowStretch(2, 1);
    gridRecv->addWidget(btnClearRecv, 3, 0);
    gridRecv->addWidget(btnSaveFile, 3, 1);

    // send settings
    QGroupBox *groupSend = new QGroupBox("发送区设置", column);
    m_cbxSendOption = new QComboBox(groupSend);
    m_cbxSendOption->setObjectName("cbxSendOption");
    m_cbxSendOption->addItems({"单项发送", "多项发送"});
    m_edtAutoInterval = new QLineEdit("1000", groupSend);
    m_edtAutoInterval->setObjectName("edtAutoInterval");
    m_rbtnSendAscii = new QRadioButton("ASCII", groupSend);
    m_rbtnSendAscii->setObjectName("rbtnSendAscii");
    m_rbtnSendAscii->setChecked(true);
    m_rbtnSendHex = new QRadioButton("HEX", groupSend);
    m_rbtnSendHex->setObjectName("rbtnSendHex");
    QButtonGroup *groupSendFormat = new QButtonGroup(groupSend);
    groupSendFormat->addButton(m_rbtnSendAscii, 0);
    groupSendFormat->addButton(m_rbtnSendHex, 1);
    m_chkSendNewLine = new QCheckBox("发送新行", groupSend);
    m_chkSendNewLine->setObjectName("chkSendNewLine");
    m_chkAutoSend = new QCheckBox("自动发送", groupSend);
    m_chkAutoSend->setObjectName("chkAutoSend");

    QGridLayout *gridSend = new QGridLayout(groupSend);
    gridSend->setContentsMargins(5, 5, 5, 5);
    gridSend->setSpacing(5);
    gridSend->addWidget(new QLabel("发送选项", groupSend), 0, 0);
    gridSend->addWidget(m_cbxSendOption, 0, 1, 1, 2);
    gridSend->addWidget(new QLabel("自动发送周期", groupSend), 1, 0);
    gridSend->addWidget(m_edtAutoInterval, 1, 1);
    gridSend->addWidget(new QLabel("ms", groupSend), 1, 2);
    gridSend->addWidget(m_rbtnSendAscii, 2, 0);
    gridSend->addWidget(m_rbtnSendHex, 2, 1);
    gridSend->addWidget(m_chkSendNewLine, 3, 0);
    gridSend->addWidget(m_chkAutoSend, 3, 1);

    QVBoxLayout *layout = new QVBoxLayout(column);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(5);
    layout->addWidget(groupPort);
    layout->addWidget(groupRecv, 1);
    layout->addWidget(groupSend);

    connect(m_btnOpen, SIGNAL(clicked()), this, SLOT(SltOpenSerialport()));
    connect(btnClearRecv, SIGNAL(clicked()), this, SLOT(clearRecv()));
    connect(btnSaveFile, SIGNAL(clicked()), this, SLOT(SltSaveDataToFile()));
    m_sendFormatGroup = groupSendFormat;
    return column;
}

void SerialportWidget::InitWidget()
{
    setObjectName("SerialportWidget");
    m_widgetConfig = InitConfigColumn();

    m_btnFold = new QToolButton(this);
    m_btnFold->setObjectName("btnFold");
    m_btnFold->setFixedSize(6, 170);
    m_btnFold->setCursor(Qt::PointingHandCursor);
    m_btnFold->setToolTip("隐藏配置界面");
    IconHelper::Instance()->setIcon(m_btnFold, QChar(0xE6A7), 8);

    m_terminal = new QtTerminalWidget(this);
    m_terminal->setPlaceholderText("数据接收区显示");
    m_displayQueue = new SerialDisplayQueue(m_terminal, this);
    m_sendBox = new QtSendBoxWidget(this, 7);
    m_sendBox->m_chkAutoSend = m_chkAutoSend;

    QVBoxLayout *right = new QVBoxLayout();
    right->setContentsMargins(0, 0, 0, 0);
    right->setSpacing(2);
    right->addWidget(m_terminal, 1);
    right->addWidget(m_sendBox);

    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_widgetConfig);
    layout->addWidget(m_btnFold, 0, Qt::AlignVCenter);
    layout->addLayout(right, 1);

    connect(m_btnFold, SIGNAL(clicked()), this, SLOT(SltBtnFoldClicked()));
    connect(m_recvTimer, SIGNAL(timeout()), this, SLOT(SltRecvFromSerialport()));
    connect(m_serialport, SIGNAL(readyRead()), this, SLOT(SltRecvFromSerialport()));
    connect(m_sendBox, SIGNAL(signalSendData(QByteArray)), this, SLOT(SltWriteDataToSerialport(QByteArray)));
    connect(m_sendFormatGroup, SIGNAL(buttonClicked(int)), m_sendBox, SLOT(setHexSend(int)));
    connect(m_chkSendNewLine, SIGNAL(clicked(bool)), m_sendBox, SLOT(setNewline(bool)));
    connect(m_chkAutoSend, SIGNAL(toggled(bool)), m_sendBox, SLOT(setAutoSend(bool)));
    connect(m_cbxSendOption, SIGNAL(currentIndexChanged(int)), this, SLOT(SltChangeSendPage(int)));
    connect(m_edtAutoInterval, SIGNAL(editingFinished()), this, SLOT(SltChangeAutoInterval()));
}

void SerialportWidget::InitSerialPortConfig()
{
    m_cbxBaud->addItems({"2400", "4800", "9600", "19200", "38400", "57600", "115200",
                         "128000", "230400", "256000", "460800"});
    m_cbxBaud->setCurrentIndex(6);
    m_cbxDataBits->addItems({"5", "6", "7", "8"});
    m_cbxDataBits->setCurrentIndex(3);
    m_cbxStopBits->addItems({"1", "2"});
    m_cbxStopBits->setCurrentIndex(0);
    m_cbxParity->addItems({"无", "奇", "偶"});
    m_cbxParity->setCurrentIndex(0);
}

void SerialportWidget::SltSerialportChanged(const QStringList &serialports)
{
    m_cbxPort->clear();
    for (const QString &name : serialports)
        m_cbxPort->addItem(name);
    if (!m_serialport->isOpen())
        return;
    // The open port reports its full path while the list holds short names, so this
    // test fails for any open port: every change in the number of ports closes it.
    // Users are told to reopen; the name is deliberately not shortened.
    const QString name = m_serialport->portName();
    if (serialports.contains(name)) {
        m_cbxPort->setCurrentText(name);
        return;
    }
    CloseSerialport();
    emit signalNotify("当前串口已拔出，请重新打开!", 255);
}

void SerialportWidget::clearRecv()
{
    // what is not shown yet goes too; m_recvBuffer stays (see CloseSerialport)
    m_displayQueue->clear();
    m_terminal->clearTerminal();
}

void SerialportWidget::SltOpenSerialport()
{
    if (m_serialport->isOpen()) {
        CloseSerialport();
        emit signalNotify(QString("串口[%1]已关闭!!").arg(m_serialport->portName()), 0);
        return;
    }
    const QString path = "/dev/" + m_cbxPort->currentText();
    m_serialport->setPortName(path);
    if (!m_serialport->open(QIODevice::ReadWrite)) {
        emit signalNotify(QString("串口[%1]打开失败!!!").arg(path), 255);
        return;
    }
    // the baud text goes over unchecked: the port refuses what it cannot do and
    // keeps its previous rate, and the open still counts as a success
    m_serialport->setBaudRate(m_cbxBaud->currentText().toInt());
    m_serialport->setDataBits(m_cbxDataBits->currentText().toInt());
    m_serialport->setStopBits(m_cbxStopBits->currentIndex());
    m_serialport->setParity(m_cbxParity->currentIndex());
    m_serialport->setTimeout(20);

    m_recvTimer->start();
    m_btnOpen->setText("关闭串口");
    m_sendBox->setDeviceStatus(true);
    m_statusLabel->setStatus(true);
    emit signalNotify(QString("串口[%1]打开成功!").arg(m_serialport->portName()), 0);
}

void SerialportWidget::CloseSerialport()
{
    // m_recvBuffer stays: what it holds is shown with the first data of a later read
    m_recvTimer->stop();
    m_serialport->close();
    m_statusLabel->setStatus(false);
    m_btnOpen->setText("打开串口");
    m_sendBox->setDeviceStatus(false);
}

void SerialportWidget::SltWriteDataToSerialport(QByteArray byCmd)
{
    if (!m_serialport->isOpen())
        return; // the send box has warned already
    m_serialport->write(byCmd);
    m_sendCount += quint32(byCmd.size());
    emit signalRefresCounts(0);
}

void SerialportWidget::SltRecvFromSerialport()
{
    if (m_serialport->bytesAvailable() == 0) {
        // the 50 ms tick: show what waited for the tail of a character
        if (!m_recvBuffer.isEmpty())
            parseSerialportData(m_recvBuffer);
        return;
    }
    const QByteArray data = m_serialport->readAll();
    if (SerialRecvRule::holdChunk(data, m_rbtnRecvAscii->isChecked(), m_recvBuffer)) {
        m_recvBuffer.append(data);
        if (m_recvTimer->isActive())
            m_recvTimer->stop();
        m_recvTimer->start();
        return;
    }
    m_recvBuffer.append(data);
    parseSerialportData(m_recvBuffer);
}

void SerialportWidget::parseSerialportData(QByteArray data)
{
    m_recvCount += quint32(data.size());
    emit signalRefresCounts(0);
    // While display is stopped the buffer keeps everything, and every read counts
    // the whole buffer again: the count runs ahead of the real total. On resume the
    // held bytes are shown in one block and counted once more. Users rely on this.
    if (m_chkStopShow->isChecked())
        return;
    const bool hexShown = m_rbtnRecvHex->isChecked();
    const QString text = SerialRecvRule::displayText(data, hexShown);
    // Each goes in as a paragraph of its own, as plain text even where it looks like
    // HTML (a board printing "<b>" keeps its bytes). A large block, such as all that
    // was held while display was stopped, starts to show now and goes on over the
    // next turns of the event loop, so the window keeps responding meanwhile.
    if (m_chkLogMode->isChecked())
        m_displayQueue->appendParagraph(SerialRecvRule::logTag(QTime::currentTime(), m_rbtnRecvAscii->isChecked()));
    m_displayQueue->appendParagraph(text);
    m_recvBuffer.clear();
}

void SerialportWidget::SltDelayChanged()
{
}

void SerialportWidget::SltBtnFoldClicked()
{
    m_widgetConfig->setVisible(!m_widgetConfig->isVisible());
    if (m_widgetConfig->isVisible()) {
        IconHelper::Instance()->setIcon(m_btnFold, QChar(0xE6A7), 8);
        m_btnFold->setToolTip("隐藏配置界面");
    } else {
        IconHelper::Instance()->setIcon(m_btnFold, QChar(0xE6AF), 8);
        m_btnFold->setToolTip("显示配置界面");
    }
}

void SerialportWidget::SltChangeSendPage(int index)
{
    m_sendBox->setCurrentPage(1 << index);
}

void SerialportWidget::SltChangeAutoInterval()
{
    m_sendBox->setAutoInterval(m_edtAutoInterval->text().toInt());
}

void SerialportWidget::SltSaveDataToFile()
{
    // the view's text and what still waits to be shown in it
    const QString text = m_displayQueue->plainText();
    if (text.isEmpty())
        return;
    QtFileDialog dialog(this);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter("*.txt;;*.bin");
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString fileName = dialog.exitfile();
    if (fileName.isEmpty())
        return;
    saveDataToFile(fileName, text);
}

bool SerialportWidget::saveDataToFile(const QString &fileName, const QString &text)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate)) {
        emit signalNotify("文件保存失败!", 255);
        return false;
    }
    file.write(QtRecvSaveFormat::saveBytes(fileName, text));
    file.close();
    emit signalNotify("文件保存完成!", 0);
    return true;
}
