#include "QtSendConfigGroup.h"
#include "QtSendBoxWidget.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

QtSendConfigGroup::QtSendConfigGroup(QWidget *parent)
    : QGroupBox("发送区设置", parent)
    , m_sendBox(nullptr)
{
    m_cbxSendOption = new QComboBox(this);
    m_cbxSendOption->setObjectName("cbxSendOption");
    m_cbxSendOption->addItems({"单项发送", "多项发送"});
    m_edtAutoInterval = new QLineEdit("1000", this);
    m_edtAutoInterval->setObjectName("edtAutoInterval");
    m_rbtnSendAscii = new QRadioButton("ASCII", this);
    m_rbtnSendAscii->setObjectName("rbtnSendAscii");
    m_rbtnSendAscii->setChecked(true);
    m_rbtnSendHex = new QRadioButton("HEX", this);
    m_rbtnSendHex->setObjectName("rbtnSendHex");
    auto *format = new QButtonGroup(this);
    format->addButton(m_rbtnSendAscii, 0);
    format->addButton(m_rbtnSendHex, 1);
    m_chkSendNewLine = new QCheckBox("发送新行", this);
    m_chkSendNewLine->setObjectName("chkSendNewLine");
    m_chkAutoSend = new QCheckBox("自动发送", this);
    m_chkAutoSend->setObjectName("chkAutoSend");

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(5, 5, 5, 5);
    grid->setSpacing(5);
    grid->addWidget(new QLabel("发送选项", this), 0, 0);
    grid->addWidget(m_cbxSendOption, 0, 1, 1, 2);
    grid->addWidget(new QLabel("自动发送周期", this), 1, 0);
    grid->addWidget(m_edtAutoInterval, 1, 1);
    grid->addWidget(new QLabel("ms", this), 1, 2);
    grid->addWidget(m_rbtnSendAscii, 2, 0);
    grid->addWidget(m_rbtnSendHex, 2, 1);
    grid->addWidget(m_chkSendNewLine, 3, 0);
    grid->addWidget(m_chkAutoSend, 3, 1);
}

void QtSendConfigGroup::bindSendBox(QtSendBoxWidget *sendBox)
{
    m_sendBox = sendBox;
    m_sendBox->m_chkAutoSend = m_chkAutoSend;
    connect(m_rbtnSendAscii->group(), SIGNAL(buttonClicked(int)), m_sendBox, SLOT(setHexSend(int)));
    connect(m_chkSendNewLine, SIGNAL(clicked(bool)), m_sendBox, SLOT(setNewline(bool)));
    connect(m_chkAutoSend, SIGNAL(toggled(bool)), m_sendBox, SLOT(setAutoSend(bool)));
    connect(m_cbxSendOption, SIGNAL(currentIndexChanged(int)), this, SLOT(SltChangeSendPage(int)));
    connect(m_edtAutoInterval, SIGNAL(editingFinished()), this, SLOT(SltChangeAutoInterval()));
}

void QtSendConfigGroup::SltChangeSendPage(int index)
{
    m_sendBox->setCurrentPage(1 << index);
}

void QtSendConfigGroup::SltChangeAutoInterval()
{
    // the box ignores periods under 1
    m_sendBox->setAutoInterval(m_edtAutoInterval->text().toInt());
}
