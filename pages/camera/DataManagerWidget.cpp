#include "DataManagerWidget.h"
#include "QtFileDialog.h"
#include "QtMessageBox.h"
#include "QtMessageTip.h"
#include "QtTabBar.h"
#include "QtTitleBar.h"
#include "RegisterTableFile.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

static const int s_nDefaultRows = 50;
static const char *s_fileFilter = "*.csv;;*.txt";

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
        setModel(RegisterTableFile::headers());
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
    if (!RegisterTableFile::save(path, m_model)) {
        QtMessageBox::warning("文件打开失败，请重试！");
        return;
    }
    QtMessageTip::Instance()->ShowToastMessage("文件导出成功！", 2000);
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
    if (!RegisterTableFile::load(path, m_model)) {
        QtMessageBox::warning("文件打开失败，请重试！");
        return;
    }
    QtMessageTip::Instance()->ShowToastMessage("数据导入完成！！", 2000);
}
