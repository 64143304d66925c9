#include "HexFindBar.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

HexFindBar::HexFindBar(QWidget *parent)
    : QWidget(parent)
{
    InitWidget();
}

void HexFindBar::InitWidget()
{
    m_cbxMode = new QComboBox(this);
    // in the order of HexFinder::Mode
    m_cbxMode->addItems({"十六进制", "UTF-8", "GB18030"});
    m_edtFind = new QLineEdit(this);
    m_edtFind->setObjectName("edtFind");
    m_edtFind->setPlaceholderText("查找: 4C 41 52 4B 或文本");
    m_edtFind->setMinimumWidth(160);
    m_btnPrevious = new QPushButton("上一个", this);
    m_btnNext = new QPushButton("下一个", this);
    m_chkWrap = new QCheckBox("循环", this);
    m_chkWrap->setChecked(true);
    m_edtGoto = new QLineEdit(this);
    m_edtGoto->setObjectName("edtGoto");
    m_edtGoto->setPlaceholderText("偏移: 1024 / 0x400 / +16");
    m_edtGoto->setMinimumWidth(170);
    m_btnGoto = new QPushButton("跳转", this);
    m_labResult = new QLabel(this);
    m_labResult->setObjectName("labFindResult");
    QPushButton *btnClose = new QPushButton("关闭", this);

    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_cbxMode);
    layout->addWidget(m_edtFind, 2);
    layout->addWidget(m_btnPrevious);
    layout->addWidget(m_btnNext);
    layout->addWidget(m_chkWrap);
    layout->addSpacing(12);
    layout->addWidget(m_edtGoto, 1);
    layout->addWidget(m_btnGoto);
    layout->addWidget(m_labResult, 1);
    layout->addWidget(btnClose);

    connect(m_edtFind, SIGNAL(returnPressed()), this, SLOT(SltFindNext()));
    connect(m_btnNext, SIGNAL(clicked()), this, SLOT(SltFindNext()));
    connect(m_btnPrevious, SIGNAL(clicked()), this, SLOT(SltFindPrevious()));
    connect(m_edtGoto, SIGNAL(returnPressed()), this, SLOT(SltGoto()));
    connect(m_btnGoto, SIGNAL(clicked()), this, SLOT(SltGoto()));
    connect(btnClose, SIGNAL(clicked()), this, SLOT(hide()));
}

QString HexFindBar::findText() const
{
    return m_edtFind->text();
}

int HexFindBar::findMode() const
{
    return m_cbxMode->currentIndex();
}

bool HexFindBar::wrap() const
{
    return m_chkWrap->isChecked();
}

QString HexFindBar::gotoText() const
{
    return m_edtGoto->text();
}

void HexFindBar::showResult(const QString &text, bool error)
{
    m_labResult->setStyleSheet(error ? "color: #f03e10;" : QString());
    m_labResult->setText(text);
}

void HexFindBar::SltFocusFind()
{
    show();
    m_edtFind->setFocus();
    m_edtFind->selectAll();
}

void HexFindBar::SltFocusGoto()
{
    show();
    m_edtGoto->setFocus();
    m_edtGoto->selectAll();
}

void HexFindBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        hide();
    else
        QWidget::keyPressEvent(event);
}

void HexFindBar::SltFindNext()
{
    emit signalFind(false);
}

void HexFindBar::SltFindPrevious()
{
    emit signalFind(true);
}

void HexFindBar::SltGoto()
{
    emit signalGoto(m_edtGoto->text());
}
