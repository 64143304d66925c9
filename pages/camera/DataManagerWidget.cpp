#include "DataManagerWidget.h"
#include "QtFileDialog.h"
#include "QtMessageBox.h"
#include "QtMessageTip.h"
#include "QtTabBar.h"
#include "QtTitleBar.h"

#include <QButtonGroup>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTextStream>
#include <QVBoxLayout>

static const int s_nDefaultRows = 50;
static const char *s_fileFilter = "*.csv;;*.txt";
static const char *s_fileCodec = "GB18030";

static QStringList tableHeaders()
{
    return QStringList() << "寄存器编号" << "寄存器地址" << "寄存器值" << "描述";
}

DataManagerWidget::DataManagerWidget(const QString &title, QWidget *parent)
    : QtWidgetBase(parent)
    , m_titleBar(nullptr)
    , m_tabBar(nullptr)
    , m_tableView(nullptr)
    , m_btnGroup(nullptr)
    , m_model(nullptr)
    , m_nCurrentPage(0)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    resize(600, 458);
    InitWidget(title);
}

void DataManagerWidget::InitWidget(const QString &title)
{
    m_titleBar = new QtTitleBar(this, QtTitleBar::QtWindowNoFlag);
    m_titleBar->setWinTitle(title);
    connect(m_titleBar, SIGNAL(signalCloseWindow()), this, SLOT(hide()));

    m_tabBar = new QtTabBar(this);
    m_tabBar->setTabTitles(QStringList() << "    写管理   " << "    读管理    ");
    connect(m_tabBar, SIGNAL(signalClicked(int)), this, SLOT(SltChangePage(int)));

    m_tableView = new QTableView(this);
    m_tableView->verticalHeader()->setVisible(false);
    m_tableView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_tableView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_tableView->setFocusPolicy(Qt::NoFocus);

    QHBoxLayout *btnLayout = new QHBoxLayout();
    btnLayout->setContentsMargins(0, 0, 0, 0);
    btnLayout->setSpacing(10);
    btnLayout->addStretch();
    m_btnGroup = new QButtonGroup(this);
    const QStringList texts = QStringList() << "清空" << "导入" << "导出" << "确定" << "取消";
    for (int i = 0; i < texts.size(); ++i) {
        QPushButton *btn = new QPushButton(texts.at(i), this);
        m_btnGroup->addButton(btn, i);
        btnLayout->addWidget(btn);
    }
    connect(m_btnGroup, SIGNAL(buttonClicked(int)), this, SLOT(SltButtonClicked(int)));

    QVBoxLayout *bodyLayout = new QVBoxLayout();
    bodyLayout->setContentsMargins(10, 10, 10, 10);
    bodyLayout->setSpacing(10);
    bodyLayout->addWidget(m_tableView, 1);
    bodyLayout->addLayout(btnLayout);

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);
    layout->addWidget(m_tabBar);
    layout->addLayout(bodyLayout, 1);
}

void DataManagerWidget::setDataModel(QStandardItemModel *model)
{
    m_model = model;
    m_tableView->setModel(m_model);
}

void DataManagerWidget::checkModel()
{
    if (m_model)
        return;
    m_model = new QStandardItemModel(s_nDefaultRows, 0, this);
    m_tableView->setModel(m_model);
}

void DataManagerWidget::stretchLastColumn()
{
    const int columns = m_model ? m_model->columnCount() : 0;
    if (columns > 0)
        m_tableView->horizontalHeader()->setSectionResizeMode(columns - 1, QHeaderView::Stretch);
}

void DataManagerWidget::setModelConfig()
{
    checkModel();
    m_tableView->setModel(m_model);
    m_tableView->setColumnWidth(0, 100);
    stretchLastColumn();
}

void DataManagerWidget::setModel(const QStringList &headers)
{
    checkModel();
    m_model->setColumnCount(headers.size());
    m_model->setHorizontalHeaderLabels(headers);
    m_tableView->setColumnWidth(0, 100);
    stretchLastColumn();
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        m_model->setData(index, QString("%1").arg(row + 1));
        m_model->setData(index, int(Qt::AlignCenter), Qt::TextAlignmentRole);
    }
}

void DataManagerWidget::SltChangePage(int index)
{
    if (index == m_nCurrentPage)
        return;
    m_nCurrentPage = index;
    // the owner fills the model with the other list before the columns are laid out
    emit signalChangePage(index);
    if (m_model && m_model->columnCount() > 2)
        stretchLastColumn();
}

void DataManagerWidget::SltButtonClicked(int index)
{
    switch (index) {
    case 0:
        checkModel();
        m_model->clear();
        m_model->setRowCount(s_nDefaultRows);
        setModel(tableHeaders());
        break;
    case 1:
        InpportData();
        break;
    case 2:
        ExportData();
        break;
    case 3:
        emit signalRefreshData(m_nCurrentPage);
        hide();
        break;
    case 4:
        hide();
        break;
    default:
        break;
    }
}

void DataManagerWidget::ExportData()
{
    QtFileDialog dialog(this);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(s_fileFilter);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString path = dialog.exitfile();
    if (path.isEmpty())
        return;

    checkModel();
    const int rows = m_model->rowCount();
    const int columns = m_model->columnCount();

    // No truncation: a longer file that is written over keeps its old tail behind the
    // new lines, and a later import reads that tail too. Users' files depend on it.
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) {
        QtMessageBox::warning("文件打开失败，请重试！");
        return;
    }
    QTextStream out(&file);
    out.setCodec(s_fileCodec);
    for (const QString &header : tableHeaders())
        out << header << ",";
    out << Qt::endl;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            out << m_model->index(row, column).data(Qt::DisplayRole).toString() << ",";
        out << Qt::endl;
    }
    file.close();
    QtMessageTip::Instance()->ShowToastMessage("文件导出成功！", 2000);
}

void DataManagerWidget::readTable(QIODevice &file, QAbstractItemModel *model)
{
    QTextStream in(&file);
    in.setCodec(s_fileCodec);
    // the header line, never looked at: a file without one loses its first row
    in.readLine();
    // every line takes its row, also one too short to fill it, so rows stay where the
    // file has them; rows past the model's end fall away
    for (int row = 0; !in.atEnd(); ++row) {
        const QStringList fields = in.readLine().split(',', Qt::KeepEmptyParts);
        if (fields.size() < 4)
            continue;
        for (int column = 0; column < 4; ++column)
            model->setData(model->index(row, column), fields.at(column), Qt::EditRole);
    }
}

void DataManagerWidget::InpportData()
{
    QtFileDialog dialog(this);
    dialog.setNameFilter(s_fileFilter);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QStringList files = dialog.selectedFiles();
    const QString path = files.isEmpty() ? QString() : files.first();
    if (path.isEmpty())
        return;

    checkModel();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        QtMessageBox::warning("文件打开失败，请重试！");
        return;
    }
    readTable(file, m_model);
    file.close();
    QtMessageTip::Instance()->ShowToastMessage("数据导入完成！！", 2000);
}
