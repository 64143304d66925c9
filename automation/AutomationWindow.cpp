#include "AutomationWindow.h"
#include "AutoReplyRunner.h"
#include "LinkTap.h"
#include "MyApp.h"
#include "QtFileDialog.h"
#include "QtTabBar.h"
#include "QtTitleBar.h"
#include "ReplyRuleFile.h"
#include "ScriptRuntime.h"

#include <QCheckBox>
#include <QDir>
#include <QKeyEvent>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QSpinBox>
#include <QSplitter>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTime>
#include <QTimer>
#include <QVBoxLayout>

static const char kErrorStyle[] = "color:#ff5050;";
static const int kLogLines = 5000;

AutomationWindow::AutomationWindow(LinkTap *tap, const QString &pageName, QWidget *parent)
    : QDialog(parent)
    , m_tap(tap)
    , m_strPage(pageName)
    , m_runner(new AutoReplyRunner(this))
    , m_runtime(new ScriptRuntime(this))
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::Window);
    setWindowTitle(QString("自动应答与脚本 - %1").arg(pageName));
    resize(860, 600);
    m_runner->setTap(tap);
    m_runtime->setTap(tap);
    InitWidget();
}

AutomationWindow::~AutomationWindow()
{
    saveState();
    // the runtime is a child and goes with the window; its signals must not reach
    // widgets already gone
    m_runtime->disconnect(this);
}

void AutomationWindow::InitWidget()
{
    m_titleBar = new QtTitleBar(this, QtTitleBar::QtWindowMinButton | QtTitleBar::QtWindowMaxButton | QtTitleBar::QtWindowNoFlag);
    m_titleBar->setWinTitle(windowTitle());
    connect(m_titleBar, SIGNAL(signalCloseWindow()), this, SLOT(close()));

    m_tabBar = new QtTabBar(this);
    m_tabBar->setTabTitles(QStringList() << "应答规则" << "脚本");
    m_stackedWidget = new QStackedWidget(this);
    m_stackedWidget->addWidget(InitRulesPage());
    m_stackedWidget->addWidget(InitScriptPage());
    connect(m_tabBar, SIGNAL(signalClicked(int)), m_stackedWidget, SLOT(setCurrentIndex(int)));

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);
    layout->addWidget(m_tabBar);
    layout->addWidget(m_stackedWidget, 1);

    connect(m_runner, SIGNAL(fired(int, int)), this, SLOT(SltRuleFired(int, int)));
    connect(m_runner, SIGNAL(problemFound(int, QString)), this, SLOT(SltRuleProblem(int, QString)));
    connect(m_runtime, SIGNAL(logLine(QString)), this, SLOT(SltScriptLog(QString)));
    connect(m_runtime, SIGNAL(started()), this, SLOT(SltScriptStarted()));
    connect(m_runtime, SIGNAL(finished(QString)), this, SLOT(SltScriptFinished(QString)));
    connect(m_runtime, SIGNAL(plotValue(QString, double)), this, SIGNAL(plotValue(QString, double)));
}

static QPushButton *addButton(QHBoxLayout *row, const QString &text, const QString &tip, QObject *target, const char *slot)
{
    QPushButton *button = new QPushButton(text);
    button->setToolTip(tip);
    row->addWidget(button);
    QObject::connect(button, SIGNAL(clicked()), target, slot);
    return button;
}

QWidget *AutomationWindow::InitRulesPage()
{
    QWidget *page = new QWidget(this);
    QVBoxLayout *layout = new QVBoxLayout(page);
    layout->setContentsMargins(6, 6, 6, 6);

    QHBoxLayout *bar = new QHBoxLayout;
    m_chkRulesOn = new QCheckBox("启用自动应答", page);
    connect(m_chkRulesOn, SIGNAL(toggled(bool)), this, SLOT(SltRulesSwitched(bool)));
    bar->addWidget(m_chkRulesOn);
    bar->addStretch(1);
    addButton(bar, "添加", "在选中行之后添加一条规则", this, SLOT(SltAddRule()));
    addButton(bar, "删除", "删除选中的规则", this, SLOT(SltDeleteRule()));
    addButton(bar, "上移", "规则按表中顺序匹配", this, SLOT(SltMoveRuleUp()));
    addButton(bar, "下移", "规则按表中顺序匹配", this, SLOT(SltMoveRuleDown()));
    addButton(bar, "清零计数", "各规则的触发次数归零", m_runner, SLOT(resetCounts()));
    addButton(bar, "载入…", "从 JSON 文件载入规则", this, SLOT(SltLoadRules()));
    addButton(bar, "保存…", "把规则保存为 JSON 文件", this, SLOT(SltSaveRules()));
    layout->addLayout(bar);

    m_table = new QTableWidget(0, ColumnCount, page);
    m_table->setHorizontalHeaderLabels(QStringList() << "启用" << "匹配方式" << "匹配内容" << "应答格式"
                                                     << "应答内容" << "延时(ms)" << "最小间隔(ms)" << "次数");
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->verticalHeader()->setDefaultSectionSize(26);
    QHeaderView *header = m_table->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(ColPattern, QHeaderView::Stretch);
    header->setSectionResizeMode(ColReply, QHeaderView::Stretch);
    connect(m_table, SIGNAL(itemChanged(QTableWidgetItem *)), this, SLOT(SltRulesEdited()));
    layout->addWidget(m_table, 1);

    m_labRules = new QLabel(page);
    m_labRules->setWordWrap(true);
    m_labRules->setText("文本与应答可用转义 \\r \\n \\t \\\\ \\xNN；HEX 为两位一组的十六进制；"
                        "正则表达式匹配按页面编码解码的最近 4096 个字符。");
    layout->addWidget(m_labRules);
    return page;
}

QWidget *AutomationWindow::InitScriptPage()
{
    QWidget *page = new QWidget(this);
    QVBoxLayout *layout = new QVBoxLayout(page);
    layout->setContentsMargins(6, 6, 6, 6);

    QHBoxLayout *bar = new QHBoxLayout;
    addButton(bar, "打开…", "从 .js 文件载入脚本", this, SLOT(SltOpenScript()));
    addButton(bar, "保存…", "把脚本保存为 .js 文件", this, SLOT(SltSaveScript()));
    m_btnRun = addButton(bar, "运行", "运行脚本；运行中再按则从头重新运行（Ctrl+R）", this, SLOT(SltRunScript()));
    m_btnRun->setShortcut(QKeySequence("Ctrl+R"));
    m_btnStop = addButton(bar, "停止", "停止脚本（Ctrl+.）", this, SLOT(SltStopScript()));
    m_btnStop->setShortcut(QKeySequence("Ctrl+."));
    m_btnStop->setEnabled(false);
    m_labScriptFile = new QLabel("未命名", page);
    bar->addWidget(m_labScriptFile, 1);
    QPushButton *btnClear = new QPushButton("清空日志", page);
    bar->addWidget(btnClear);
    layout->addLayout(bar);

    const QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    m_edtScript = new QPlainTextEdit(page);
    m_edtScript->setFont(mono);
    m_edtScript->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_edtScript->setTabStopDistance(QFontMetricsF(mono).horizontalAdvance(' ') * 4);
    m_edtScript->setPlaceholderText("// 例：收到 PING 回复 PONG\n"
                                    "function onData(bytes) {\n"
                                    "    if (text(bytes).indexOf('PING') >= 0)\n"
                                    "        send('PONG\\r\\n');\n"
                                    "}\n"
                                    "// 另有 setTimeout/setInterval、log、plot(name, value)、\n"
                                    "// toHex、fromHex、crc16modbus、codec");
    connect(m_edtScript, SIGNAL(cursorPositionChanged()), this, SLOT(SltCursorMoved()));
    m_edtLog = new QPlainTextEdit(page);
    m_edtLog->setReadOnly(true);
    m_edtLog->setFont(mono);
    // a script that logs every chunk must not grow the log without end
    m_edtLog->setMaximumBlockCount(kLogLines);
    m_logTimer = new QTimer(this);
    m_logTimer->setSingleShot(true);
    m_logTimer->setInterval(50);
    connect(m_logTimer, SIGNAL(timeout()), this, SLOT(SltFlushLog()));
    connect(btnClear, SIGNAL(clicked()), m_edtLog, SLOT(clear()));

    QSplitter *splitter = new QSplitter(Qt::Vertical, page);
    splitter->addWidget(m_edtScript);
    splitter->addWidget(m_edtLog);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    layout->addWidget(splitter, 1);

    QHBoxLayout *status = new QHBoxLayout;
    m_labScriptState = new QLabel("未运行", page);
    m_labScriptState->setWordWrap(true);
    m_labCursor = new QLabel("第 1 行，第 1 列", page);
    status->addWidget(m_labScriptState, 1);
    status->addWidget(m_labCursor);
    layout->addLayout(status);
    return page;
}

// ---- rules

void AutomationWindow::addRuleRow(int row, const ReplyRule &rule)
{
    m_table->insertRow(row);
    QTableWidgetItem *enabled = new QTableWidgetItem;
    enabled->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    enabled->setCheckState(rule.enabled ? Qt::Checked : Qt::Unchecked);
    m_table->setItem(row, ColEnabled, enabled);

    QComboBox *match = new QComboBox;
    match->addItems(QStringList() << "包含文本" << "正则表达式" << "HEX");
    match->setCurrentIndex(int(rule.matchKind));
    connect(match, SIGNAL(currentIndexChanged(int)), this, SLOT(SltRulesEdited()));
    m_table->setCellWidget(row, ColMatch, match);
    m_table->setItem(row, ColPattern, new QTableWidgetItem(rule.pattern));

    QComboBox *replyAs = new QComboBox;
    replyAs->addItems(QStringList() << "文本" << "HEX");
    replyAs->setCurrentIndex(int(rule.replyKind));
    connect(replyAs, SIGNAL(currentIndexChanged(int)), this, SLOT(SltRulesEdited()));
    m_table->setCellWidget(row, ColReplyAs, replyAs);
    m_table->setItem(row, ColReply, new QTableWidgetItem(rule.reply));

    for (auto cell : {std::make_pair(int(ColDelay), rule.delayMs), std::make_pair(int(ColInterval), rule.minIntervalMs)}) {
        QSpinBox *spin = new QSpinBox;
        spin->setRange(0, 86400000);
        spin->setValue(cell.second);
        connect(spin, SIGNAL(valueChanged(int)), this, SLOT(SltRulesEdited()));
        m_table->setCellWidget(row, cell.first, spin);
    }
    QTableWidgetItem *count = new QTableWidgetItem("0");
    count->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    count->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_table->setItem(row, ColCount, count);
}

ReplyRule AutomationWindow::ruleAt(int row) const
{
    ReplyRule rule;
    rule.enabled = m_table->item(row, ColEnabled)->checkState() == Qt::Checked;
    rule.matchKind = ReplyRule::MatchKind(static_cast<QComboBox *>(m_table->cellWidget(row, ColMatch))->currentIndex());
    rule.pattern = m_table->item(row, ColPattern)->text();
    rule.replyKind = ReplyRule::ReplyKind(static_cast<QComboBox *>(m_table->cellWidget(row, ColReplyAs))->currentIndex());
    rule.reply = m_table->item(row, ColReply)->text();
    rule.delayMs = static_cast<QSpinBox *>(m_table->cellWidget(row, ColDelay))->value();
    rule.minIntervalMs = static_cast<QSpinBox *>(m_table->cellWidget(row, ColInterval))->value();
    return rule;
}

QList<ReplyRule> AutomationWindow::rules() const
{
    QList<ReplyRule> out;
    for (int row = 0; row < m_table->rowCount(); ++row)
        out << ruleAt(row);
    return out;
}

void AutomationWindow::setRules(const QList<ReplyRule> &rules)
{
    m_bFilling = true;
    m_table->setRowCount(0);
    for (int i = 0; i < rules.size(); ++i)
        addRuleRow(i, rules.at(i));
    m_bFilling = false;
    SltRulesEdited();
}

void AutomationWindow::SltRulesEdited()
{
    if (m_bFilling)
        return;
    applyCodec();
    const QList<ReplyRule> list = rules();
    m_runner->setRules(list);
    // the table says which rows cannot fire, and why, where the user is looking
    m_bFilling = true;
    QStringList problems;
    for (int row = 0; row < list.size(); ++row) {
        const QString problem = m_runner->problem(row);
        for (int col : {int(ColPattern), int(ColReply)}) {
            QTableWidgetItem *item = m_table->item(row, col);
            item->setToolTip(problem);
            item->setForeground(problem.isEmpty() ? QBrush() : QBrush(QColor("#ff5050")));
        }
        m_table->item(row, ColCount)->setText(QString::number(m_runner->fireCount(row)));
        if (!problem.isEmpty())
            problems << QString("第 %1 条规则：%2").arg(row + 1).arg(problem);
    }
    m_bFilling = false;
    if (!problems.isEmpty())
        showRulesMessage(problems.join("\n"), true);
    else if (m_labRules->styleSheet() == kErrorStyle)
        showRulesMessage(QString("共 %1 条规则").arg(list.size()), false);
}

void AutomationWindow::SltAddRule()
{
    const int row = m_table->currentRow() < 0 ? m_table->rowCount() : m_table->currentRow() + 1;
    m_bFilling = true;
    ReplyRule rule;
    rule.pattern = "AT\\r\\n";
    rule.reply = "OK\\r\\n";
    addRuleRow(row, rule);
    m_bFilling = false;
    m_table->setCurrentCell(row, ColPattern);
    SltRulesEdited();
}

void AutomationWindow::SltDeleteRule()
{
    const int row = m_table->currentRow();
    if (row < 0)
        return;
    m_table->removeRow(row);
    SltRulesEdited();
}

void AutomationWindow::moveRule(int from, int to)
{
    if (from < 0 || to < 0 || to >= m_table->rowCount())
        return;
    QList<ReplyRule> list = rules();
    list.move(from, to);
    setRules(list);
    m_table->setCurrentCell(to, ColPattern);
}

void AutomationWindow::SltMoveRuleUp()
{
    moveRule(m_table->currentRow(), m_table->currentRow() - 1);
}

void AutomationWindow::SltMoveRuleDown()
{
    moveRule(m_table->currentRow(), m_table->currentRow() + 1);
}

void AutomationWindow::SltRulesSwitched(bool on)
{
    applyCodec();
    m_runner->setActive(on);
}

void AutomationWindow::SltRuleFired(int row, int count)
{
    // a count is not an edit of the rules
    m_bFilling = true;
    if (QTableWidgetItem *item = m_table->item(row, ColCount))
        item->setText(QString::number(count));
    m_bFilling = false;
}

void AutomationWindow::SltRuleProblem(int row, const QString &text)
{
    showRulesMessage(QString("第 %1 条规则：%2").arg(row + 1).arg(text), true);
}

bool AutomationWindow::loadRules(const QString &path)
{
    QList<ReplyRule> list;
    QString error;
    if (!ReplyRuleFile::load(path, &list, &error)) {
        showRulesMessage(QString("载入失败，保留原有规则。%1").arg(error), true);
        return false;
    }
    setRules(list);
    showRulesMessage(QString("已载入 %1 条规则：%2").arg(list.size()).arg(path), false);
    return true;
}

bool AutomationWindow::saveRules(const QString &path)
{
    QString error;
    if (!ReplyRuleFile::save(path, rules(), &error)) {
        showRulesMessage(QString("保存失败：%1").arg(error), true);
        return false;
    }
    showRulesMessage(QString("已保存 %1 条规则：%2").arg(m_table->rowCount()).arg(path), false);
    return true;
}

void AutomationWindow::SltLoadRules()
{
    const QString path = askFile(false, "应答规则 (*.json)");
    if (!path.isEmpty())
        loadRules(path);
}

void AutomationWindow::SltSaveRules()
{
    const QString path = askFile(true, "应答规则 (*.json)");
    if (!path.isEmpty())
        saveRules(path);
}

void AutomationWindow::showRulesMessage(const QString &text, bool error)
{
    m_labRules->setText(text);
    m_labRules->setStyleSheet(error ? kErrorStyle : "");
}

QString AutomationWindow::rulesMessage() const
{
    return m_labRules->text();
}

// ---- script

bool AutomationWindow::loadScript(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_labScriptState->setText(QString("无法打开 %1：%2").arg(path, file.errorString()));
        m_labScriptState->setStyleSheet(kErrorStyle);
        return false;
    }
    m_edtScript->setPlainText(QString::fromUtf8(file.readAll()));
    m_strScriptFile = path;
    m_labScriptFile->setText(QFileInfo(path).fileName());
    m_labScriptFile->setToolTip(path);
    return true;
}

bool AutomationWindow::saveScript(const QString &path)
{
    QSaveFile file(path);
    const QByteArray data = m_edtScript->toPlainText().toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        m_labScriptState->setText(QString("无法保存 %1：%2").arg(path, file.errorString()));
        m_labScriptState->setStyleSheet(kErrorStyle);
        return false;
    }
    m_strScriptFile = path;
    m_labScriptFile->setText(QFileInfo(path).fileName());
    m_labScriptFile->setToolTip(path);
    return true;
}

void AutomationWindow::SltOpenScript()
{
    const QString path = askFile(false, "JavaScript (*.js)");
    if (!path.isEmpty())
        loadScript(path);
}

void AutomationWindow::SltSaveScript()
{
    const QString path = askFile(true, "JavaScript (*.js)");
    if (!path.isEmpty())
        saveScript(path);
}

void AutomationWindow::SltRunScript()
{
    applyCodec();
    const QString name = m_strScriptFile.isEmpty() ? QString("script.js") : QFileInfo(m_strScriptFile).fileName();
    m_runtime->start(m_edtScript->toPlainText(), name);
}

void AutomationWindow::SltStopScript()
{
    m_runtime->stop();
}

void AutomationWindow::SltScriptLog(const QString &text)
{
    // A script may log on every chunk of a fast link: lines are shown in batches, and
    // only the last of a batch that the view would cut anyway are kept.
    // the time is formatted when shown, outside the script's time budget
    m_logPending.append({QTime::currentTime().msecsSinceStartOfDay(), text});
    // one line less than the view holds, for the line that says how many were left out
    if (m_logPending.size() >= kLogLines) {
        m_nLogDropped += m_logPending.size() - (kLogLines - 1);
        m_logPending.erase(m_logPending.begin(), m_logPending.end() - (kLogLines - 1));
    }
    if (!m_logTimer->isActive())
        m_logTimer->start();
}

void AutomationWindow::SltFlushLog()
{
    if (m_nLogDropped > 0)
        m_edtLog->appendPlainText(QString("…（%1 行日志未显示）").arg(m_nLogDropped));
    QString lines;
    for (const auto &line : qAsConst(m_logPending)) {
        if (!lines.isEmpty())
            lines += '\n';
        lines += QString("[%1] %2").arg(QTime::fromMSecsSinceStartOfDay(line.first).toString("HH:mm:ss.zzz"), line.second);
    }
    if (!lines.isEmpty())
        m_edtLog->appendPlainText(lines);
    m_logPending.clear();
    m_nLogDropped = 0;
}

void AutomationWindow::SltScriptStarted()
{
    m_btnStop->setEnabled(true);
    m_labScriptState->setStyleSheet("");
    m_labScriptState->setText(m_tap && m_tap->isOpen() ? QString("运行中：%1").arg(m_tap->linkName())
                                                       : QString("运行中（链接未打开，send 不会发出数据）"));
}

void AutomationWindow::SltScriptFinished(const QString &reason)
{
    m_btnStop->setEnabled(false);
    m_labScriptState->setText(reason.isEmpty() ? QString("已停止") : reason);
    m_labScriptState->setStyleSheet(reason.isEmpty() ? "" : kErrorStyle);
    if (!reason.isEmpty())
        SltScriptLog(reason);
}

QString AutomationWindow::scriptState() const
{
    return m_labScriptState->text();
}

void AutomationWindow::SltCursorMoved()
{
    const QTextCursor cursor = m_edtScript->textCursor();
    m_labCursor->setText(QString("第 %1 行，第 %2 列").arg(cursor.blockNumber() + 1).arg(cursor.positionInBlock() + 1));
}

// ---- window

void AutomationWindow::setCurrentTab(int index)
{
    m_tabBar->setCurrentIndex(index);
    m_stackedWidget->setCurrentIndex(index);
}

void AutomationWindow::applyCodec()
{
    // the codec can change in the settings menu at any time; it is read at each start
    m_runner->setCodec(MyApp::getTextCodec());
    m_runtime->setCodec(MyApp::getTextCodec());
}

QString AutomationWindow::askFile(bool save, const QString &filter)
{
    QtFileDialog dialog(this);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilter(filter);
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    return dialog.exitfile();
}

void AutomationWindow::reject()
{
    // closing by the title bar ends here too (QDialog::closeEvent rejects)
    m_chkRulesOn->setChecked(false);
    m_runtime->stop();
    saveState();
    QDialog::reject();
}

void AutomationWindow::keyPressEvent(QKeyEvent *event)
{
    // Escape in the editor must not stop a running automation
    if (event->key() == Qt::Key_Escape)
        return;
    QDialog::keyPressEvent(event);
}

void AutomationWindow::setStateFiles(const QString &rulesPath, const QString &scriptPath)
{
    m_strStateRules = rulesPath;
    m_strStateScript = scriptPath;
    if (QFile::exists(rulesPath))
        loadRules(rulesPath);
    if (QFile::exists(scriptPath)) {
        loadScript(scriptPath);
        // the kept copy is not the user's file: Save asks for a name again
        m_strScriptFile.clear();
        m_labScriptFile->setText("未命名");
        m_labScriptFile->setToolTip(QString());
    }
}

void AutomationWindow::saveState()
{
    if (m_strStateRules.isEmpty())
        return;
    QDir().mkpath(QFileInfo(m_strStateRules).path());
    ReplyRuleFile::save(m_strStateRules, rules(), nullptr);
    QSaveFile file(m_strStateScript);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(m_edtScript->toPlainText().toUtf8());
        file.commit();
    }
}
