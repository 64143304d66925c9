#include "PlotDefinitionDialog.h"
#include "PlotDefinitionFormDialog.h"
#include "PlotWindow.h"
#include "QtMessageBox.h"
#include "QtTitleBar.h"

#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

PlotDefinitionDialog::PlotDefinitionDialog(const PlotFrameDefinition &definition, QWidget *parent)
    : QDialog(parent)
    , m_definition(definition)
    , m_edtJson(new QPlainTextEdit(this))
    , m_labError(new QLabel(this))
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    resize(560, 620);
    QtTitleBar *titleBar = new QtTitleBar(this, QtTitleBar::QtWindowNoFlag);
    titleBar->setWinTitle("帧定义");
    connect(titleBar, SIGNAL(signalCloseWindow()), this, SLOT(reject()));

    m_edtJson->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_edtJson->setPlainText(QString::fromUtf8(definition.toJson()));
    QLabel *help = new QLabel("start/end：十六进制；length.mode：fixed(bytes)、field(offset,size,endian,counts=frame|after-field|payload)、end；"
                              "checksum.type：none sum8 xor8 crc8 crc16-modbus crc16-ccitt crc32，from 起点，at 位置或 end；"
                              "通道 type：u8 i8 u16 i16 u32 i32 f32 f64，值 = 原始值 × scale + add",
                              this);
    help->setWordWrap(true);
    m_labError->setObjectName("labDefinitionError");
    m_labError->setStyleSheet("color: #ff5555;");
    m_labError->setWordWrap(true);

    QPushButton *btnSave = new QPushButton("另存为…", this);
    connect(btnSave, SIGNAL(clicked()), this, SLOT(SltSaveAs()));
    QPushButton *btnForm = new QPushButton("表单编辑…", this);
    btnForm->setObjectName("btnDefinitionForm");
    btnForm->setShortcut(QKeySequence("Ctrl+E"));
    btnForm->setToolTip("用表单编辑这个定义 (Ctrl+E)");
    connect(btnForm, SIGNAL(clicked()), this, SLOT(SltEditAsForm()));
    QPushButton *btnOk = new QPushButton("确定", this);
    connect(btnOk, SIGNAL(clicked()), this, SLOT(accept()));
    QPushButton *btnCancel = new QPushButton("取消", this);
    connect(btnCancel, SIGNAL(clicked()), this, SLOT(reject()));
    QHBoxLayout *buttons = new QHBoxLayout;
    buttons->addWidget(btnSave);
    buttons->addWidget(btnForm);
    buttons->addStretch(1);
    buttons->addWidget(btnOk);
    buttons->addWidget(btnCancel);

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 6);
    layout->addWidget(titleBar);
    layout->addWidget(help);
    layout->addWidget(m_edtJson, 1);
    layout->addWidget(m_labError);
    layout->addLayout(buttons);
}

bool PlotDefinitionDialog::check()
{
    QString error;
    PlotFrameDefinition def;
    if (!PlotFrameDefinition::fromJson(m_edtJson->toPlainText().toUtf8(), &def, &error)) {
        m_labError->setText(error);
        return false;
    }
    m_labError->clear();
    m_definition = def;
    return true;
}

void PlotDefinitionDialog::accept()
{
    if (check())
        QDialog::accept();
}

void PlotDefinitionDialog::SltSaveAs()
{
    if (!check())
        return;
    QString path = QFileDialog::getSaveFileName(this, "保存帧定义", PlotWindow::definitionFolder(), "帧定义 (*.json)",
                                                nullptr, QFileDialog::DontUseNativeDialog);
    if (path.isEmpty())
        return;
    if (!path.endsWith(".json", Qt::CaseInsensitive))
        path += ".json";
    QString error;
    if (!m_definition.save(path, &error))
        QtMessageBox::warning(error);
}

// the form edits what the text says now; its result replaces the text, which stays
// the definition's one source until "确定"
void PlotDefinitionDialog::SltEditAsForm()
{
    if (!check())
        return;
    PlotDefinitionFormDialog form(m_definition, this);
    if (form.exec() != QDialog::Accepted)
        return;
    m_definition = form.definition();
    m_edtJson->setPlainText(QString::fromUtf8(m_definition.toJson()));
}
