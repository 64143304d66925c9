#include "HexEditWidget.h"
#include "IconHelper.h"
#include "QHexEdit.h"

#include <QButtonGroup>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QMimeData>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

HexEditWidget::HexEditWidget(QWidget *parent)
    : QtWidgetBase(parent)
{
    InitWidget();
}

void HexEditWidget::InitWidget()
{
    setAcceptDrops(true);

    // open, a button without action, undo, redo
    const int icons[4] = {0xE6BD, 0xE717, 0xE7FE, 0xE6F1};
    m_btnGroup = new QButtonGroup(this);
    QHBoxLayout *btnLayout = new QHBoxLayout;
    btnLayout->setContentsMargins(0, 0, 0, 0);
    btnLayout->setSpacing(2);
    for (int i = 0; i < 4; ++i) {
        m_toolBtns[i] = new QToolButton(this);
        m_toolBtns[i]->setObjectName("btnAction");
        m_toolBtns[i]->setToolButtonStyle(Qt::ToolButtonIconOnly);
        IconHelper::Instance()->setIcon(m_toolBtns[i], QChar(icons[i]), 14);
        m_btnGroup->addButton(m_toolBtns[i], i);
        btnLayout->addWidget(m_toolBtns[i]);
    }
    btnLayout->addStretch();
    connect(m_btnGroup, SIGNAL(buttonClicked(int)), this, SLOT(sltToolBtnsClicked(int)));

    m_hexEdit = new QHexEdit(this);
    connect(m_hexEdit, SIGNAL(currentSizeChanged(qint64)), this, SLOT(setSize(qint64)));
    connect(m_hexEdit, SIGNAL(currentAddressChanged(qint64)), this, SLOT(setAddress(qint64)));

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(10);
    layout->addLayout(btnLayout);
    layout->addWidget(m_hexEdit);
}

QStringList HexEditWidget::getCounts()
{
    return QStringList() << QString("Address: %1").arg(m_nAddress) << QString("Size: %1").arg(m_nSize);
}

void HexEditWidget::clearCounts()
{
    // address and size describe the file; there is nothing to zero
}

void HexEditWidget::setSize(qint64 _size)
{
    m_nSize = _size;
    emit signalRefresCounts(4);
}

void HexEditWidget::setAddress(qint64 _addr)
{
    m_nAddress = _addr;
    emit signalRefresCounts(4);
}

void HexEditWidget::sltToolBtnsClicked(int index)
{
    if (index == 0) {
        const QString path = QFileDialog::getOpenFileName(this, "", "", "");
        if (!path.isEmpty())
            loadFile(path);
    } else if (index == 2) {
        m_hexEdit->undo();
    } else if (index == 3) {
        m_hexEdit->redo();
    }
}

void HexEditWidget::loadFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        emit signalNotify("打开文件失败!", 255);
        return;
    }
    // the whole file at once: the editor shares this array rather than copying it
    m_hexEdit->setData(file.readAll());
    file.close();
}

void HexEditWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void HexEditWidget::dropEvent(QDropEvent *event)
{
    if (!event->mimeData()->hasUrls())
        return;
    loadFile(event->mimeData()->urls().first().toLocalFile());
    event->acceptProposedAction();
}
