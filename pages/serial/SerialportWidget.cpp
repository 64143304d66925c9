#include "SerialportWidget.h"
#include "LinkTap.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QextSerialPort.h"
#include "QtFoldButton.h"
#include "QtRecvConfigGroup.h"
#include "QtRecvSaveFormat.h"
#include "QtRecvViewFeeder.h"
#include "QtSendBoxWidget.h"
#include "QtSendConfigGroup.h"
#include "QtSerialPortForm.h"
#include "QtTerminalWidget.h"
#include "SerialRecvRule.h"
#include "StatusLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTime>
#include <QTimer>
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
    m_tap = new LinkTap([this](const QByteArray &bytes) { return writeToPort(bytes); }, this);

    InitWidget();
    clearCounts();
    InitSerialPortConfig();
}

SerialportWidget::~SerialportWidget()
{
    // tools hear the end of a link that goes with the program, while the page stands
    m_tap->reportClosed();
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
    return byteCounts(m_sendCount, m_recvCount);
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
    QGridLayout *gridPort = new QGridLayout(groupPort);
    gridPort->setContentsMargins(5, 5, 5, 5);
    gridPort->setSpacing(5);
    m_portForm = new QtSerialPortForm(groupPort, gridPort, QtSerialPortForm::PortRow | QtSerialPortForm::OpenRow, m_tap);
    m_portForm->share(m_cbxPort, m_cbxBaud, m_cbxParity, m_cbxDataBits, m_cbxStopBits, m_statusLabel, m_btnOpen);
    gridPort->setColumnStretch(1, 1);

    QtRecvConfigGroup *groupRecv = new QtRecvConfigGroup(column);
    m_rbtnRecvAscii = groupRecv->m_rbtnRecvAscii;
    m_rbtnRecvHex = groupRecv->m_rbtnRecvHex;
    m_chkStopShow = groupRecv->m_chkStopShow;
    m_chkLogMode = groupRecv->m_chkLogMode;
    m_groupSend = new QtSendConfigGroup(column);
    m_edtAutoInterval = m_groupSend->m_edtAutoInterval;

    QVBoxLayout *layout = new QVBoxLayout(column);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(5);
    layout->addWidget(groupPort);
    layout->addWidget(groupRecv, 1);
    layout->addWidget(m_groupSend);

    connect(m_btnOpen, SIGNAL(clicked()), this, SLOT(SltOpenSerialport()));
    connect(groupRecv->m_btnClearRecv, SIGNAL(clicked()), this, SLOT(clearRecv()));
    connect(groupRecv->m_btnSaveFile, SIGNAL(clicked()), this, SLOT(SltSaveDataToFile()));
    return column;
}

void SerialportWidget::InitWidget()
{
    setObjectName("SerialportWidget");
    m_widgetConfig = InitConfigColumn();
    m_terminal = new QtTerminalWidget(this);
    m_terminal->setPlaceholderText("数据接收区显示");
    // A read's text goes to the view with the others of the same display frame, in one
    // edit: a text view lays out and repaints per edit, so a board writing in small
    // pieces cost as much per read as a megabyte did. The view keeps a tail (the save
    // takes everything), and running hex is broken into view lines of bounded length,
    // so that no change ever lays out a megabyte-long paragraph.
    m_recvFeeder = new QtRecvViewFeeder(m_terminal, this);
    m_recvFeeder->setDelay(RecvViewDelayMs);
    m_recvFeeder->setMaxViewChars(RecvViewMaxChars, RecvViewSlackChars);
    m_recvFeeder->setSliceChars(RecvViewSliceChars);
    m_recvFeeder->setViewLineChars(RecvViewLineChars);
    m_sendBox = new QtSendBoxWidget(this, 7);
    m_groupSend->bindSendBox(m_sendBox);

    m_btnFold = QtFoldButton::layOutPage(this, m_widgetConfig, m_terminal, m_sendBox, 0, 0, 2);

    connect(m_recvTimer, SIGNAL(timeout()), this, SLOT(SltRecvFromSerialport()));
    connect(m_serialport, SIGNAL(readyRead()), this, SLOT(SltRecvFromSerialport()));
    connect(m_serialport, SIGNAL(disconnected()), this, SLOT(SltSerialportLost()));
    connect(m_sendBox, SIGNAL(signalSendData(QByteArray)), this, SLOT(SltWriteDataToSerialport(QByteArray)));
}

void SerialportWidget::InitSerialPortConfig()
{
    // the form filled the boxes with their start values; the port box waits for the
    // port watcher
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
    emit signalNotify(SerialSettings::pulledText(), 255);
}

void SerialportWidget::SltSerialportLost()
{
    if (!m_serialport->isOpen())
        return;
    CloseSerialport();
    emit signalNotify(SerialSettings::pulledText(), 255);
}

void SerialportWidget::clearRecv()
{
    // what is not shown yet goes too; m_recvBuffer stays (see CloseSerialport)
    m_recvFeeder->clear();
    m_terminal->clearTerminal();
}

bool SerialportWidget::reopenPort(const QString &path)
{
    if (!m_serialport->isOpen()) {
        m_cbxPort->setCurrentText(path.mid(5));
        SltOpenSerialport();
    }
    return m_serialport->isOpen();
}

void SerialportWidget::SltOpenSerialport()
{
    if (m_serialport->isOpen()) {
        CloseSerialport();
        emit signalNotify(SerialSettings::closedText(m_serialport->portName()), 0);
        return;
    }
    const QString path = m_portForm->portPath();
    if (!m_portForm->settings(path).open(m_serialport, 20)) {
        emit signalNotify(SerialSettings::failedText(path), 255);
        return;
    }
    m_recvTimer->start();
    m_sendBox->setDeviceStatus(true);
    m_portForm->showOpened(m_serialport->portName());
    emit signalNotify(SerialSettings::openedText(m_serialport->portName()), 0);
}

void SerialportWidget::CloseSerialport()
{
    // m_recvBuffer stays: what it holds is shown with the first data of a later read
    m_recvTimer->stop();
    m_serialport->close();
    m_portForm->showClosed();
    m_sendBox->setDeviceStatus(false);
}

void SerialportWidget::SltWriteDataToSerialport(QByteArray byCmd)
{
    writeToPort(byCmd);
}

qint64 SerialportWidget::writeToPort(const QByteArray &bytes)
{
    if (!m_serialport->isOpen())
        return -1; // the send box has warned already
    const qint64 written = m_serialport->write(bytes);
    // counted whatever the port took, as the user sent it
    m_sendCount += quint32(bytes.size());
    m_tap->reportSent(bytes);
    emit signalRefresCounts(0);
    return written;
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
    m_tap->reportReceived(data);
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
        m_recvFeeder->appendParagraph(SerialRecvRule::logTag(QTime::currentTime(), m_rbtnRecvAscii->isChecked()));
    m_recvFeeder->appendParagraph(text);
    m_recvBuffer.clear();
}

void SerialportWidget::SltDelayChanged()
{
}

// the page's own names for what the shared parts do
void SerialportWidget::SltBtnFoldClicked() { m_btnFold->SltBtnFoldClicked(); }
void SerialportWidget::SltChangeSendPage(int index) { m_groupSend->SltChangeSendPage(index); }
void SerialportWidget::SltChangeAutoInterval() { m_groupSend->SltChangeAutoInterval(); }
void SerialportWidget::SltSaveDataToFile() { saveDataToFile(QString()); }
void SerialportWidget::saveDataToFile(const QString &fileName) { emitNotice(QtRecvSaveFormat::save(this, m_recvFeeder->plainText(), fileName)); }
