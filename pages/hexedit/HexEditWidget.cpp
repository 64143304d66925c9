#include "HexEditWidget.h"
#include "HexDocument.h"
#include "HexFileWriter.h"
#include "HexFindBar.h"
#include "HexFinder.h"
#include "HexOffset.h"
#include "IconHelper.h"
#include "QHexEdit.h"
#include "QtMessageBox.h"
#include "QtMessageTip.h"

#include <Okteta/PieceTableByteArrayModel>

#include <QButtonGroup>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
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
    // the file's name, with a star while it holds unsaved edits
    m_labFile = new QLabel(this);
    m_labFile->setObjectName("labHexFile");
    btnLayout->addSpacing(8);
    btnLayout->addWidget(m_labFile);
    btnLayout->addStretch();
    connect(m_btnGroup, SIGNAL(buttonClicked(int)), this, SLOT(sltToolBtnsClicked(int)));

    m_hexEdit = new QHexEdit(this);
    connect(m_hexEdit, SIGNAL(currentSizeChanged(qint64)), this, SLOT(setSize(qint64)));
    connect(m_hexEdit, SIGNAL(currentAddressChanged(qint64)), this, SLOT(setAddress(qint64)));

    m_document = new HexDocument(this);
    connect(m_document, SIGNAL(signalAboutToClear()), this, SLOT(SltReleaseView()));
    connect(m_document, SIGNAL(modifiedChanged(bool)), this, SLOT(SltUpdateFileLabel()));
    showWindow(0);

    m_findBar = new HexFindBar(this);
    m_findBar->hide();
    connect(m_findBar, SIGNAL(signalFind(bool)), this, SLOT(SltFind(bool)));
    connect(m_findBar, SIGNAL(signalGoto(QString)), this, SLOT(SltGoto(QString)));

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(10);
    layout->addLayout(btnLayout);
    layout->addWidget(m_hexEdit);
    layout->addWidget(m_findBar);
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
        if (!path.isEmpty() && askDiscardEdits())
            loadFile(path);
    } else if (index == 2) {
        m_hexEdit->undo();
    } else if (index == 3) {
        m_hexEdit->redo();
    }
}

void HexEditWidget::loadFile(const QString &path)
{
    // the whole file, shared with the editor rather than copied; beyond a size it is
    // mapped instead of read
    if (!m_document->load(path)) {
        emit signalNotify("打开文件失败!", 255);
        return;
    }
    showWindow(0);
}

bool HexEditWidget::askDiscardEdits()
{
    if (!m_document->isModified())
        return true;
    QtMessageBox *box = new QtMessageBox(nullptr, QtMessageBox::Question);
    box->setMessage(QString("%1 有未保存的修改。\n打开新文件将丢弃这些修改。").arg(fileName()), "提示");
    if (QPushButton *btnOk = box->findChild<QPushButton *>("btnMsgOk"))
        btnOk->setText("放弃修改");
    if (QPushButton *btnCancel = box->findChild<QPushButton *>("btnMsgCancel"))
        btnCancel->setText("保留修改");
    return box->exec() == QDialog::Accepted;
}

QString HexEditWidget::fileName() const
{
    return m_document->path().isEmpty() ? QString("未命名") : QFileInfo(m_document->path()).fileName();
}

bool HexEditWidget::saveFile(const QString &path)
{
    const QString error = HexFileWriter::write(path, m_document->size(), m_document->reader());
    if (!error.isEmpty()) {
        QtMessageBox::warning(error);
        return false;
    }
    m_document->markSaved(path);
    SltUpdateFileLabel();
    QtMessageTip::Instance()->ShowToastMessage(QString("已保存 %1").arg(path), 2000);
    return true;
}

void HexEditWidget::SltSave()
{
    if (m_document->path().isEmpty())
        SltSaveAs();
    else
        saveFile(m_document->path());
}

void HexEditWidget::SltSaveAs()
{
    const QString path = QFileDialog::getSaveFileName(this, "另存为", m_document->path());
    if (!path.isEmpty())
        saveFile(path);
}

void HexEditWidget::SltShowFind()
{
    m_findBar->SltFocusFind();
}

void HexEditWidget::SltShowGoto()
{
    m_findBar->SltFocusGoto();
}

qint64 HexEditWidget::cursor() const
{
    return m_hexEdit->base() + m_hexEdit->cursorPosition();
}

void HexEditWidget::SltFind(bool backwards)
{
    QString error;
    const QByteArray pattern = HexFinder::pattern(m_findBar->findText(), HexFinder::Mode(m_findBar->findMode()), &error);
    if (!error.isEmpty()) {
        m_findBar->showResult(error, true);
        return;
    }
    // from the cursor; a match already selected is stepped over forwards
    qint64 from = cursor();
    if (m_hexEdit->hasSelectedData())
        from = m_hexEdit->base() + m_hexEdit->selection().start() + (backwards ? 0 : 1);
    const qint64 at = HexFinder::find(pattern, m_document->size(), m_document->reader(), from, backwards,
                                      m_findBar->wrap());
    if (at < 0) {
        m_findBar->showResult("未找到", true);
        return;
    }
    const bool wrapped = backwards ? at >= from : at < from;
    m_findBar->showResult(wrapped ? QString("已绕回, 位于 0x%1").arg(at, 0, 16) : QString("位于 0x%1").arg(at, 0, 16), false);
    select(at, pattern.size());
}

void HexEditWidget::SltGoto(const QString &text)
{
    const qint64 offset = HexOffset::parse(text, cursor(), m_document->size());
    if (offset < 0) {
        m_findBar->showResult(QString("无效的偏移: %1").arg(text), true);
        return;
    }
    m_findBar->showResult(QString("位于 0x%1").arg(offset, 0, 16), false);
    select(offset, 0);
    m_hexEdit->setFocus();
}

void HexEditWidget::select(qint64 offset, int length)
{
    const int window = m_document->windowAt(offset);
    if (m_hexEdit->model() != m_document->model(window))
        showWindow(window);
    const Okteta::Address start = Okteta::Address(offset - m_hexEdit->base());
    // a match across the end of a window is selected as far as the window goes
    const Okteta::Address end = Okteta::Address(qMin<qint64>(start + length, m_hexEdit->model()->size()) - 1);
    m_hexEdit->setCursorPosition(start);
    if (length > 0) {
        m_hexEdit->setSelection(start, end);
        m_hexEdit->ensureVisible(Okteta::AddressRange(start, end), true);
    } else {
        m_hexEdit->selectAll(false);
        m_hexEdit->ensureCursorVisible();
    }
}

void HexEditWidget::showWindow(int window)
{
    m_hexEdit->setModel(m_document->model(window), m_document->windowBase(window),
                        m_document->windowCount() > 1 ? m_document->size() : -1);
    // a mapped file keeps its length, so its windows stay in place and reading it
    // back stays a copy of the map with the edited runs laid over it
    m_hexEdit->setOverwriteOnly(m_document->isMapped());
    m_hexEdit->setOverwriteMode(true);
    SltUpdateFileLabel();
}

void HexEditWidget::SltReleaseView()
{
    m_hexEdit->setData(QByteArray());
}

void HexEditWidget::SltUpdateFileLabel()
{
    if (m_document->path().isEmpty() && !m_document->isModified()) {
        m_labFile->clear();
        return;
    }
    QString text = fileName() + (m_document->isModified() ? " *" : "");
    if (m_document->windowCount() > 1) {
        // the view addresses one window of a file beyond 2 GiB at a time
        const int window = m_document->windowAt(m_hexEdit->base());
        const qint64 base = m_document->windowBase(window);
        text += QString("  [0x%1 - 0x%2]").arg(base, 0, 16).arg(base + m_document->windowLength(window) - 1, 0, 16);
    }
    m_labFile->setText(text);
    m_labFile->setToolTip(m_document->path());
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
    if (askDiscardEdits())
        loadFile(event->mimeData()->urls().first().toLocalFile());
    event->acceptProposedAction();
}
