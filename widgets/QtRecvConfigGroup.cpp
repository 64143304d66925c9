#include "QtRecvConfigGroup.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>
#include <QRadioButton>

QtRecvConfigGroup::QtRecvConfigGroup(QWidget *parent)
    : QGroupBox("接收区设置", parent)
{
    m_rbtnRecvAscii = new QRadioButton("ASCII", this);
    m_rbtnRecvAscii->setObjectName("rbtnRecvAscii");
    m_rbtnRecvAscii->setChecked(true);
    m_rbtnRecvHex = new QRadioButton("HEX", this);
    m_rbtnRecvHex->setObjectName("rbtnRecvHex");
    auto *format = new QButtonGroup(this);
    format->addButton(m_rbtnRecvAscii, 0);
    format->addButton(m_rbtnRecvHex, 1);
    m_chkStopShow = new QCheckBox("停止显示", this);
    m_chkStopShow->setObjectName("chkStopShow");
    m_chkLogMode = new QCheckBox("日志模式", this);
    m_chkLogMode->setObjectName("chkLogMode");
    m_btnClearRecv = new QPushButton("清空接收区", this);
    m_btnClearRecv->setObjectName("btnClearRecv");
    m_btnSaveFile = new QPushButton("保存到文件", this);
    m_btnSaveFile->setObjectName("btnSaveFile");

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(5, 5, 5, 5);
    grid->setSpacing(5);
    grid->addWidget(m_rbtnRecvAscii, 0, 0);
    grid->addWidget(m_rbtnRecvHex, 0, 1);
    grid->addWidget(m_chkStopShow, 1, 0);
    grid->addWidget(m_chkLogMode, 1, 1);
    grid->setRowStretch(2, 1);
    grid->addWidget(m_btnClearRecv, 3, 0);
    grid->addWidget(m_btnSaveFile, 3, 1);
}
