#include "QtSendBoxWidget.h"
#include "AppPaths.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QtFileDialog.h"
#include "QtMessageBox.h"
#include "QtMessageTip.h"
#include "QtPageBar.h"
#include "QtSendBoxFiles.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextEdit>
#include <QTextStream>
#include <QTimer>
#include <QVBoxLayout>

QtSendBoxWidget::QtSendBoxWidget(QWidget *parent, int pages)
    : QtWidgetBase(parent)
    , m_chkAutoSend(nullptr)
    , m_nPageFlags(pages)
    , m_currentPage(SinglePage)
    , m_btnSend(nullptr)
    , m_edtSend(nullptr)
    , m_cbxHistory(nullptr)
    , m_pageBar(nullptr)
    , m_autoRow(-1)
    , m_deviceOpen(false)
    , m_hexSend(false)
    , m_sendNewLine(false)
{
    for (int i = 0; i < 10; ++i) {
        m_edtMulti[i] = nullptr;
        m_btnMulti[i] = nullptr;
    }

    m_stackedWidget = new QStackedWidget(this);
    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(0);
    layout->addWidget(m_stackedWidget);

    if (pages & SinglePage) {
        InitSingelPage();
        const QString dir = AppPaths::confDir();
        if (pages == 7)
            m_strHistoryFile = dir + "/ser_send_data.txt";
        else if (pages == 3)
            m_strHistoryFile = dir + "/net_send_data.txt";
        LoadQuitSendMsg(m_strHistoryFile);
    }
    if (pages & MultiPage) {
        InitMultiPage();
        LoadMultiConfigData(multiConfigFile());
    }
    if (pages & ProtocolPage)
        InitProtocolPage();

    m_autoTimer = new QTimer(this);
    m_autoTimer->setInterval(1000);
    connect(m_autoTimer, SIGNAL(timeout()), this, SLOT(SltAutoSendData()));

    setCurrentPage(SinglePage);
}

QtSendBoxWidget::~QtSendBoxWidget()
{
    // the lists are written only here, at the end of a run
    SaveQuitSendMsg();
    SaveMultiConfigData();
}

QString QtSendBoxWidget::multiConfigFile() const
{
    QString name;
    if (m_nPageFlags == 7)
        name = "ser_multi_conf.txt";
    else if (m_nPageFlags == 3)
        name = "net_multi_conf.txt";
    return AppPaths::confDir() + "/" + name;
}

void QtSendBoxWidget::InitSingelPage()
{
    QWidget *page = new QWidget(this);
    page->setObjectName("widgetSingleSend");

    m_edtSend = new QTextEdit(page);
    m_cbxHistory = new QComboBox(page);
    m_cbxHistory->setMinimumWidth(200);
    QPushButton *btnLoad = new QPushButton("加载文件", page);
    m_btnSend = new QPushButton("发送数据", page);
    m_btnSend->setFixedSize(70, 22);
    m_btnSend->setEnabled(false);

    QHBoxLayout *row = new QHBoxLayout();
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(5);
    row->addWidget(m_cbxHistory, 1);
    row->addWidget(btnLoad);
    row->addWidget(m_btnSend);

    QVBoxLayout *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    layout->addWidget(m_edtSend, 1);
    layout->addLayout(row);

    // picking an old message puts it back into the edit
    connect(m_cbxHistory, SIGNAL(currentIndexChanged(QString)), m_edtSend, SLOT(setText(QString)));
    connect(btnLoad, SIGNAL(clicked()), this, SLOT(SltLoadDataFile()));
    connect(m_btnSend, SIGNAL(clicked()), this, SLOT(SltSingleSendPage()));

    m_stackedWidget->addWidget(page);
    m_pages.insert(SinglePage, page);
}

void QtSendBoxWidget::InitMultiPage()
{
    QWidget *page = new QWidget(this);
    page->setObjectName("widgetMultiSend");

    QGridLayout *grid = new QGridLayout();
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(5);
    QButtonGroup *group = new QButtonGroup(page);
    for (int i = 0; i < 10; ++i) {
        m_edtMulti[i] = new QLineEdit(page);
        m_edtMulti[i]->setProperty("id", i);
        m_btnMulti[i] = new QPushButton(QString("%1").arg(i + 1), page);
        group->addButton(m_btnMulti[i], i);
        QHBoxLayout *cell = new QHBoxLayout();
        cell->setContentsMargins(0, 0, 0, 0);
        cell->setSpacing(2);
        cell->addWidget(m_edtMulti[i], 1);
        cell->addWidget(m_btnMulti[i]);
        grid->addLayout(cell, i / 2, i % 2);
        connect(m_edtMulti[i], SIGNAL(editingFinished()), this, SLOT(SltMultiEditFinished()));
    }
    connect(group, SIGNAL(buttonClicked(int)), this, SLOT(SltMultiBtnClicked(int)));

    QPushButton *btnClear = new QPushButton("清除重填", page);
    connect(btnClear, SIGNAL(clicked()), this, SLOT(SltClearMultiEdit()));
    // addPage and deletePage stay unconnected: adding a page only opens further keys,
    // deleting one leaves every stored text under its key
    m_pageBar = new QtPageBar(page);
    connect(m_pageBar, SIGNAL(signalChangePage(int)), this, SLOT(SltMultiChangePage(int)));

    QHBoxLayout *bottom = new QHBoxLayout();
    bottom->setContentsMargins(0, 0, 0, 0);
    bottom->setSpacing(5);
    bottom->addWidget(btnClear);
    bottom->addWidget(m_pageBar, 1);

    QVBoxLayout *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addLayout(grid, 1);
    layout->addLayout(bottom);

    m_stackedWidget->addWidget(page);
    m_pages.insert(MultiPage, page);
}

void QtSendBoxWidget::InitProtocolPage()
{
    // a reserved place; no owner offers it yet
    QWidget *page = new QWidget(this);
    page->setObjectName("widgetSendProtocol");
    m_stackedWidget->addWidget(page);
    m_pages.insert(ProtocolPage, page);
}

void QtSendBoxWidget::setCurrentPage(int index)
{
    if (!m_pages.contains(index))
        return;
    m_currentPage = index;
    m_stackedWidget->setCurrentWidget(m_pages.value(index));
}

void QtSendBoxWidget::setNewline(bool bCheck)
{
    m_sendNewLine = bCheck;
}

void QtSendBoxWidget::setHexSend(int index)
{
    m_hexSend = (index == 1);
}

void QtSendBoxWidget::setDeviceStatus(bool open)
{
    m_deviceOpen = open;
    if (m_btnSend)
        m_btnSend->setEnabled(open);
}

void QtSendBoxWidget::setAutoInterval(int msec)
{
    if (msec < 1)
        return;
    m_autoTimer->setInterval(msec);
}

int QtSendBoxWidget::multiKey(int row) const
{
    const int page = m_pageBar ? m_pageBar->currentPage() : 1;
    return (page - 1) * 10 + row + 1;
}

QByteArray QtSendBoxWidget::makeSendData(const QString &text, bool hexSend, bool sendNewLine)
{
    QString str = text;
    str.replace("\n", "\r\n");
    QByteArray bytes = hexSend ? NumberTool::hexStrToByteArray(str) : MyApp::strToUnicode(str);
    if (sendNewLine)
        bytes.append(NumberTool::m_newLine);
    return bytes;
}

void QtSendBoxWidget::stopAutoSend()
{
    m_autoTimer->stop();
    if (m_chkAutoSend)
        m_chkAutoSend->setChecked(false);
}

void QtSendBoxWidget::SendDataToDevice(QString text)
{
    if (!m_deviceOpen) {
        // stop first, so that the ticks queued behind a modal box find the timer off
        stopAutoSend();
        QtMessageBox::warning("请确认通信设备是否打开?", "告警");
        return;
    }
    emit signalSendData(makeSendData(text, m_hexSend, m_sendNewLine));
}

void QtSendBoxWidget::showEmptyTip(QWidget *edit)
{
    QtMessageTip::Instance()->ShowMessage("请输入需要发送的数据", edit->mapToGlobal(QPoint(0, 10)));
}

void QtSendBoxWidget::SltSingleSendPage()
{
    if (!m_edtSend)
        return;
    const QString text = m_edtSend->toPlainText();
    if (text.isEmpty()) {
        showEmptyTip(m_edtSend);
        return;
    }
    if (!m_sentList.contains(text)) {
        m_sentList.append(text);
        m_cbxHistory->addItem(text);
    }
    SendDataToDevice(text);
}

void QtSendBoxWidget::SltMultiBtnClicked(int index)
{
    if (index < 0 || index > 9 || !m_edtMulti[index])
        return;
    const QString text = m_edtMulti[index]->text();
    if (text.isEmpty()) {
        showEmptyTip(m_edtMulti[index]);
        return;
    }
    m_multiData[multiKey(index)] = text;
    SendDataToDevice(text);
}

void QtSendBoxWidget::SltMultiEditFinished()
{
    QLineEdit *edit = qobject_cast<QLineEdit *>(sender());
    if (!edit)
        return;
    const int row = edit->property("id").toInt();
    // an emptied row keeps its stored text: only "清除重填" removes texts
    if (!edit->text().isEmpty())
        m_multiData[multiKey(row)] = edit->text();
}

void QtSendBoxWidget::SltMultiChangePage(int index)
{
    const int base = (index - 1) * 10;
    for (int i = 0; i < 10; ++i) {
        if (!m_edtMulti[i])
            return;
        m_btnMulti[i]->setText(QString::number(base + i + 1));
        m_edtMulti[i]->setText(m_multiData.value(base + i + 1));
    }
}

void QtSendBoxWidget::SltClearMultiEdit()
{
    if (!m_pageBar)
        return;
    // keys base .. base+9, one below the rows' own keys: the tenth row keeps its
    // text and the page before loses its tenth; users' lists depend on this
    const int base = (m_pageBar->currentPage() - 1) * 10;
    for (int i = 0; i < 10; ++i) {
        m_edtMulti[i]->clear();
        m_multiData.remove(base + i);
    }
}

void QtSendBoxWidget::setAutoSend(bool bCheck)
{
    if (m_deviceOpen && bCheck) {
        if (m_currentPage == MultiPage)
            m_autoRow = 0;
        m_autoTimer->start();
    } else if (!m_deviceOpen && bCheck) {
        QtMessageBox::warning("请确认通信设备是否打开?", "告警");
        stopAutoSend();
    } else {
        m_autoTimer->stop();
    }
}

void QtSendBoxWidget::SltAutoSendData()
{
    if (m_currentPage == SinglePage) {
        const QString text = m_edtSend->toPlainText();
        if (!text.isEmpty()) {
            SendDataToDevice(text);
        } else {
            showEmptyTip(m_edtSend);
            stopAutoSend();
        }
    } else if (m_currentPage == MultiPage) {
        // one row per tick; the tick after the last filled row only restarts the cycle
        const int start = (m_autoRow >= 0 && m_autoRow <= 9) ? m_autoRow : 0;
        for (int row = start; row < 10; ++row) {
            m_autoRow = row + 1;
            const QString text = m_edtMulti[row]->text();
            if (!text.isEmpty()) {
                m_edtMulti[row]->setFocus(Qt::OtherFocusReason);
                SendDataToDevice(text);
                return;
            }
        }
    }
}

void QtSendBoxWidget::SltLoadDataFile()
{
    QtFileDialog dialog(this);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setNameFilter("文本文件(*.txt);;所有文件(*.*)");
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QStringList files = dialog.selectedFiles();
    if (files.isEmpty() || files.first().isEmpty())
        return;
    loadDataFile(files.first());
}

bool QtSendBoxWidget::loadDataFile(const QString &path)
{
    m_strLoadFile = path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        QtMessageTip::Instance()->ShowToastMessage("文件加载失败!", 2000);
        return false;
    }
    QTextStream in(&file);
    in.setCodec(MyApp::getTextCodec().constData());
    const QString text = in.readAll();
    file.close();
    if (m_edtSend)
        m_edtSend->setPlainText(text);
    return true;
}

void QtSendBoxWidget::LoadQuitSendMsg(const QString &path)
{
    const QStringList words = QtSendBoxFiles::readHistory(path);
    if (m_cbxHistory && !words.isEmpty())
        m_cbxHistory->addItems(words);
}

void QtSendBoxWidget::SaveQuitSendMsg()
{
    if (!m_cbxHistory || m_cbxHistory->count() == 0)
        return; // an existing file keeps its old content
    QStringList entries;
    for (int i = 0; i < m_cbxHistory->count(); ++i)
        entries << m_cbxHistory->itemText(i);
    QtSendBoxFiles::writeHistory(m_strHistoryFile, entries);
}

void QtSendBoxWidget::LoadMultiConfigData(const QString &path)
{
    const QMap<int, QString> data = QtSendBoxFiles::readMultiConfig(path);
    for (auto it = data.constBegin(); it != data.constEnd(); ++it)
        m_multiData[it.key()] = it.value();
    if (!m_multiData.isEmpty())
        SltMultiChangePage(m_pageBar->currentPage());
}

void QtSendBoxWidget::SaveMultiConfigData()
{
    // clearing every row does not clear the file
    if (m_multiData.isEmpty())
        return;
    QtSendBoxFiles::writeMultiConfig(multiConfigFile(), m_multiData);
}
