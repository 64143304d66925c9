#include "QtStatusBar.h"

#include "QtCountLabel.h"
#include "QtRollSubtitlesWidget.h"

#include <QHBoxLayout>
#include <QPushButton>

QtStatusBar::QtStatusBar(QWidget *parent)
    : QtWidgetBase(parent)
{
    InitWidget();
}

void QtStatusBar::InitWidget()
{
    setMinimumHeight(28);

    m_widgetNotify = new QtRollSubtitlesWidget(this);
    m_labCount = new QtCountLabel(this);
    m_btnClear = new QPushButton(QString::fromUtf8("清空计数"), this);
    connect(m_btnClear, SIGNAL(clicked()), this, SIGNAL(clearCount()));

    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 3, 10, 3);
    layout->setSpacing(10);
    layout->addWidget(m_widgetNotify, 1);
    layout->addWidget(m_labCount, 2);
    layout->addWidget(m_btnClear);

    m_widgetNotify->setText(QString::fromUtf8("欢迎使用 本多功能调试助手！"), 0);
    setLabelCounts(QStringList() << QString::fromUtf8("发送字节数: 0") << QString::fromUtf8("接收字节数: 0"));
}

void QtStatusBar::setLabelCounts(const QStringList &counts)
{
    m_labCount->setCounts(counts);
    m_btnClear->setVisible(!counts.isEmpty());
}

void QtStatusBar::showSystemNotify(const QString &text, int level)
{
    m_widgetNotify->setTextColor(level == 255 ? "#ff0000" : "#0F2026");
    m_widgetNotify->setText(text, 0);
}
