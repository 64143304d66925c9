#include "ImageFormatConfig.h"
#include "DataManagerWidget.h"
#include "QtMessageTip.h"
#include "QtPageBar.h"
#include "RegisterObj.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegExpValidator>
#include <QStandardItemModel>
#include <QTimer>
#include <QVBoxLayout>

// Rows 0 to 7 write, 8 to 11 read; a row's fields are the line edits 2k and 2k + 1.
static const int s_nWriteRows = 8;
static const int s_nReadRows = 4;
static const int s_nRows = s_nWriteRows + s_nReadRows;
static const int s_nFirstReadField = 2 * s_nWriteRows;

static QString twoDigits(int number)
{
    return QString("%1").arg(number, 2, 10, QChar('0'));
}

ImageFormatConfig::ImageFormatConfig(QWidget *parent)
    : QWidget(parent)
    , m_lineEdits{}
    , m_sendButtons{}
    , m_btnGroup(nullptr)
    , m_rbWrite(nullptr)
    , m_rbRead(nullptr)
    , m_rwGroup(nullptr)
    , m_pageBar(nullptr)
    , m_writePage(1)
    , m_writeMaxPage(5)
    , m_readPage(1)
    , m_readMaxPage(5)
    , m_model(nullptr)
    , m_dataManager(nullptr)
    , m_autoTimer(nullptr)
    , m_nAutoIndex(0)
{
    InitWidget();
}

ImageFormatConfig::~ImageFormatConfig()
{
    // the editor is a window of its own and only borrows the model
    delete m_dataManager;
    qDeleteAll(m_writeRegs);
    qDeleteAll(m_readRegs);
}

QSize ImageFormatConfig::sizeHint() const
{
    return QSize(680, 180);
}

void ImageFormatConfig::InitWidget()
{
    m_btnGroup = new QButtonGroup(this);
    for (int i = 0; i < 2 * s_nRows; ++i) {
        QLineEdit *edit = new QLineEdit(this);
        edit->setProperty("id", i);
        edit->setMinimumWidth(80);
        edit->setValidator(new QRegExpValidator(QRegExp("[0-9A-Fa-f]{2,8}"), edit));
        // the board fills the read values
        edit->setReadOnly(i > s_nFirstReadField && (i % 2) == 1);
        connect(edit, SIGNAL(textChanged(QString)), this, SLOT(SltLineEditChanged(QString)));
        m_lineEdits[i] = edit;
    }
    for (int row = 0; row < s_nRows; ++row) {
        const int number = row < s_nWriteRows ? row + 1 : row - s_nWriteRows + 1;
        QPushButton *btn = new QPushButton(twoDigits(number), this);
        btn->setObjectName(QString("btnSendReg%1").arg(row));
        m_btnGroup->addButton(btn, row);
        m_sendButtons[row] = btn;
    }
    connect(m_btnGroup, SIGNAL(buttonClicked(int)), this, SLOT(SltButtonGroupClicked(int)));

    QHBoxLayout *gridsLayout = new QHBoxLayout();
    gridsLayout->setContentsMargins(10, 10, 10, 10);
    gridsLayout->setSpacing(20);
    for (int g = 0; g < 3; ++g) {
        const bool read = (g == 2);
        QGridLayout *grid = new QGridLayout();
        grid->setSpacing(5);
        grid->addWidget(new QLabel(read ? "读寄存器地址" : "写寄存器地址", this), 0, 0);
        grid->addWidget(new QLabel(read ? "读寄存器值" : "写寄存器值", this), 0, 1);
        for (int r = 0; r < 4; ++r) {
            const int row = g * 4 + r;
            grid->addWidget(m_lineEdits[2 * row], r + 1, 0);
            grid->addWidget(m_lineEdits[2 * row + 1], r + 1, 1);
            grid->addWidget(m_sendButtons[row], r + 1, 2);
        }
        gridsLayout->addLayout(grid);
    }

    QPushButton *btnMulti = new QPushButton("多项管理", this);
    btnMulti->setObjectName("btnMultiManage");
    connect(btnMulti, SIGNAL(clicked()), this, SLOT(SltBtnMultiClicked()));

    m_rbWrite = new QRadioButton("写", this);
    m_rbRead = new QRadioButton("读", this);
    m_rbWrite->setChecked(true);
    m_rwGroup = new QButtonGroup(this);
    m_rwGroup->addButton(m_rbWrite, 0);
    m_rwGroup->addButton(m_rbRead, 1);
    connect(m_rwGroup, SIGNAL(buttonClicked(int)), this, SLOT(SltChangeRWType(int)));

    m_pageBar = new QtPageBar(this);
    connect(m_pageBar, SIGNAL(signalChangePage(int)), this, SLOT(SltMultiChangePage(int)));
    connect(m_pageBar, SIGNAL(addPage(int)), this, SLOT(SltAddDataPage(int)));
    connect(m_pageBar, SIGNAL(deletePage(int,int)), this, SLOT(SltDeletPage(int,int)));

    QHBoxLayout *barLayout = new QHBoxLayout();
    barLayout->addStretch();
    barLayout->addWidget(btnMulti);
    barLayout->addWidget(m_rbWrite);
    barLayout->addWidget(m_rbRead);
    barLayout->addWidget(m_pageBar);

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    layout->addLayout(gridsLayout);
    layout->addLayout(barLayout);

    m_model = new QStandardItemModel(this);
    m_dataManager = new DataManagerWidget("寄存器多项管理");
    m_dataManager->setDataModel(m_model);
    m_dataManager->hide();
    connect(m_dataManager, SIGNAL(signalChangePage(int)), this, SLOT(SltChangeDataPage(int)));
    connect(m_dataManager, SIGNAL(signalRefreshData(int)), this, SLOT(SltRefreshRegData(int)));

    m_autoTimer = new QTimer(this);
    m_autoTimer->setInterval(1000);
    connect(m_autoTimer, SIGNAL(timeout()), this, SLOT(sltAutoSendData()));
}

void ImageFormatConfig::setAutoSend(bool bOk)
{
    if (bOk) {
        m_nAutoIndex = 0;
        m_autoTimer->start();
    } else {
        m_autoTimer->stop();
    }
    for (int i = 0; i < s_nFirstReadField; ++i)
        m_lineEdits[i]->setReadOnly(bOk);
    m_rbWrite->setEnabled(!bOk);
    m_rbRead->setEnabled(!bOk);
}

void ImageFormatConfig::setAutoSendDelay(int delay)
{
    if (m_autoTimer->interval() != delay)
        m_autoTimer->setInterval(delay);
}

// The index moves on before the row is sent, so row 0 of the page the run starts on is
// never sent, while every later page is sent from row 0. Boards are set up by runs
// that count on this order.
void ImageFormatConfig::sltAutoSendData()
{
    m_lineEdits[2 * m_nAutoIndex]->setFocus();
    ++m_nAutoIndex;
    if (m_writePage == m_writeMaxPage) {
        if (m_nAutoIndex > s_nWriteRows - 1) {
            setAutoSend(false);
            emit autoSendFinished();
            return;
        }
    } else if (m_nAutoIndex > s_nWriteRows - 1) {
        m_nAutoIndex = 0;
        m_pageBar->SltNextPage();
    }

    const QString addr = m_lineEdits[2 * m_nAutoIndex]->text();
    const QString value = m_lineEdits[2 * m_nAutoIndex + 1]->text();
    if (!addr.isEmpty() && !value.isEmpty())
        emit signalReadWriteReg(addr, value, 0);
}

void ImageFormatConfig::SltButtonGroupClicked(int index)
{
    if (m_autoTimer->isActive()) {
        QtMessageTip::Instance()->ShowToastMessage("自动发送数据中，如需手动，请先关闭自动发送！", 2000);
        return;
    }

    QLineEdit *edtAddr = m_lineEdits[2 * index];
    QLineEdit *edtValue = m_lineEdits[2 * index + 1];
    if (edtAddr->text().isEmpty()) {
        QtMessageTip::Instance()->ShowMessage("请填写正确的寄存器地址",
                                              edtAddr->mapToGlobal(edtAddr->rect().bottomLeft()));
        return;
    }
    if (index >= s_nWriteRows) {
        // the id the answer comes back with, so SetRegValue finds the row
        const int regId = (index & 3) + m_readPage * 4 - 3;
        emit signalReadWriteReg(edtAddr->text(), QString(""), regId);
        return;
    }
    if (edtValue->text().isEmpty()) {
        QtMessageTip::Instance()->ShowMessage("请填写正确的寄存器值",
                                              edtValue->mapToGlobal(edtValue->rect().bottomLeft()));
        return;
    }
    emit signalReadWriteReg(edtAddr->text(), edtValue->text(), 0);
}

void ImageFormatConfig::SltLineEditChanged(const QString &strText)
{
    // clearing a field never touches a register: it comes back with the next page
    if (strText.isEmpty())
        return;
    QLineEdit *edit = qobject_cast<QLineEdit *>(sender());
    if (!edit)
        return;

    const int e = edit->property("id").toInt();
    // the page of whichever list the bar shows now
    const int page = m_pageBar->currentPage();
    QMap<int, RegisterObj *> &regs = (e > 15) ? m_readRegs : m_writeRegs;
    const int id = (e > 15) ? (e - 16) / 2 + page * 4 - 3 : e / 2 + page * 8 - 7;
    const bool isValue = (e % 2) == 1;

    RegisterObj *reg = regs.value(id, nullptr);
    if (reg) {
        if (isValue)
            reg->setValue(int(strText.toUInt(nullptr, 16)));
        else
            reg->setAddr(strText.toUInt(nullptr, 16));
        return;
    }
    reg = new RegisterObj(id);
    const QString partner = m_lineEdits[e ^ 1]->text();
    reg->setAddr((isValue ? partner : strText).toUInt(nullptr, 16));
    reg->setValue(int((isValue ? strText : partner).toUInt(nullptr, 16)));
    regs.insert(id, reg);
}

// Each setText runs SltLineEditChanged, so the shown texts are written back into the
// registers: a value with bit 31 set shows sixteen digits, which do not convert back,
// and the register then holds 0.
void ImageFormatConfig::setWriteRegValue(int page)
{
    for (int row = 0; row < s_nWriteRows; ++row) {
        RegisterObj *reg = m_writeRegs.value((page - 1) * s_nWriteRows + row + 1, nullptr);
        m_lineEdits[2 * row]->setText(reg ? reg->strAddr(16) : QString(""));
        m_lineEdits[2 * row + 1]->setText(reg ? reg->strValue(16) : QString(""));
    }
}

void ImageFormatConfig::setReadRegValue(int page)
{
    for (int k = 0; k < s_nReadRows; ++k) {
        const int row = s_nWriteRows + k;
        RegisterObj *reg = m_readRegs.value((page - 1) * s_nReadRows + k + 1, nullptr);
        m_lineEdits[2 * row]->setText(reg ? reg->strAddr(16) : QString(""));
        m_lineEdits[2 * row + 1]->setText(reg ? reg->strValue(16) : QString(""));
    }
}

void ImageFormatConfig::SltMultiChangePage(int index)
{
    if (index < 1)
        return;
    if (m_rbWrite->isChecked()) {
        m_writePage = index;
        setWriteRegValue(index);
        for (int row = 0; row < s_nWriteRows; ++row)
            m_sendButtons[row]->setText(twoDigits((index - 1) * s_nWriteRows + row + 1));
    } else {
        m_readPage = index;
        setReadRegValue(index);
        for (int k = 0; k < s_nReadRows; ++k)
            m_sendButtons[s_nWriteRows + k]->setText(twoDigits((index - 1) * s_nReadRows + k + 1));
    }
}

void ImageFormatConfig::SltAddDataPage(int maxPage)
{
    if (m_rbWrite->isChecked())
        m_writeMaxPage = maxPage;
    else
        m_readMaxPage = maxPage;
}

void ImageFormatConfig::SltDeletPage(int curr, int max)
{
    if (m_rbWrite->isChecked()) {
        m_writePage = curr;
        m_writeMaxPage = max;
    } else {
        m_readPage = curr;
        m_readMaxPage = max;
    }
}

void ImageFormatConfig::SltChangeRWType(int index)
{
    if (index == 0)
        m_pageBar->setPageIndex(m_writePage, m_writeMaxPage);
    else
        m_pageBar->setPageIndex(m_readPage, m_readMaxPage);
}

void ImageFormatConfig::SetRegValue(unsigned short regId, unsigned int value)
{
    RegisterObj *reg = m_readRegs.value(regId, nullptr);
    if (!reg)
        return;
    reg->setValue(int(value));
    // an answer for a page not on screen waits in the register for its page
    if (regId >= 1 && (regId - 1) / s_nReadRows + 1 == m_readPage)
        m_lineEdits[s_nFirstReadField + 2 * ((regId - 1) % s_nReadRows) + 1]->setText(reg->strValue(16));
}

void ImageFormatConfig::SltClearInput()
{
    for (QLineEdit *edit : m_lineEdits)
        edit->clear();
}

void ImageFormatConfig::SltBtnMultiClicked()
{
    m_dataManager->show();
    SltChangeDataPage(m_dataManager->currentPage());
    m_dataManager->setModelConfig();
}

void ImageFormatConfig::setModelHeader()
{
    m_model->clear();
    m_model->setHorizontalHeaderLabels(QStringList() << "寄存器编号" << "寄存器地址" << "寄存器值" << "描述");
}

void ImageFormatConfig::SltChangeDataPage(int index)
{
    setModelHeader();
    const QMap<int, RegisterObj *> &regs = (index == 0) ? m_writeRegs : m_readRegs;
    m_model->setRowCount(index == 0 ? m_writeMaxPage * s_nWriteRows : m_readMaxPage * s_nReadRows);
    // key order into consecutive rows: gaps in the ids close up
    int row = 0;
    for (RegisterObj *reg : regs)
        addRegisterData(row++, reg);
}

void ImageFormatConfig::addRegisterData(int row, RegisterObj *reg)
{
    m_model->setData(m_model->index(row, 0), QString::number(reg->id()), Qt::EditRole);
    m_model->setData(m_model->index(row, 1), reg->strAddr(16), Qt::EditRole);
    m_model->setData(m_model->index(row, 2), reg->strValue(16), Qt::EditRole);
    m_model->setData(m_model->index(row, 3), reg->description(), Qt::EditRole);
}

// The write list never takes a register at address 0 or without id from the table;
// the read list takes every row, so blank rows land on a register of id 0. Rows gone
// from the table leave their registers: the lists only grow.
void ImageFormatConfig::SltRefreshRegData(int index)
{
    QMap<int, RegisterObj *> &regs = (index == 0) ? m_writeRegs : m_readRegs;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const int id = int(m_model->index(row, 0).data().toString().toUInt(nullptr, 10));
        const unsigned int addr = m_model->index(row, 1).data().toString().toUInt(nullptr, 16);
        const int value = int(m_model->index(row, 2).data().toString().toUInt(nullptr, 16));
        const QString description = m_model->index(row, 3).data().toString();
        if (index == 0 && (addr == 0 || id == 0))
            continue;
        RegisterObj *reg = regs.value(id, nullptr);
        if (!reg) {
            reg = new RegisterObj(id);
            regs.insert(id, reg);
        }
        reg->setAddr(addr);
        reg->setValue(value);
        reg->setDescription(description);
    }
    if (index == 0)
        setWriteRegValue(m_pageBar->currentPage());
    else
        setReadRegValue(m_pageBar->currentPage());
}

void ImageFormatConfig::setRowIndex()
{
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        m_model->setData(index, QString::number(row + 1));
        m_model->setData(index, int(Qt::AlignCenter), Qt::TextAlignmentRole);
    }
}
