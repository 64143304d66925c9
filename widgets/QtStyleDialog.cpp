#include "QtStyleDialog.h"
#include "QtColorPanel.h"
#include "QtTabBar.h"
#include "QtTitleBar.h"

#include <QDebug>
#include <QFontDialog>
#include <QStackedWidget>
#include <QVBoxLayout>

QtStyleDialog::QtStyleDialog(QWidget *parent, const QString &title)
    : QDialog(parent)
    , m_strTitle(title)
    , m_titleBar(nullptr)
    , m_tabBar(nullptr)
    , m_stackedWidget(nullptr)
    , m_panelBackground(nullptr)
    , m_panelText(nullptr)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedSize(550, 410);
    InitWidget();
}

void QtStyleDialog::InitWidget()
{
    m_titleBar = new QtTitleBar(this, QtTitleBar::QtWindowNoFlag);
    m_titleBar->setWinTitle(m_strTitle);
    connect(m_titleBar, SIGNAL(signalCloseWindow()), this, SLOT(close()));

    m_tabBar = new QtTabBar(this);
    m_tabBar->setTabTitles(QStringList() << "背景颜色设置" << "字体颜色设置" << "字体设置");

    m_stackedWidget = new QStackedWidget(this);
    connect(m_tabBar, SIGNAL(signalClicked(int)), m_stackedWidget, SLOT(setCurrentIndex(int)));

    m_panelBackground = new QtColorPanel(this);
    connect(m_panelBackground, SIGNAL(signalClicke(int,QColor)), this, SLOT(SltBackGroundChanged(int,QColor)));
    // the text colour panel hands its choice to no one yet
    m_panelText = new QtColorPanel(this);

    // embedded as a page: no buttons of its own, whose answer would only hide it
    QFontDialog *fontDialog = new QFontDialog(this);
    fontDialog->setOptions(QFontDialog::DontUseNativeDialog | QFontDialog::NoButtons);
    fontDialog->setWindowFlags(Qt::Widget);
    // Escape inside the page would hide it and leave the tab blank
    connect(fontDialog, SIGNAL(finished(int)), fontDialog, SLOT(show()));

    m_stackedWidget->addWidget(m_panelBackground);
    m_stackedWidget->addWidget(m_panelText);
    m_stackedWidget->addWidget(fontDialog);

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);
    layout->addWidget(m_tabBar);
    layout->addWidget(m_stackedWidget, 1);
}

void QtStyleDialog::SltBackGroundChanged(int id, const QColor &color)
{
    if (id == 0) {
        reject();
    } else if (id == 1) {
        accept();
        qDebug() << "accpet SltBackGroundChanged" << color.name();
    }
}

void QtStyleDialog::SltTextColorChanged(int id, const QColor &color)
{
    if (id == 0) {
        reject();
    } else if (id == 1) {
        qDebug() << "accpet SltTextColorChanged" << color.name();
        accept();
    }
}
