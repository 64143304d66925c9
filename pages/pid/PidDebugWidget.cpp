#include "PidDebugWidget.h"

#include "GraphConfigWidget.h"
#include "LinkTap.h"
#include "NumberTool.h"
#include "PidExport.h"
#include "PidFrame.h"
#include "PidFrameDecoder.h"
#include "QtMessageBox.h"
#include "QtSerialPortForm.h"
#include "QtSerialPort.h"
#include "StatusLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDebug>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegExpValidator>
#include <QToolTip>
#include <QTimer>
#include <QVBoxLayout>

#include <qcustomplot.h>

#include <cstring>
#include <limits>

PidDebugWidget::PidDebugWidget(QWidget *parent)
    : QtWidgetBase(parent)
    , m_startTime(-1)
    , m_serialPort(nullptr)
{
    m_frameHeader = PidFrame::header();
    std::memset(m_channels, 0, sizeof m_channels);
    m_tap = new LinkTap([this](const QByteArray &bytes) { return writeToPort(bytes); }, this);

    InitWidget();
    InitPlot();
    InitSerialPortConfig();
}

PidDebugWidget::~PidDebugWidget()
{
    m_tap->reportClosed();
    // no SendStop here: the board keeps running when the program goes
    if (m_serialPort && m_serialPort->isOpen())
        m_serialPort->close();
    delete m_serialPort;
    m_serialPort = nullptr;
}

QStringList PidDebugWidget::getCounts()
{
    return QStringList();
}

void PidDebugWidget::InitWidget()
{
    auto *mainLayout = new QHBoxLayout(this);
    mainLayout->setContentsMargins(5, 5, 5, 5);
    mainLayout->setSpacing(5);

    // left column: port group, PID group, run buttons
    auto *leftLayout = new QVBoxLayout;
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(5);

    auto *groupPort = new QGroupBox("串口配置", this);
    groupPort->setAlignment(Qt::AlignVCenter);
    auto *portLayout = new QGridLayout(groupPort);
    portLayout->setContentsMargins(10, 10, 10, 10);
    portLayout->setHorizontalSpacing(2);
    portLayout->setVerticalSpacing(10);
    m_portForm = new QtSerialPortForm(groupPort, portLayout, QtSerialPortForm::PortRow | QtSerialPortForm::OpenRow, m_tap);
    m_portForm->share(m_cbxPortName, m_cbxBaudrate, m_cbxParity, m_cbxDataBits, m_cbxStopBits, m_statusLabel, m_btnOpen);
    connect(m_btnOpen, SIGNAL(clicked(bool)), this, SLOT(SltOpenSerialport()));

    auto *groupPid = new QGroupBox("PID值配置", this);
    auto *pidLayout = new QGridLayout(groupPid);
    pidLayout->setContentsMargins(10, 10, 10, 10);
    pidLayout->setHorizontalSpacing(5);
    pidLayout->setVerticalSpacing(10);

    m_edtP = new QLineEdit("0.567", groupPid);
    m_edtI = new QLineEdit("0.567", groupPid);
    m_edtD = new QLineEdit("0.567", groupPid);
    m_edtTarget = new QLineEdit("0.567", groupPid);
    m_edtPeriod = new QLineEdit("0.567", groupPid);
    for (QLineEdit *edit : {m_edtP, m_edtI, m_edtD, m_edtTarget, m_edtPeriod}) {
        edit->setFixedWidth(100);
        edit->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    }
    SetLineEditInputFloat(m_edtP);
    SetLineEditInputFloat(m_edtI);
    SetLineEditInputFloat(m_edtD);
    SetLineEditInputInt(m_edtTarget);
    SetLineEditInputInt(m_edtPeriod);
    // shown defaults only: m_channels stays zero until something is sent or received
    m_edtTarget->setText("200");
    m_edtPeriod->setText("200");

    m_cbxChannel = new QComboBox(groupPid);
    m_cbxChannel->addItems({"CH1", "CH2", "CH3", "CH4", "CH5"});
    connect(m_cbxChannel, SIGNAL(currentIndexChanged(int)), this, SLOT(SltComboPidChanged(int)));

    auto rightLabel = [groupPid](const QString &text) {
        auto *label = new QLabel(text, groupPid);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        return label;
    };
    pidLayout->addWidget(new QLabel("选择通道", groupPid), 0, 0);
    pidLayout->addWidget(m_cbxChannel, 0, 1);
    pidLayout->addWidget(rightLabel("P"), 1, 0);
    pidLayout->addWidget(m_edtP, 1, 1);
    pidLayout->addWidget(rightLabel("I"), 2, 0);
    pidLayout->addWidget(m_edtI, 2, 1);
    pidLayout->addWidget(rightLabel("D"), 3, 0);
    pidLayout->addWidget(m_edtD, 3, 1);
    m_btnSendPid = new QPushButton("发送PID", groupPid);
    pidLayout->addWidget(m_btnSendPid, 4, 1);
    pidLayout->addWidget(new QLabel("    目标值", groupPid), 5, 0);
    pidLayout->addWidget(m_edtTarget, 5, 1);
    pidLayout->addWidget(new QLabel("    周期", groupPid), 6, 0);
    pidLayout->addWidget(m_edtPeriod, 6, 1);
    m_btnSendValue = new QPushButton("发送目标值", groupPid);
    m_btnSendInterval = new QPushButton("发送周期", groupPid);
    pidLayout->addWidget(m_btnSendValue, 7, 0);
    pidLayout->addWidget(m_btnSendInterval, 7, 1);
    m_cbxScale = new QComboBox(groupPid);
    m_cbxScale->addItems({"X轴缩放", "Y轴缩放"});
    pidLayout->addWidget(new QLabel("曲线缩放", groupPid), 8, 0);
    pidLayout->addWidget(m_cbxScale, 8, 1);
    pidLayout->setRowStretch(9, 1);
    connect(m_btnSendPid, SIGNAL(clicked(bool)), this, SLOT(SltBtnSendPidClicked()));
    connect(m_btnSendValue, SIGNAL(clicked(bool)), this, SLOT(SltBtnSendValueClicked()));
    connect(m_btnSendInterval, SIGNAL(clicked(bool)), this, SLOT(SltBtnSendIntervalClicked()));

    auto *runLayout = new QHBoxLayout;
    runLayout->setContentsMargins(0, 0, 0, 15);
    runLayout->setSpacing(10);
    m_btnStart = new QPushButton("启动", this);
    m_btnReset = new QPushButton("复位", this);
    runLayout->addWidget(m_btnStart);
    runLayout->addWidget(m_btnReset);
    connect(m_btnStart, SIGNAL(clicked(bool)), this, SLOT(SltBtnStartClicked()));
    connect(m_btnReset, SIGNAL(clicked(bool)), this, SLOT(SltBtnResetClicked()));

    leftLayout->addWidget(groupPort);
    leftLayout->addWidget(groupPid);
    leftLayout->addStretch();
    leftLayout->addLayout(runLayout);

    // right column: plot, then display controls and the legend
    auto *rightLayout = new QVBoxLayout;
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->setSpacing(5);
    m_customPlot = new QCustomPlot(this);
    // A board reporting five channels at 1 kHz brings a sample every 200 us; drawing
    // for each read took a core. Thirty frames a second keep the curves moving smoothly
    // at half the drawing work of the screen's sixty.
    m_replotTimer = new QTimer(this);
    m_replotTimer->setSingleShot(true);
    m_replotTimer->setInterval(33);
    connect(m_replotTimer, SIGNAL(timeout()), this, SLOT(SltReplotFrame()));
    m_graphConfig = new GraphConfigWidget(this);
    m_chkStopShow = new QCheckBox("停止显示", this);
    m_btnClear = new QPushButton("清空显示", this);
    m_btnExport = new QPushButton("导出数据", this);
    auto *plotBar = new QHBoxLayout;
    plotBar->setContentsMargins(0, 0, 0, 0);
    plotBar->setSpacing(10);
    plotBar->addWidget(m_chkStopShow);
    plotBar->addWidget(m_btnClear);
    plotBar->addWidget(m_btnExport);
    plotBar->addWidget(m_graphConfig, 1);
    rightLayout->addWidget(m_customPlot, 1);
    rightLayout->addLayout(plotBar);
    connect(m_btnClear, SIGNAL(clicked(bool)), this, SLOT(SltBtnClearClicked()));
    connect(m_btnExport, SIGNAL(clicked(bool)), this, SLOT(SltBtnExportClicked()));
    connect(m_graphConfig, SIGNAL(signalGraphClicked(int,bool)), this, SLOT(SltGraphClicked(int,bool)));
    connect(m_cbxScale, SIGNAL(currentIndexChanged(int)), this, SLOT(SltPoltScale(int)));

    mainLayout->addLayout(leftLayout, 0);
    mainLayout->addLayout(rightLayout, 1);
}

void PidDebugWidget::InitPlot()
{
    m_customPlot->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    m_customPlot->axisRect()->setRangeZoom(Qt::Horizontal);
    m_customPlot->xAxis->grid()->setSubGridVisible(true);
    m_customPlot->yAxis->grid()->setSubGridVisible(true);

    // keys are seconds; shown as minutes, seconds and milliseconds
    QSharedPointer<QCPAxisTickerDateTime> timeTicker(new QCPAxisTickerDateTime);
    timeTicker->setDateTimeFormat("mm:ss:zzz");
    m_customPlot->xAxis->setSubTicks(false);
    m_customPlot->xAxis->setTicker(timeTicker);
    m_customPlot->xAxis->setLabel("时间");
    m_customPlot->yAxis->setLabel("幅度值");

    m_customPlot->setBackground(QBrush(QColor("#1e1e1e")));
    // the solid background covers every pixel: nothing behind the plot needs painting
    // again on each frame
    m_customPlot->setAttribute(Qt::WA_OpaquePaintEvent);
    m_customPlot->axisRect()->setBackground(QBrush(QColor("#302f2f")));
    const QPen gridPen(QBrush(QColor("#454443")), 1, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
    const QColor lineColor("#454443");
    const QColor textColor("#AEBFC5");
    for (QCPAxis *axis : {m_customPlot->xAxis, m_customPlot->yAxis}) {
        axis->grid()->setPen(gridPen);
        axis->grid()->setSubGridPen(gridPen);
        axis->setTickLabelColor(textColor);
        axis->setLabelColor(textColor);
        axis->setTickPen(QPen(lineColor));
        axis->setSubTickPen(QPen(lineColor));
        axis->setBasePen(QPen(lineColor));
    }
    m_customPlot->xAxis->grid()->setZeroLinePen(QPen(lineColor));

    m_customPlot->yAxis->setRange(-700.0, 700.0);
    m_customPlot->yAxis->ticker()->setTickCount(15);
    m_customPlot->xAxis->ticker()->setTickCount(5);
    m_customPlot->yAxis->ticker()->setTickStepStrategy(QCPAxisTicker::tssReadability);
    m_customPlot->xAxis->ticker()->setTickStepStrategy(QCPAxisTicker::tssReadability);

    m_customPlot->setSelectionRectMode(QCP::srmNone);
    // Nothing draws on the overlay layer (no selection rectangle), yet as a buffered
    // layer it cost a clear and a full-size alpha blend on every frame.
    m_customPlot->layer("overlay")->setMode(QCPLayer::lmLogical);
    connect(m_customPlot->yAxis, SIGNAL(rangeChanged(QCPRange)), m_customPlot->yAxis2, SLOT(setRange(QCPRange)));
    // The library's legend stays hidden (GraphConfigWidget is the legend), yet every
    // graph in it was measured, its name shaped as text, at each frame's layout.
    m_customPlot->setAutoAddPlottableToLegend(false);

    for (int i = 0; i < 10; ++i) {
        m_customPlot->addGraph();
        m_customPlot->graph(i)->setPen(QPen(m_graphConfig->getGraphColor(i)));
        m_customPlot->graph(i)->setVisible(m_graphConfig->isVisible(i));
    }
}

void PidDebugWidget::InitSerialPortConfig()
{
    m_serialPort = new QtSerialPort;
    connect(m_serialPort, SIGNAL(bytesRead(QByteArray)), this, SLOT(SltRecvFromSerialport(QByteArray)));
    connect(m_serialPort, SIGNAL(disconnected()), this, SLOT(SltSerialportLost()));
}

void PidDebugWidget::SetLineEditInputFloat(QLineEdit *edit)
{
    edit->setValidator(new QRegExpValidator(QRegExp("\\d+\\.\\d+", Qt::CaseSensitive), edit));
}

void PidDebugWidget::SetLineEditInputInt(QLineEdit *edit)
{
    edit->setValidator(new QRegExpValidator(QRegExp("-?\\d+", Qt::CaseSensitive), edit));
}

int PidDebugWidget::getCheckSum(QByteArray frame)
{
    return PidFrame::getCheckSum(frame);
}

void PidDebugWidget::SendCmdToSeriaport(unsigned char cmd, unsigned char channel, const QByteArray &payload)
{
    if (!m_serialPort->isOpen())
        return;
    const QByteArray frame = PidFrame::build(cmd, channel, payload);
    qDebug() << "PID send cmd" << cmd << "channel" << channel << "size" << frame.size()
             << frame.toHex(' ') << "payload" << payload.size();
    writeToPort(frame);
}

qint64 PidDebugWidget::writeToPort(const QByteArray &bytes)
{
    if (!m_serialPort->isOpen())
        return -1;
    // the wrapper only warns on a failed write; what was handed over counts as sent
    m_serialPort->writeBytes(bytes);
    m_tap->reportSent(bytes);
    return bytes.size();
}

void PidDebugWidget::SltRecvFromSerialport(const QByteArray &data)
{
    m_tap->reportReceived(data);
    m_recvBuffer.append(data);
    ParseDataFromBuff();
}

void PidDebugWidget::ParseDataFromBuff()
{
    // The decoder cuts and judges the frames; the page only applies them. Consumed
    // bytes are dropped once at the end, so a long reception costs one pass.
    PidFrameDecoder decoder(m_recvBuffer, m_frameHeader, m_chkStopShow->isChecked());
    PidReceivedFrame frame;
    while (decoder.next(frame))
        ApplyFrame(frame);
    m_recvBuffer.remove(0, decoder.consumed());
}

void PidDebugWidget::ApplyFrame(const PidReceivedFrame &frame)
{
    const int c = frame.channel;
    const bool selected = c == m_cbxChannel->currentIndex();
    switch (frame.command) {
    case PidFrame::RecvTargetValue:
        m_channels[c].target = frame.value;
        if (selected)
            m_edtTarget->setText(QString::number(frame.value));
        break;
    case PidFrame::RecvActualValue:
        AddActualSample(c, frame.value);
        break;
    case PidFrame::RecvPidValues:
        m_channels[c].p = frame.p;
        m_channels[c].i = frame.i;
        m_channels[c].d = frame.d;
        if (selected) {
            m_edtP->setText(QString::number(double(frame.p), 'g', 6));
            m_edtI->setText(QString::number(double(frame.i), 'g', 6));
            m_edtD->setText(QString::number(double(frame.d), 'g', 6));
        }
        break;
    case PidFrame::RecvStarted:
        if (m_btnStart->text() == "启动") {
            m_btnStart->setText("停止");
            if (m_startTime == -1)
                m_startTime = QDateTime::currentMSecsSinceEpoch();
        }
        break;
    case PidFrame::RecvStopped:
        m_btnStart->setText("启动");
        break;
    case PidFrame::RecvPeriod:
        m_channels[c].period = frame.value;
        if (selected)
            m_edtPeriod->setText(QString::number(frame.value));
        break;
    default:
        break;
    }
}

void PidDebugWidget::AddActualSample(int c, int actual)
{
    const double t = (QDateTime::currentMSecsSinceEpoch() - m_startTime) / 1000.0;
    m_pendingSamples.append({c, t, double(m_channels[c].target), double(actual)});
    if (!m_replotTimer->isActive())
        m_replotTimer->start();
}

void PidDebugWidget::ApplySample(const PendingSample &sample)
{
    const int c = sample.channel;
    const double t = sample.key;
    QCPGraph *target = m_customPlot->graph(c);
    QCPGraph *value = m_customPlot->graph(c + 5);
    target->data()->removeBefore(t - 10.0);
    target->addData(t, sample.target);
    value->data()->removeBefore(t - 10.0);
    value->addData(t, sample.actual);
    // the same axis range as value->rescaleValueAxis(false, false), without walking
    // the whole window for every sample
    m_rangeTrackers[c].follow(value, t - 10.0, t, sample.actual);
    if (!m_rangeTrackers[c].rescaleValueAxis(value->valueAxis()))
        value->rescaleValueAxis(false, false);
    m_customPlot->xAxis->setRange(t + 0.25, 10.0, Qt::AlignRight);
}

bool PidDebugWidget::CanApplyInBlocks(const QVector<PendingSample> &samples) const
{
    // Blocks give the very points that sample after sample gives when each channel's
    // samples only append to both its curves and its range tracker already follows
    // the actual curve. Anything else (the first samples after a clear, a clock that
    // went back) takes the samples one by one.
    double last[5];
    int seen[5] = {}; // 0 not yet, 1 the curves' end known, 2 a sample of the block taken
    for (const PendingSample &s : samples) {
        const int c = s.channel;
        if (!seen[c]) {
            const QCPGraph *target = m_customPlot->graph(c);
            const QCPGraph *value = m_customPlot->graph(c + 5);
            if (!m_rangeTrackers[c].followsInOrder(value, s.key))
                return false;
            last[c] = -std::numeric_limits<double>::infinity();
            for (const QCPGraph *g : {target, value}) {
                if (!g->data()->isEmpty())
                    last[c] = qMax(last[c], (g->data()->constEnd() - 1)->key);
            }
            seen[c] = 1;
        }
        // a key equal to the curve's last would go in front of it in a block
        if (!(s.key > last[c] || (s.key == last[c] && seen[c] == 2)))
            return false;
        last[c] = s.key;
        seen[c] = 2;
    }
    return true;
}

void PidDebugWidget::ApplyPendingSamples()
{
    if (m_pendingSamples.isEmpty())
        return;
    QVector<PendingSample> samples;
    samples.swap(m_pendingSamples);
    if (!CanApplyInBlocks(samples)) {
        for (const PendingSample &s : qAsConst(samples))
            ApplySample(s);
        return;
    }
    // A board at five channels of 1 kHz brings a sample every 200 us; pruning, adding,
    // and moving both axes for each cost more than drawing the frame. Per frame, each
    // curve takes its samples in one append and one prune, and the value axis goes
    // through the ranges it would have had sample by sample (a channel of one value
    // keeps the span the axis had) without telling anyone until the last.
    QVector<QCPGraphData> targets[5], values[5];
    QCPRange y = m_customPlot->yAxis->range();
    for (const PendingSample &s : qAsConst(samples)) {
        const int c = s.channel;
        targets[c].append(QCPGraphData(s.key, s.target));
        values[c].append(QCPGraphData(s.key, s.actual));
        m_rangeTrackers[c].follow(m_customPlot->graph(c + 5), s.key - 10.0, s.key, s.actual);
        m_rangeTrackers[c].rescaledRange(y);
    }
    for (int c = 0; c < 5; ++c) {
        if (values[c].isEmpty())
            continue;
        const double cutoff = values[c].constLast().key - 10.0;
        for (QCPGraph *g : {m_customPlot->graph(c), m_customPlot->graph(c + 5)}) {
            g->data()->add(g == m_customPlot->graph(c) ? targets[c] : values[c], true);
            g->data()->removeBefore(cutoff);
        }
    }
    m_customPlot->yAxis->setRange(y);
    m_customPlot->xAxis->setRange(samples.constLast().key + 0.25, 10.0, Qt::AlignRight);
}

void PidDebugWidget::SltReplotFrame()
{
    ApplyPendingSamples();
    // A curve with more samples than two per pixel column is drawn by the library as
    // one bar from the lowest to the highest sample of each column; smoothing the
    // edges of those bars changes nothing one can see, yet cost 40% of a frame at
    // 1 kHz. A sparser curve shows its shape and keeps its smooth edges.
    const int dense = 2 * m_customPlot->axisRect()->width() + 2;
    for (int g = 0; g < m_customPlot->graphCount(); ++g) {
        QCPGraph *graph = m_customPlot->graph(g);
        graph->setAntialiased(graph->dataCount() < dense);
    }
    m_customPlot->replot(QCustomPlot::rpQueuedReplot);
}

bool PidDebugWidget::reopenPort(const QString &path)
{
    if (!m_serialPort->isOpen()) {
        m_cbxPortName->setCurrentText(path.mid(5));
        SltOpenSerialport();
    }
    return m_serialPort->isOpen();
}

void PidDebugWidget::SltOpenSerialport()
{
    if (m_serialPort->isOpen()) {
        CloseSerialport();
        emit signalNotify(SerialSettings::closedText(m_serialPort->portName()), 0);
        return;
    }

    const QString name = m_portForm->portPath();
    SerialSettings settings = m_portForm->settings(name);
    // the parity texts are not numbers: the port always opens without parity
    settings.parity = m_cbxParity->currentText().toInt();
    if (settings.open(m_serialPort)) {
        m_portForm->showOpened(name);
        m_startTime = -1;
        emit signalNotify(SerialSettings::openedText(name), 0);
    } else {
        emit signalNotify(SerialSettings::failedText(name), 255);
    }
}

void PidDebugWidget::CloseSerialport()
{
    if (m_btnStart->text() == "停止") {
        m_btnStart->setText("启动");
        SendCmdToSeriaport(PidFrame::SendStop, PidFrame::channelByte(m_cbxChannel->currentIndex()), QByteArray());
    }
    m_serialPort->close();
    m_portForm->showClosed();
}

void PidDebugWidget::SltSerialportLost()
{
    CloseSerialport();
    emit signalNotify(SerialSettings::pulledText(), 255);
}

void PidDebugWidget::SltSerialportChanged(const QStringList &ports)
{
    m_cbxPortName->clear();
    m_cbxPortName->addItems(ports);
    if (!m_serialPort || !m_serialPort->isOpen())
        return;
    if (ports.contains(m_serialPort->portName(), Qt::CaseSensitive)) {
        m_cbxPortName->setCurrentText(m_serialPort->portName());
        return;
    }
    CloseSerialport();
    emit signalNotify(SerialSettings::pulledText(), 255);
}

void PidDebugWidget::SltComboPidChanged(int index)
{
    if (index < 0 || index >= 5)
        return;
    const PidChannelState &ch = m_channels[index];
    m_edtP->setText(QString("%1").arg(double(ch.p), 0, 'f', 3, ' '));
    m_edtI->setText(QString("%1").arg(double(ch.i), 0, 'f', 3, ' '));
    m_edtD->setText(QString("%1").arg(double(ch.d), 0, 'f', 3, ' '));
    m_edtTarget->setText(QString::number(ch.target));
}

void PidDebugWidget::SltGraphClicked(int index, bool checked)
{
    QCPGraph *graph = m_customPlot->graph(index);
    if (!graph)
        return;
    graph->setVisible(checked);
    m_customPlot->replot(QCustomPlot::rpRefreshHint);
}

void PidDebugWidget::SltBtnSendPidClicked()
{
    const int c = m_cbxChannel->currentIndex();
    PidChannelState &ch = m_channels[c];
    ch.p = m_edtP->text().toFloat();
    ch.i = m_edtI->text().toFloat();
    ch.d = m_edtD->text().toFloat();
    SendCmdToSeriaport(PidFrame::SendPidValues, PidFrame::channelByte(c), PidFrame::pidPayload(ch.p, ch.i, ch.d));
}

void PidDebugWidget::SltBtnSendValueClicked()
{
    const int c = m_cbxChannel->currentIndex();
    const int value = m_edtTarget->text().toInt(nullptr, 10);
    // the target curve draws from the stored value from now on
    m_channels[c].target = value;
    SendCmdToSeriaport(PidFrame::SendTargetValue, PidFrame::channelByte(c),
                       PidFrame::valuePayload(value));
}

void PidDebugWidget::SltBtnSendIntervalClicked()
{
    // the stored period changes only when the board reports it
    const int c = m_cbxChannel->currentIndex();
    const int value = m_edtPeriod->text().toInt(nullptr, 10);
    SendCmdToSeriaport(PidFrame::SendPeriod, PidFrame::channelByte(c),
                       PidFrame::valuePayload(value));
}

void PidDebugWidget::SltBtnClearClicked()
{
    // Removing by rising index from the shrinking list takes every other graph: the
    // odd ones survive with their points at positions 0 to 4 and ten fresh graphs
    // follow, so the count goes 10, 15, 17, 18, 19 over successive clears. This is
    // how the clear button has always behaved and exports depend on the positions;
    // the surviving points go with the next samples of their position.
    ApplyPendingSamples();
    for (int i = 0; i < 10; ++i)
        m_customPlot->removeGraph(i);
    for (int i = 0; i < 10; ++i) {
        m_customPlot->addGraph();
        m_customPlot->graph(i)->setPen(QPen(m_graphConfig->getGraphColor(i)));
        m_customPlot->graph(i)->setVisible(m_graphConfig->isVisible(i));
    }
    m_customPlot->replot(QCustomPlot::rpRefreshHint);
}

void PidDebugWidget::SltBtnExportClicked()
{
    const QString fileName = QFileDialog::getSaveFileName(this, "导出数据", "", "*.csv", nullptr, QFileDialog::Options());
    if (fileName.isEmpty())
        return;
    ExportDataToFile(fileName);
}

// the values of a curve in plot order; a position without a graph has none
static QVector<double> curveValues(QCPGraph *graph)
{
    QVector<double> values;
    if (!graph)
        return values;
    values.reserve(graph->dataCount());
    for (auto it = graph->data()->constBegin(); it != graph->data()->constEnd(); ++it)
        values.append(it->value);
    return values;
}

void PidDebugWidget::ExportDataToFile(const QString &fileName)
{
    ApplyPendingSamples();
    PidExport exporter;
    for (int n = 1; n <= PidExport::Channels; ++n)
        exporter.setCurves(n, curveValues(m_customPlot->graph(n - 1)), curveValues(m_customPlot->graph(n + 4)));
    if (!exporter.write(fileName)) {
        QtMessageBox::warning("文件保存失败!");
        return;
    }
    emit signalNotify("文件已导出：" + fileName, 0);
}

void PidDebugWidget::SltBtnStartClicked()
{
    if (!m_serialPort->isOpen()) {
        QtMessageBox::warning("请确认是否打开串口！");
        return;
    }
    unsigned char cmd;
    if (m_btnStart->text() == "启动") {
        m_btnStart->setText("停止");
        cmd = PidFrame::SendStart;
    } else {
        m_btnStart->setText("启动");
        cmd = PidFrame::SendStop;
    }
    // the text flips now, before the board answers
    SendCmdToSeriaport(cmd, PidFrame::channelByte(m_cbxChannel->currentIndex()), QByteArray());
}

void PidDebugWidget::SltBtnResetClicked()
{
    SltBtnClearClicked();
    SendCmdToSeriaport(PidFrame::SendReset, PidFrame::channelByte(m_cbxChannel->currentIndex()), QByteArray());
}

void PidDebugWidget::SltPoltScale(int index)
{
    m_customPlot->axisRect()->setRangeZoom(index == 0 ? Qt::Horizontal : Qt::Vertical);
}

void PidDebugWidget::SltPlotMoveEvent(QMouseEvent *event)
{
    // hover read-out of the first curve; kept ready for the plot's mouseMove signal
    ApplyPendingSamples();
    QCPGraph *graph = m_customPlot->graph(0);
    if (!graph || graph->data()->isEmpty())
        return;
    const int x = event->pos().x();
    double key = m_customPlot->xAxis->pixelToCoord(x);
    const int pos = qBound(0, int(key), graph->dataCount());
    const double value = graph->data()->at(pos)->value;
    key = graph->data()->at(pos)->key;
    const double px = m_customPlot->xAxis->coordToPixel(key);
    const double py = m_customPlot->yAxis->coordToPixel(value);
    const QString tip = "x: " + QString::number(key, 10, 3) + "\n" + "y: " + QString::number(value, 10, 3) + "\n";
    QToolTip::showText(mapToGlobal(QPoint(int(px), int(py))), tip, this);
}
