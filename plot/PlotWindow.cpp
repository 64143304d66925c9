#include "PlotWindow.h"
#include "AppPaths.h"
#include "LinkTap.h"
#include "MyApp.h"
#include "PlotCsvWriter.h"
#include "PlotDecimator.h"
#include "PlotDefinitionDialog.h"
#include "QtMessageBox.h"
#include "QtTitleBar.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHash>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTextCodec>
#include <QTimer>
#include <QVBoxLayout>
#include <qcustomplot.h>

#include <cmath>

namespace {
const char *const s_colors[PlotSampleStore::MaxChannels] = {
    "#02a1dd", "#ff7043", "#66bb6a", "#ffca28", "#ab47bc", "#ef5350", "#26c6da", "#d4e157",
    "#8d6e63", "#ec407a", "#5c6bc0", "#9ccc65", "#ffa726", "#78909c", "#29b6f6", "#bdbdbd"};
// seconds shown; 0 is everything
const double s_windows[] = {10, 30, 60, 0};

QHash<LinkTap *, QPointer<PlotWindow>> &windowsOfTaps()
{
    static QHash<LinkTap *, QPointer<PlotWindow>> windows;
    return windows;
}
}

PlotWindow::PlotWindow(LinkTap *tap, const QString &title, QWidget *parent)
    : QtMainWindow(parent)
    , m_tap(tap)
    , m_nCodecIndex(MyApp::m_nTextCodecIndex)
    , m_textParser(QTextCodec::codecForName(MyApp::getTextCodec()))
    , m_timerRedraw(new QTimer(this))
    , m_timerParse(new QTimer(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    // the skins' sheets give a top-level window of this name its background and text
    setObjectName("MainWindow");
    setWindowTitle(title);
    resize(1000, 640);
    m_timerRedraw->setSingleShot(true);
    m_timerRedraw->setInterval(RedrawMs);
    connect(m_timerRedraw, SIGNAL(timeout()), this, SLOT(SltRedraw()));
    m_timerParse->setSingleShot(true);
    m_timerParse->setInterval(0);
    connect(m_timerParse, SIGNAL(timeout()), this, SLOT(SltParsePending()));
    InitWidget();

    // the definition last used, or the simulator's example to start from
    PlotFrameDefinition def;
    QString error;
    if (PlotFrameDefinition::load(savedDefinitionPath(), &def, &error)
        || PlotFrameDefinition::load(definitionFolder() + "/larksim_sensor.json", &def, &error))
        setDefinition(def);

    if (tap) {
        connect(tap, SIGNAL(received(QByteArray)), this, SLOT(SltReceived(QByteArray)));
        connect(tap, SIGNAL(destroyed()), this, SLOT(SltTapGone()));
    }
    m_clock.start();
    updateStats();
}

PlotWindow::~PlotWindow() = default;

PlotWindow *PlotWindow::shownFor(LinkTap *tap)
{
    PlotWindow *window = windowsOfTaps().value(tap);
    return window && window->isVisible() ? window : nullptr;
}

PlotWindow *PlotWindow::showFor(LinkTap *tap, const QString &title)
{
    QPointer<PlotWindow> &window = windowsOfTaps()[tap];
    // a window closed a moment ago is still there until the event loop deletes it
    if (!window || !window->isVisible())
        window = new PlotWindow(tap, title);
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

QString PlotWindow::definitionFolder()
{
    return QCoreApplication::applicationDirPath() + "/plot-examples";
}

QString PlotWindow::savedDefinitionPath()
{
    return AppPaths::confDir() + "/plot_frame.json";
}

void PlotWindow::InitWidget()
{
    m_titleBar = new QtTitleBar(this, QtTitleBar::QtWindowNoFlag | QtTitleBar::QtWindowMinButton | QtTitleBar::QtWindowMaxButton);
    m_titleBar->setWinTitle(windowTitle());
    connect(m_titleBar, SIGNAL(signalCloseWindow()), this, SLOT(close()));

    m_cbxMode = new QComboBox(this);
    m_cbxMode->addItems({"文本行", "二进制帧"});
    connect(m_cbxMode, SIGNAL(currentIndexChanged(int)), this, SLOT(SltModeChanged(int)));
    m_cbxSeparator = new QComboBox(this);
    m_cbxSeparator->addItems({"自动分隔", "逗号", "分号", "制表符", "空格"});
    connect(m_cbxSeparator, SIGNAL(currentIndexChanged(int)), this, SLOT(SltSeparatorChanged(int)));
    m_btnLoadDef = new QPushButton("载入帧定义…", this);
    connect(m_btnLoadDef, SIGNAL(clicked()), this, SLOT(SltLoadDefinition()));
    m_btnEditDef = new QPushButton("编辑帧定义…", this);
    connect(m_btnEditDef, SIGNAL(clicked()), this, SLOT(SltEditDefinition()));
    m_labDef = new QLabel("未载入帧定义", this);

    m_cbxWindow = new QComboBox(this);
    m_cbxWindow->addItems({"最近10秒", "最近30秒", "最近60秒", "全部"});
    connect(m_cbxWindow, SIGNAL(currentIndexChanged(int)), this, SLOT(SltWindowChanged()));
    m_btnPause = new QPushButton("暂停", this);
    m_btnPause->setObjectName("btnPlotPause");
    m_btnPause->setCheckable(true);
    connect(m_btnPause, SIGNAL(toggled(bool)), this, SLOT(SltPauseToggled(bool)));
    m_chkAutoY = new QCheckBox("Y自动", this);
    m_chkAutoY->setChecked(true);
    connect(m_chkAutoY, SIGNAL(toggled(bool)), this, SLOT(SltYModeChanged()));
    m_spinYMin = new QDoubleSpinBox(this);
    m_spinYMax = new QDoubleSpinBox(this);
    for (QDoubleSpinBox *spin : {m_spinYMin, m_spinYMax}) {
        spin->setRange(-1e12, 1e12);
        spin->setDecimals(3);
        spin->setEnabled(false);
        connect(spin, SIGNAL(editingFinished()), this, SLOT(SltYModeChanged()));
    }
    m_spinYMin->setValue(-100);
    m_spinYMax->setValue(100);
    QPushButton *btnExport = new QPushButton("导出CSV…", this);
    connect(btnExport, SIGNAL(clicked()), this, SLOT(SltExport()));
    QPushButton *btnClear = new QPushButton("清除", this);
    connect(btnClear, SIGNAL(clicked()), this, SLOT(SltClear()));

    QHBoxLayout *bar = new QHBoxLayout;
    bar->setContentsMargins(6, 4, 6, 4);
    for (QWidget *w : std::initializer_list<QWidget *>{m_cbxMode, m_cbxSeparator, m_btnLoadDef, m_btnEditDef, m_labDef})
        bar->addWidget(w);
    bar->addStretch(1);
    for (QWidget *w : std::initializer_list<QWidget *>{m_cbxWindow, m_btnPause, m_chkAutoY, m_spinYMin, m_spinYMax, btnExport, btnClear})
        bar->addWidget(w);

    m_listChannels = new QListWidget(this);
    m_listChannels->setFixedWidth(150);
    m_listChannels->setToolTip("勾选显示或隐藏，双击改颜色");
    connect(m_listChannels, SIGNAL(itemChanged(QListWidgetItem *)), this, SLOT(SltChannelChanged(QListWidgetItem *)));
    connect(m_listChannels, SIGNAL(itemDoubleClicked(QListWidgetItem *)), this, SLOT(SltChannelColor(QListWidgetItem *)));

    m_plot = new QCustomPlot(this);
    const bool dark = MyApp::m_nSkinStyle == 0;
    const QColor fg(dark ? "#d0d0d0" : "#303030");
    m_plot->setBackground(QBrush(QColor(dark ? "#1e1e1e" : "#ffffff")));
    m_plot->axisRect()->setBackground(QBrush(QColor(dark ? "#302f2f" : "#f7f7f7")));
    for (QCPAxis *axis : {m_plot->xAxis, m_plot->yAxis}) {
        axis->setBasePen(QPen(fg));
        axis->setTickPen(QPen(fg));
        axis->setSubTickPen(QPen(fg));
        axis->setTickLabelColor(fg);
        axis->setLabelColor(fg);
        axis->grid()->setPen(QPen(QColor(dark ? "#474747" : "#dddddd"), 1, Qt::DotLine));
    }
    m_plot->xAxis->setLabel("时间 (s)");
    m_plot->xAxis->setRange(0, 10);
    m_plot->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    m_plot->setNoAntialiasingOnDrag(true);
    m_plot->setPlottingHint(QCP::phFastPolylines, true);
    connect(m_plot, SIGNAL(mouseMove(QMouseEvent *)), this, SLOT(SltPlotMouseMove(QMouseEvent *)));
    connect(m_plot->xAxis, SIGNAL(rangeChanged(QCPRange)), this, SLOT(SltXRangeChanged()));
    connect(m_plot, SIGNAL(afterReplot()), this, SLOT(SltAfterReplot()));

    m_labCursor = new QLabel("移动鼠标到曲线上读数", this);
    m_labCursor->setObjectName("labPlotCursor");
    m_labStats = new QLabel(this);
    m_labStats->setObjectName("labPlotStats");

    QHBoxLayout *middle = new QHBoxLayout;
    middle->setContentsMargins(6, 0, 6, 0);
    middle->addWidget(m_listChannels);
    middle->addWidget(m_plot, 1);

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(2);
    layout->addWidget(m_titleBar);
    layout->addLayout(bar);
    layout->addLayout(middle, 1);
    layout->addWidget(m_labCursor);
    layout->addWidget(m_labStats);
    SltModeChanged(0);
}

void PlotWindow::setMode(Mode mode)
{
    m_cbxMode->setCurrentIndex(mode);
}

void PlotWindow::setDefinition(const PlotFrameDefinition &definition)
{
    m_frameParser.setDefinition(definition);
    m_labDef->setText(definition.name.isEmpty() ? QString("%1个通道").arg(definition.channels.size()) : definition.name);
    if (m_mode == BinaryFrames)
        restartRecording();
}

bool PlotWindow::redrawPending() const
{
    return m_timerRedraw->isActive() || m_timerParse->isActive();
}

bool PlotWindow::isPaused() const
{
    return m_btnPause->isChecked();
}

bool PlotWindow::loadDefinition(const QString &path, QString *error)
{
    PlotFrameDefinition def;
    if (!PlotFrameDefinition::load(path, &def, error))
        return false;
    setDefinition(def);
    QString ignored; // the copy is a convenience: failing to keep it loses nothing now
    def.save(savedDefinitionPath(), &ignored);
    return true;
}

bool PlotWindow::exportCsv(const QString &path, QString *error, QString *written) const
{
    return PlotCsvWriter::write(m_store, path, error, written);
}

// A burst (a link read after a long pause, a fast socket) is parsed a slice per turn
// of the event loop, so the window keeps answering while it catches up; bytes keep
// their order and none is dropped.
void PlotWindow::SltReceived(const QByteArray &bytes)
{
    if (m_baPending.isEmpty() && bytes.size() <= MaxParseBytes) {
        parse(bytes);
        return;
    }
    m_baPending.append(bytes);
    if (!m_timerParse->isActive())
        m_timerParse->start();
}

void PlotWindow::SltParsePending()
{
    const int n = qMin(MaxParseBytes, m_baPending.size() - m_nPendingPos);
    parse(m_baPending.mid(m_nPendingPos, n));
    m_nPendingPos += n;
    if (m_nPendingPos >= m_baPending.size()) {
        m_baPending.clear();
        m_nPendingPos = 0;
        return;
    }
    // what is parsed goes once it is half the buffer: moving the rest stays linear
    if (m_nPendingPos > m_baPending.size() / 2) {
        m_baPending.remove(0, m_nPendingPos);
        m_nPendingPos = 0;
    }
    m_timerParse->start();
}

void PlotWindow::parse(const QByteArray &bytes)
{
    if (m_mode == TextLines) {
        // names follow the codec the page shows text in, also when it changes later
        if (m_nCodecIndex != MyApp::m_nTextCodecIndex) {
            m_nCodecIndex = MyApp::m_nTextCodecIndex;
            m_textParser.setCodec(QTextCodec::codecForName(MyApp::getTextCodec()));
        }
        m_textParser.feed(bytes, m_batch);
    } else {
        m_frameParser.feed(bytes, m_batch);
    }
    recordBatch();
}

void PlotWindow::recordBatch()
{
    if (m_mode == TextLines && m_textParser.names().size() != m_store.names().size())
        m_store.setNames(m_textParser.names());
    if (m_batch.records() > 0) {
        // the records of one read arrived together but were sent one after another:
        // they are spread over the time since the previous read, at most MaxSpread
        const double now = m_clock.nsecsElapsed() / 1e9;
        m_store.append(qMax(m_lastTime, now - MaxSpread), now, m_batch);
        m_lastTime = now;
        m_batch.clear();
    }
    // counts change even when no record came (garbage, bad lines)
    if (!m_timerRedraw->isActive())
        m_timerRedraw->start();
}

void PlotWindow::SltPlotValue(const QString &name, double value)
{
    int channel;
    if (m_mode == TextLines) {
        // the same list as the lines' names: "temp:25" from the board and plot("temp")
        // from a script are one curve
        channel = m_textParser.channelNamed(name);
    } else {
        // after the frame's own channels, for as long as the recording lasts
        QStringList names = m_store.names();
        channel = names.indexOf(name);
        if (channel < 0) {
            channel = names.size();
            m_store.setNames(names << name);
        }
    }
    m_batch.add(channel, value);
    m_batch.endRecord();
    recordBatch();
}

void PlotWindow::SltRedraw()
{
    updateStats();
    if (isPaused())
        return;
    m_nShownRows = m_store.totalRows();
    m_redrawClock.start();
    refreshView(true);
    ++m_nRedraws;
}

void PlotWindow::syncGraphs()
{
    while (m_plot->graphCount() < m_store.channelCount()) {
        const int c = m_plot->graphCount();
        QCPGraph *graph = m_plot->addGraph();
        // thin, aliased lines: sixteen graphs of two points a pixel column are
        // redrawn forty times a second, and wide or antialiased pens cost several times more
        graph->setPen(QPen(QColor(s_colors[c]), 1));
        graph->setAntialiased(false);
        graph->setAdaptiveSampling(true);
        QListWidgetItem *item = new QListWidgetItem(m_listChannels);
        QPixmap swatch(12, 12);
        swatch.fill(QColor(s_colors[c]));
        m_listChannels->blockSignals(true);
        item->setIcon(QIcon(swatch));
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
        m_listChannels->blockSignals(false);
    }
    for (int c = 0; c < m_plot->graphCount(); ++c) {
        QListWidgetItem *item = m_listChannels->item(c);
        if (item->text() != m_store.name(c)) {
            m_listChannels->blockSignals(true);
            item->setText(m_store.name(c));
            m_listChannels->blockSignals(false);
            m_plot->graph(c)->setName(m_store.name(c));
        }
    }
    rebuildGraphs();
}

// what the graphs hold is rebuilt from the store for the range shown, at most two
// points a pixel column: the work of a redraw is bounded by the plot's width, not by
// how much data the range covers
void PlotWindow::rebuildGraphs()
{
    const QCPRange range = m_plot->xAxis->range();
    const int columns = qMax(100, m_plot->axisRect()->width());
    const int shown = int(qBound<qint64>(0, m_nShownRows - m_store.firstRow(), m_store.rows()));
    const QVector<int> bounds = PlotDecimator::columnRows(m_store, range.lower, range.upper, columns, shown);
    QVector<double> keys, values;
    QVector<QCPGraphData> points;
    for (int c = 0; c < m_plot->graphCount(); ++c) {
        PlotDecimator::points(m_store, c, bounds, keys, values);
        points.resize(keys.size());
        for (int i = 0; i < keys.size(); ++i)
            points[i] = QCPGraphData(keys.at(i), values.at(i));
        m_plot->graph(c)->data()->set(points, true);
    }
}

void PlotWindow::applyXAxis()
{
    const double window = s_windows[m_cbxWindow->currentIndex()];
    const double first = m_store.rows() > 0 ? m_store.time(0) : 0;
    if (window > 0)
        m_plot->xAxis->setRange(qMax(0.0, m_lastTime - window), qMax(window, m_lastTime));
    else
        m_plot->xAxis->setRange(first, qMax(first + 1e-3, m_lastTime));
}

// the graphs hold at most two points a pixel column, so the range of their values is
// found in the time of a redraw
void PlotWindow::applyYAxis()
{
    if (!m_chkAutoY->isChecked()) {
        m_plot->yAxis->setRange(m_spinYMin->value(), m_spinYMax->value());
        return;
    }
    QCPRange total;
    bool any = false;
    for (int c = 0; c < m_plot->graphCount(); ++c) {
        if (!m_plot->graph(c)->visible())
            continue;
        bool found = false;
        const QCPRange r = m_plot->graph(c)->getValueRange(found, QCP::sdBoth, m_plot->xAxis->range());
        if (found)
            total = any ? QCPRange(qMin(total.lower, r.lower), qMax(total.upper, r.upper)) : r, any = true;
    }
    if (any) {
        const double pad = qMax(1e-9, (total.upper - total.lower) * 0.05);
        m_plot->yAxis->setRange(total.lower - pad, total.upper + (total.upper > total.lower ? pad : 1.0));
    }
}

void PlotWindow::updateStats()
{
    QString text;
    if (m_mode == TextLines) {
        text = QString("行 %1  无法解析 %2").arg(m_textParser.goodLines()).arg(m_textParser.badLines());
    } else {
        const PlotFrameParser::Counts &n = m_frameParser.counts();
        text = QString("帧 %1  校验错 %2  丢弃 %3  跳过字节 %4").arg(n.good).arg(n.badChecksum).arg(n.dropped).arg(n.skippedBytes);
    }
    text += QString("    已记录 %1 行，每通道最多保留 %2 个样本，超出时丢弃最旧的").arg(m_store.rows()).arg(m_store.capacity());
    if (m_store.firstRow() > 0)
        text += QString("（已丢弃 %1 行）").arg(m_store.firstRow());
    if (m_store.ignoredValues() > 0)
        text += QString("    超过%1个通道的值已忽略 %2 个").arg(PlotSampleStore::MaxChannels).arg(m_store.ignoredValues());
    if (isPaused())
        text += "    已暂停，仍在记录";
    m_labStats->setText(text);
}

void PlotWindow::restartRecording()
{
    m_textParser.reset();
    m_frameParser.reset();
    m_batch.clear();
    m_store.clear();
    m_baPending.clear();
    m_nPendingPos = 0;
    m_timerParse->stop();
    if (m_mode == BinaryFrames) {
        QStringList names;
        for (const PlotFrameDefinition::Channel &c : m_frameParser.definition().channels)
            names << c.name;
        m_store.setNames(names);
    }
    m_plot->clearGraphs();
    m_listChannels->clear();
    m_nShownRows = 0;
    m_lastTime = 0;
    m_clock.restart();
    m_plot->xAxis->setRange(0, 10);
    m_plot->replot();
    updateStats();
}

void PlotWindow::SltClear()
{
    restartRecording();
}

void PlotWindow::SltModeChanged(int index)
{
    m_mode = Mode(index);
    m_cbxSeparator->setVisible(m_mode == TextLines);
    m_btnLoadDef->setVisible(m_mode == BinaryFrames);
    m_btnEditDef->setVisible(m_mode == BinaryFrames);
    m_labDef->setVisible(m_mode == BinaryFrames);
    restartRecording();
}

void PlotWindow::SltSeparatorChanged(int index)
{
    m_textParser.setSeparator(PlotTextParser::Separator(index));
}

void PlotWindow::SltLoadDefinition()
{
    const QString path = QFileDialog::getOpenFileName(this, "载入帧定义", definitionFolder(), "帧定义 (*.json)",
                                                      nullptr, QFileDialog::DontUseNativeDialog);
    if (path.isEmpty())
        return;
    QString error;
    if (!loadDefinition(path, &error))
        QtMessageBox::warning(error);
}

void PlotWindow::SltEditDefinition()
{
    PlotDefinitionDialog dialog(m_frameParser.definition(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    setDefinition(dialog.definition());
    QString ignored;
    dialog.definition().save(savedDefinitionPath(), &ignored);
}

void PlotWindow::SltPauseToggled(bool paused)
{
    m_btnPause->setText(paused ? "继续" : "暂停");
    // catch up with what was recorded meanwhile
    if (!paused && !m_timerRedraw->isActive())
        m_timerRedraw->start();
    updateStats();
}

void PlotWindow::SltExport()
{
    const QString path = QFileDialog::getSaveFileName(this, "导出CSV", QDir::homePath(), "CSV (*.csv)",
                                                      nullptr, QFileDialog::DontUseNativeDialog);
    if (path.isEmpty())
        return;
    // the dialog asked about the name typed; the suffix added may name another file
    const QString target = PlotCsvWriter::csvPath(path);
    if (target != path && QFileInfo::exists(target)
        && QtMessageBox::question(QString("%1 已存在，要覆盖吗？").arg(target)) != 1)
        return;
    QString error, written;
    if (!exportCsv(path, &error, &written))
        QtMessageBox::warning(error);
}

void PlotWindow::SltYModeChanged()
{
    m_spinYMin->setEnabled(!m_chkAutoY->isChecked());
    m_spinYMax->setEnabled(!m_chkAutoY->isChecked());
    SltWindowChanged();
}

void PlotWindow::SltWindowChanged()
{
    refreshView();
}

// A redraw is two turns of the event loop: the graphs are filled in this one, painted
// in the next (a queued replot), so neither keeps the link waiting for long.
void PlotWindow::refreshView(bool queued)
{
    m_bFollowing = true;
    applyXAxis();
    m_bFollowing = false;
    syncGraphs();
    applyYAxis();
    m_plot->replot(queued ? QCustomPlot::rpQueuedReplot : QCustomPlot::rpRefreshHint);
}

// The plot takes at most a fifth of the time: on a busy machine a redraw takes longer,
// and redrawing less often leaves the link and the pages their turns.
void PlotWindow::SltAfterReplot()
{
    if (!m_redrawClock.isValid())
        return;
    m_timerRedraw->setInterval(int(qBound<qint64>(RedrawMs, 4 * m_redrawClock.elapsed(), MaxRedrawMs)));
    m_redrawClock.invalidate();
}

// a range the user dragged or zoomed to is drawn from the store like any other
void PlotWindow::SltXRangeChanged()
{
    if (m_bFollowing)
        return;
    rebuildGraphs();
    applyYAxis();
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}

void PlotWindow::SltChannelChanged(QListWidgetItem *item)
{
    const int c = m_listChannels->row(item);
    if (c < 0 || c >= m_plot->graphCount())
        return;
    m_plot->graph(c)->setVisible(item->checkState() == Qt::Checked);
    SltWindowChanged();
}

void PlotWindow::SltChannelColor(QListWidgetItem *item)
{
    const int c = m_listChannels->row(item);
    if (c < 0 || c >= m_plot->graphCount())
        return;
    const QColor color = QColorDialog::getColor(m_plot->graph(c)->pen().color(), this, item->text());
    if (!color.isValid())
        return;
    m_plot->graph(c)->setPen(QPen(color, 1));
    QPixmap swatch(12, 12);
    swatch.fill(color);
    item->setIcon(QIcon(swatch));
    m_plot->replot();
}

void PlotWindow::SltPlotMouseMove(QMouseEvent *event)
{
    // read from the store, not the graphs: what they hold may be the envelope of a column
    const double t = m_plot->xAxis->pixelToCoord(event->pos().x());
    QString text = QString("t = %1 s").arg(t, 0, 'f', 6);
    const int shown = int(qBound<qint64>(0, m_nShownRows - m_store.firstRow(), m_store.rows()));
    const int at = qMin(shown, m_store.rowAtTime(t));
    for (int c = 0; c < m_plot->graphCount(); ++c) {
        if (!m_plot->graph(c)->visible())
            continue;
        // the newest sample at or before the cursor (the first one left of all); a
        // channel missing from some lines is looked for a little further back
        int r = at < shown && m_store.time(at) == t ? at : qMax(0, at - 1);
        for (int back = 0; r > 0 && back < 64 && std::isnan(m_store.value(c, r)); ++back)
            --r;
        if (r < shown && !std::isnan(m_store.value(c, r)))
            text += QString("    %1 = %2").arg(m_store.name(c)).arg(m_store.value(c, r), 0, 'g', 8);
    }
    m_labCursor->setText(text);
}

void PlotWindow::SltTapGone()
{
    m_tap = nullptr;
    m_titleBar->setWinTitle(windowTitle() + "（页面已关闭）");
}
