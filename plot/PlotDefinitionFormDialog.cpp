#include "PlotDefinitionFormDialog.h"
#include "QtTitleBar.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
enum Column { ColName, ColOffset, ColType, ColEndian, ColScale, ColAdd, Columns };
const QStringList s_endians{"小端", "大端"};
const int s_lengthSizes[] = {1, 2, 4};
}

PlotDefinitionFormDialog::PlotDefinitionFormDialog(const PlotFrameDefinition &definition, QWidget *parent)
    : QDialog(parent)
    , m_definition(definition)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    resize(720, 680);
    InitWidget();
    setForm(PlotDefinitionForm::fromDefinition(definition));
}

QComboBox *PlotDefinitionFormDialog::choice(const QStringList &items)
{
    QComboBox *box = new QComboBox(this);
    box->addItems(items);
    connect(box, SIGNAL(currentIndexChanged(int)), this, SLOT(SltChanged()));
    return box;
}

QSpinBox *PlotDefinitionFormDialog::spin(int min, int max)
{
    QSpinBox *box = new QSpinBox(this);
    box->setRange(min, max);
    connect(box, SIGNAL(valueChanged(int)), this, SLOT(SltChanged()));
    return box;
}

void PlotDefinitionFormDialog::InitWidget()
{
    QtTitleBar *titleBar = new QtTitleBar(this, QtTitleBar::QtWindowNoFlag);
    titleBar->setWinTitle("帧定义（表单）");
    connect(titleBar, SIGNAL(signalCloseWindow()), this, SLOT(reject()));

    m_edtName = new QLineEdit(this);
    m_edtStart = new QLineEdit(this);
    m_edtStart->setObjectName("edtFormStart");
    m_edtStart->setPlaceholderText("如 AA 55");
    m_edtEnd = new QLineEdit(this);
    m_edtEnd->setPlaceholderText("可空，如 0D 0A");
    for (QLineEdit *edit : {m_edtName, m_edtStart, m_edtEnd})
        connect(edit, SIGNAL(textChanged(QString)), this, SLOT(SltChanged()));

    m_cbxLengthMode = choice({"固定长度", "长度字段", "到结束标志"});
    m_spinFixedLength = spin(0, PlotFrameDefinition::MaxFrameLength);
    m_spinLengthOffset = spin(0, PlotFrameDefinition::MaxFrameLength);
    m_cbxLengthSize = choice({"1 字节", "2 字节", "4 字节"});
    m_cbxLengthEndian = choice(s_endians);
    m_cbxLengthCounts = choice({"整帧", "长度字段之后", "数据（不含校验和结束标志）"});
    m_spinMaxLength = spin(1, PlotFrameDefinition::MaxFrameLength);
    m_cbxChecksum = choice({"无", "SUM8", "XOR8", "CRC-8", "CRC-16/MODBUS", "CRC-16/CCITT", "CRC-32"});
    m_spinCheckFrom = spin(0, PlotFrameDefinition::MaxFrameLength);
    m_spinCheckAt = spin(-1, PlotFrameDefinition::MaxFrameLength);
    m_spinCheckAt->setSpecialValueText("帧尾");
    m_cbxCheckEndian = choice(s_endians);

    QGroupBox *frame = new QGroupBox("帧", this);
    QFormLayout *frameForm = new QFormLayout(frame);
    frameForm->addRow("名称", m_edtName);
    frameForm->addRow("起始标志 (HEX)", m_edtStart);
    frameForm->addRow("结束标志 (HEX)", m_edtEnd);

    QGroupBox *length = new QGroupBox("帧长", this);
    QGridLayout *lengthGrid = new QGridLayout(length);
    lengthGrid->addWidget(new QLabel("方式", this), 0, 0);
    lengthGrid->addWidget(m_cbxLengthMode, 0, 1);
    lengthGrid->addWidget(new QLabel("固定帧长", this), 0, 2);
    lengthGrid->addWidget(m_spinFixedLength, 0, 3);
    lengthGrid->addWidget(new QLabel("最大帧长", this), 0, 4);
    lengthGrid->addWidget(m_spinMaxLength, 0, 5);
    lengthGrid->addWidget(new QLabel("长度字段位置", this), 1, 0);
    lengthGrid->addWidget(m_spinLengthOffset, 1, 1);
    lengthGrid->addWidget(new QLabel("字节数", this), 1, 2);
    lengthGrid->addWidget(m_cbxLengthSize, 1, 3);
    lengthGrid->addWidget(new QLabel("字节序", this), 1, 4);
    lengthGrid->addWidget(m_cbxLengthEndian, 1, 5);
    lengthGrid->addWidget(new QLabel("长度计数", this), 2, 0);
    lengthGrid->addWidget(m_cbxLengthCounts, 2, 1, 1, 3);

    QGroupBox *check = new QGroupBox("校验", this);
    QGridLayout *checkGrid = new QGridLayout(check);
    checkGrid->addWidget(new QLabel("方式", this), 0, 0);
    checkGrid->addWidget(m_cbxChecksum, 0, 1);
    checkGrid->addWidget(new QLabel("从第几字节算起", this), 0, 2);
    checkGrid->addWidget(m_spinCheckFrom, 0, 3);
    checkGrid->addWidget(new QLabel("校验值位置", this), 1, 0);
    checkGrid->addWidget(m_spinCheckAt, 1, 1);
    checkGrid->addWidget(new QLabel("字节序", this), 1, 2);
    checkGrid->addWidget(m_cbxCheckEndian, 1, 3);

    m_tabChannels = new QTableWidget(0, Columns, this);
    m_tabChannels->setObjectName("tabFormChannels");
    m_tabChannels->setHorizontalHeaderLabels({"名称", "位置", "类型", "字节序", "比例", "偏移"});
    m_tabChannels->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_tabChannels->verticalHeader()->setDefaultSectionSize(26);
    m_tabChannels->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_tabChannels->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(m_tabChannels, SIGNAL(itemChanged(QTableWidgetItem *)), this, SLOT(SltChanged()));
    QHBoxLayout *rowButtons = new QHBoxLayout;
    const struct {
        const char *text, *name, *slot;
    } buttons[] = {{"添加通道", "btnFormAdd", SLOT(SltAddChannel())},
                   {"删除通道", "btnFormRemove", SLOT(SltRemoveChannel())},
                   {"上移", "btnFormUp", SLOT(SltMoveUp())},
                   {"下移", "btnFormDown", SLOT(SltMoveDown())}};
    for (const auto &b : buttons) {
        QPushButton *btn = new QPushButton(b.text, this);
        btn->setObjectName(b.name);
        connect(btn, SIGNAL(clicked()), this, b.slot);
        rowButtons->addWidget(btn);
    }
    rowButtons->addStretch(1);
    QLabel *formula = new QLabel("值 = 原始值 × 比例 + 偏移；位置从起始标志的第一个字节算起", this);
    rowButtons->addWidget(formula);

    m_labError = new QLabel(this);
    m_labError->setObjectName("labFormError");
    m_labError->setStyleSheet("color: #ff5555;");
    m_labError->setWordWrap(true);
    m_labPreview = new QLabel(this);
    m_labPreview->setObjectName("labFormPreview");
    m_labPreview->setWordWrap(true);
    m_labPreview->setTextInteractionFlags(Qt::TextSelectableByMouse);

    QPushButton *btnOk = new QPushButton("确定", this);
    btnOk->setObjectName("btnFormOk");
    connect(btnOk, SIGNAL(clicked()), this, SLOT(accept()));
    QPushButton *btnCancel = new QPushButton("取消", this);
    connect(btnCancel, SIGNAL(clicked()), this, SLOT(reject()));
    QHBoxLayout *bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(btnOk);
    bottom->addWidget(btnCancel);

    QVBoxLayout *body = new QVBoxLayout;
    body->setContentsMargins(8, 4, 8, 0);
    body->addWidget(frame);
    body->addWidget(length);
    body->addWidget(check);
    body->addWidget(m_tabChannels, 1);
    body->addLayout(rowButtons);
    body->addWidget(m_labPreview);
    body->addWidget(m_labError);
    body->addLayout(bottom);
    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 6);
    layout->addWidget(titleBar);
    layout->addLayout(body, 1);
}

void PlotDefinitionFormDialog::setChannelRow(int row, const PlotDefinitionForm::ChannelRow &channel)
{
    const QString texts[] = {channel.name, channel.offset, QString(), QString(), channel.scale, channel.add};
    for (int col : {ColName, ColOffset, ColScale, ColAdd})
        m_tabChannels->setItem(row, col, new QTableWidgetItem(texts[col]));
    QComboBox *type = choice(PlotFrameDefinition::typeNames());
    type->setCurrentIndex(channel.type);
    QComboBox *endian = choice(s_endians);
    endian->setCurrentIndex(channel.bigEndian ? 1 : 0);
    m_tabChannels->setCellWidget(row, ColType, type);
    m_tabChannels->setCellWidget(row, ColEndian, endian);
}

void PlotDefinitionFormDialog::setForm(const PlotDefinitionForm &f)
{
    m_bFilling = true;
    m_edtName->setText(f.name);
    m_edtStart->setText(f.start);
    m_edtEnd->setText(f.end);
    m_cbxLengthMode->setCurrentIndex(f.lengthMode);
    m_spinFixedLength->setValue(f.fixedLength);
    m_spinLengthOffset->setValue(f.lengthOffset);
    m_cbxLengthSize->setCurrentIndex(f.lengthSize == 4 ? 2 : f.lengthSize == 2 ? 1 : 0);
    m_cbxLengthEndian->setCurrentIndex(f.lengthBigEndian ? 1 : 0);
    m_cbxLengthCounts->setCurrentIndex(f.lengthCounts);
    m_spinMaxLength->setValue(f.maxLength);
    m_cbxChecksum->setCurrentIndex(f.checksum);
    m_spinCheckFrom->setValue(f.checkFrom);
    m_spinCheckAt->setValue(f.checkAt);
    m_cbxCheckEndian->setCurrentIndex(f.checkBigEndian ? 1 : 0);
    m_tabChannels->setRowCount(f.channels.size());
    for (int r = 0; r < f.channels.size(); ++r)
        setChannelRow(r, f.channels.at(r));
    m_bFilling = false;
    SltChanged();
}

PlotDefinitionForm PlotDefinitionFormDialog::form() const
{
    PlotDefinitionForm f;
    f.name = m_edtName->text();
    f.start = m_edtStart->text();
    f.end = m_edtEnd->text();
    f.lengthMode = PlotFrameDefinition::LengthMode(m_cbxLengthMode->currentIndex());
    f.fixedLength = m_spinFixedLength->value();
    f.lengthOffset = m_spinLengthOffset->value();
    f.lengthSize = s_lengthSizes[m_cbxLengthSize->currentIndex()];
    f.lengthBigEndian = m_cbxLengthEndian->currentIndex() == 1;
    f.lengthCounts = PlotFrameDefinition::LengthCounts(m_cbxLengthCounts->currentIndex());
    f.maxLength = m_spinMaxLength->value();
    f.checksum = PlotChecksum::Type(m_cbxChecksum->currentIndex());
    f.checkFrom = m_spinCheckFrom->value();
    f.checkAt = m_spinCheckAt->value();
    f.checkBigEndian = m_cbxCheckEndian->currentIndex() == 1;
    for (int r = 0; r < m_tabChannels->rowCount(); ++r) {
        PlotDefinitionForm::ChannelRow c;
        const auto text = [&](int col) { return m_tabChannels->item(r, col) ? m_tabChannels->item(r, col)->text() : QString(); };
        c.name = text(ColName);
        c.offset = text(ColOffset);
        c.scale = text(ColScale);
        c.add = text(ColAdd);
        c.type = PlotFrameDefinition::ValueType(qobject_cast<QComboBox *>(m_tabChannels->cellWidget(r, ColType))->currentIndex());
        c.bigEndian = qobject_cast<QComboBox *>(m_tabChannels->cellWidget(r, ColEndian))->currentIndex() == 1;
        f.channels.append(c);
    }
    return f;
}

bool PlotDefinitionFormDialog::check()
{
    PlotFrameDefinition def;
    QString error;
    if (!form().toDefinition(&def, &error)) {
        m_labError->setText(error);
        return false;
    }
    m_labError->clear();
    m_labPreview->setText(PlotDefinitionForm::preview(def));
    m_definition = def;
    return true;
}

void PlotDefinitionFormDialog::SltChanged()
{
    if (m_bFilling)
        return;
    // fields of other length modes keep their values but are not in the way
    const int mode = m_cbxLengthMode->currentIndex();
    m_spinFixedLength->setEnabled(mode == PlotFrameDefinition::FixedLength);
    for (QWidget *w : std::initializer_list<QWidget *>{m_spinLengthOffset, m_cbxLengthSize, m_cbxLengthEndian, m_cbxLengthCounts})
        w->setEnabled(mode == PlotFrameDefinition::LengthField);
    const bool checked = m_cbxChecksum->currentIndex() != PlotChecksum::None;
    for (QWidget *w : std::initializer_list<QWidget *>{m_spinCheckFrom, m_spinCheckAt, m_cbxCheckEndian})
        w->setEnabled(checked);
    if (!check())
        m_labPreview->setText("示例帧：—");
}

void PlotDefinitionFormDialog::accept()
{
    if (check())
        QDialog::accept();
}

void PlotDefinitionFormDialog::SltAddChannel()
{
    PlotDefinitionForm f = form();
    if (f.channels.size() >= PlotFrameDefinition::MaxChannels) {
        m_labError->setText(QString("通道数应在 1 到 %1 之间").arg(PlotFrameDefinition::MaxChannels));
        return;
    }
    // the new channel follows the last one in the frame
    bool ok;
    int next = PlotFrameDefinition::hexToBytes(f.start, &ok).size();
    if (!f.channels.isEmpty()) {
        const PlotDefinitionForm::ChannelRow &last = f.channels.last();
        next = last.offset.toInt() + PlotFrameDefinition::typeSize(last.type);
    }
    PlotDefinitionForm::ChannelRow row;
    row.name = QString("CH%1").arg(f.channels.size() + 1);
    row.offset = QString::number(next);
    f.channels.append(row);
    setForm(f);
    m_tabChannels->selectRow(f.channels.size() - 1);
}

void PlotDefinitionFormDialog::SltRemoveChannel()
{
    const int row = m_tabChannels->currentRow();
    if (row < 0)
        return;
    PlotDefinitionForm f = form();
    f.channels.remove(row);
    setForm(f);
    m_tabChannels->selectRow(qMin(row, f.channels.size() - 1));
}

void PlotDefinitionFormDialog::moveChannel(int step)
{
    const int row = m_tabChannels->currentRow();
    PlotDefinitionForm f = form();
    if (row < 0 || row + step < 0 || row + step >= f.channels.size())
        return;
    std::swap(f.channels[row], f.channels[row + step]);
    setForm(f);
    m_tabChannels->selectRow(row + step);
}

void PlotDefinitionFormDialog::SltMoveUp()
{
    moveChannel(-1);
}

void PlotDefinitionFormDialog::SltMoveDown()
{
    moveChannel(1);
}
