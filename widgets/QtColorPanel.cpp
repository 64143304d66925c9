#include "QtColorPanel.h"
#include "ColorDisplay.h"
#include "ColorGridDisplay.h"
#include "ColorPanelBar.h"
#include "ColorPanelHSB.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

// "#400040" stands twice, in rows 4 and 5
const QStringList QtColorPanel::strBaseColors = {
    "#ff8080", "#ffff80", "#80ff80", "#00ff80", "#80ffff", "#0080ff", "#ff80c0", "#ff80ff",
    "#ff0000", "#ffff00", "#80ff00", "#00ff40", "#00ffff", "#0080c0", "#8080c0", "#ff00ff",
    "#804040", "#ff8040", "#00ff00", "#008080", "#004080", "#8080ff", "#800040", "#ff0080",
    "#800000", "#ff8000", "#008000", "#008040", "#0000ff", "#0000a0", "#800080", "#8000ff",
    "#400000", "#804000", "#004000", "#004040", "#000080", "#000040", "#400040", "#400080",
    "#000000", "#808000", "#808040", "#808080", "#408080", "#c0c0c0", "#400040", "#ffffff",
};

QtColorPanel::QtColorPanel(QWidget *parent)
    : QWidget(parent)
    , m_gridBase(nullptr)
    , m_gridCustom(nullptr)
    , m_colorDisplay(nullptr)
    , m_panelHSB(nullptr)
    , m_panelBar(nullptr)
{
    InitWidget();
}

QSize QtColorPanel::sizeHint() const
{
    return QSize(550, 360);
}

void QtColorPanel::InitWidget()
{
    m_gridBase = new ColorGridDisplay(this);
    m_gridBase->setCellSize(6, 8);
    m_gridBase->setGridColors(strBaseColors);

    m_gridCustom = new ColorGridDisplay(this);
    m_gridCustom->setTitle("自定义颜色(B):");
    m_gridCustom->setCellSize(2, 8);

    QPushButton *btnOk = new QPushButton("确认", this);
    QPushButton *btnCancel = new QPushButton("取消", this);
    // cancelling confirms as well: both buttons hand the colour on as accepted
    connect(btnOk, SIGNAL(clicked()), this, SLOT(SltBtnOkClicked()));
    connect(btnCancel, SIGNAL(clicked()), this, SLOT(SltBtnOkClicked()));

    QHBoxLayout *buttonLayout = new QHBoxLayout();
    buttonLayout->setContentsMargins(0, 10, 0, 0);
    buttonLayout->setSpacing(10);
    buttonLayout->addWidget(btnOk);
    buttonLayout->addWidget(btnCancel);

    QVBoxLayout *leftLayout = new QVBoxLayout();
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(0);
    leftLayout->addWidget(m_gridBase, 1);
    leftLayout->addWidget(m_gridCustom);
    leftLayout->addLayout(buttonLayout);
    leftLayout->addStretch();

    m_panelHSB = new ColorPanelHSB(this);
    m_panelBar = new ColorPanelBar(this);
    QHBoxLayout *pickerLayout = new QHBoxLayout();
    pickerLayout->addWidget(m_panelHSB, 1);
    pickerLayout->addWidget(m_panelBar);

    m_colorDisplay = new ColorDisplay(this);
    QPushButton *btnAdd = new QPushButton("添加到自定义颜色(&A)", this);
    connect(btnAdd, SIGNAL(clicked()), this, SLOT(SltAddCustomColor()));

    QVBoxLayout *rightLayout = new QVBoxLayout();
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->setSpacing(10);
    rightLayout->addLayout(pickerLayout);
    rightLayout->addWidget(m_colorDisplay);
    rightLayout->addWidget(btnAdd);

    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(5, 5, 5, 5);
    layout->setSpacing(10);
    layout->addLayout(leftLayout);
    layout->addLayout(rightLayout);

    connect(m_gridBase, SIGNAL(colorChanged(QColor)), m_colorDisplay, SLOT(SltDisplayColor(QColor)));
    connect(m_gridCustom, SIGNAL(colorChanged(QColor)), m_colorDisplay, SLOT(SltDisplayColor(QColor)));
    connect(m_panelHSB, SIGNAL(colorChanged(QColor)), m_colorDisplay, SLOT(SltDisplayColor(QColor)));
    connect(m_panelBar, SIGNAL(colorChanged(QColor)), m_colorDisplay, SLOT(SltDisplayColor(QColor)));
}

void QtColorPanel::SltBtnOkClicked()
{
    emit signalClicke(1, m_colorDisplay->color());
}

void QtColorPanel::SltBtnCancelClicked()
{
    emit signalClicke(0, m_colorDisplay->color());
}

void QtColorPanel::SltAddCustomColor()
{
    m_gridCustom->setCurrentGridColor(m_colorDisplay->color());
}
