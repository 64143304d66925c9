#include "QtFileDialog.h"
#include "QtTitleBar.h"
#include "NoFocusDelegate.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStandardPaths>
#include <QStyleOption>
#include <QTreeView>
#include <QVBoxLayout>

QtFileDialog::QtFileDialog(QWidget *parent)
    : QDialog(parent)
    , m_titleBar(nullptr)
    , m_fileDialog(nullptr)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setWindowTitle("文件选择框");
    InitWidget();
}

void QtFileDialog::InitWidget()
{
    m_titleBar = new QtTitleBar(this, QtTitleBar::QtWindowNoFlag | QtTitleBar::QtWindowMaxButton
                                          | QtTitleBar::QtWindowMinButton);
    m_titleBar->setWinLogo(QPixmap());
    m_titleBar->setWinTitle(windowTitle());
    connect(m_titleBar, SIGNAL(signalCloseWindow()), this, SLOT(reject()));

    m_fileDialog = new QFileDialog(this, Qt::SubWindow | Qt::FramelessWindowHint);
    m_fileDialog->setAttribute(Qt::WA_TranslucentBackground);
    m_fileDialog->setOption(QFileDialog::DontUseNativeDialog, true);
    // a desktop folder is not a given on Linux; home is the next best start
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    m_fileDialog->setDirectory(QDir(desktop).exists() ? desktop : QDir::homePath());

    m_fileDialog->setLabelText(QFileDialog::LookIn, "文件目录：");
    m_fileDialog->setLabelText(QFileDialog::Accept, "确定");
    m_fileDialog->setLabelText(QFileDialog::Reject, "取消");
    adjustChildren();

    connect(m_fileDialog, SIGNAL(finished(int)), this, SLOT(onFileDialogFinished(int)));

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);
    layout->addWidget(m_fileDialog, 1);
}

// Qt's dialog names its parts; any of them may be missing in another Qt version. It
// also rebuilds its buttons and retranslates its labels when the accept mode changes,
// so this runs again after every such change; the texts set as label texts above stay.
void QtFileDialog::adjustChildren()
{
    if (QLabel *lab = m_fileDialog->findChild<QLabel *>("lookInLabel"))
        lab->setText("文件目录：");
    if (QComboBox *cbx = m_fileDialog->findChild<QComboBox *>("fileTypeCombo"))
        cbx->setMinimumHeight(24);
    if (QComboBox *cbx = m_fileDialog->findChild<QComboBox *>("lookInCombo"))
        cbx->setMinimumHeight(24);
    if (QLineEdit *edt = m_fileDialog->findChild<QLineEdit *>("fileNameEdit"))
        edt->setMinimumHeight(24);
    if (QDialogButtonBox *box = m_fileDialog->findChild<QDialogButtonBox *>("buttonBox")) {
        const struct {
            QDialogButtonBox::StandardButton which;
            const char *text;
        } texts[] = {
            {QDialogButtonBox::Open, "确定"},
            {QDialogButtonBox::Save, "保存"},
            {QDialogButtonBox::Cancel, "取消"},
        };
        for (const auto &t : texts) {
            if (QPushButton *btn = box->button(t.which)) {
                btn->setText(QString::fromUtf8(t.text));
                btn->setFixedSize(68, 24);
            }
        }
    }
}

void QtFileDialog::setNameFilter(const QString &filter)
{
    m_fileDialog->setNameFilter(filter);
}

void QtFileDialog::setAcceptMode(QFileDialog::AcceptMode mode)
{
    m_fileDialog->setAcceptMode(mode);
    m_fileDialog->setLabelText(QFileDialog::Accept, mode == QFileDialog::AcceptSave ? "保存" : "确定");
    adjustChildren();
}

void QtFileDialog::setFileMode(QFileDialog::FileMode mode)
{
    m_fileDialog->setFileMode(mode);
    if (mode != QFileDialog::ExistingFiles)
        return;

    // Choosing several files: the views select extended ranges, and the buttons act on
    // this dialog directly, since Qt's own accept would insist on one typed name.
    disconnect(m_fileDialog, SIGNAL(finished(int)), this, SLOT(onFileDialogFinished(int)));

    if (QAbstractItemView *list = m_fileDialog->findChild<QAbstractItemView *>("listView")) {
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
        list->setItemDelegate(new NoFocusDelegate(list));
    }
    if (QTreeView *tree = m_fileDialog->findChild<QTreeView *>("treeView")) {
        tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
        tree->setItemDelegate(new NoFocusDelegate(tree));
        tree->header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }
    if (QDialogButtonBox *box = m_fileDialog->findChild<QDialogButtonBox *>("buttonBox")) {
        box->disconnect();
        connect(box, SIGNAL(accepted()), this, SLOT(accept()));
        connect(box, SIGNAL(rejected()), this, SLOT(reject()));
    }
}

QStringList QtFileDialog::selectedFiles() const
{
    return m_fileDialog->selectedFiles();
}

QString QtFileDialog::suffixOfFilter(const QString &filter)
{
    // "Name (*.a *.b)" lists its patterns in brackets, "*.a" is a pattern itself
    QString patterns = filter;
    const int open = filter.indexOf('(');
    const int close = filter.lastIndexOf(')');
    if (open >= 0 && close > open)
        patterns = filter.mid(open + 1, close - open - 1);
    const QString first = patterns.simplified().section(' ', 0, 0);

    QString suffix = first;
    suffix.remove('*');
    // "*" or "*.*" or a pattern with other wildcards names no suffix to add
    if (suffix.isEmpty() || suffix == "." || suffix.contains('?') || suffix.contains('['))
        return QString();
    return suffix;
}

QString QtFileDialog::exitfile() const
{
    const QStringList files = m_fileDialog->selectedFiles();
    if (files.isEmpty())
        return QString();

    QString path = files.first();
    if (m_fileDialog->acceptMode() == QFileDialog::AcceptSave && QFileInfo(path).suffix().isEmpty())
        path += suffixOfFilter(m_fileDialog->selectedNameFilter());
    return path;
}

void QtFileDialog::onFileDialogFinished(int result)
{
    if (result == 1)
        accept();
    else
        reject();
}

void QtFileDialog::paintEvent(QPaintEvent *event)
{
    QStyleOption opt;
    opt.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &opt, &painter, this);
    painter.end();
    QWidget::paintEvent(event);
}
