#include "QtUpdateDialog.h"
#include "AppPaths.h"
#include "QtTitleBar.h"
#include "UpdateArchive.h"
#include "UpdateProtocol.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>


namespace {
const char *const ProductToken = "larkTools_unix";
// where the update server lives is decided when the program is built for a release
QString g_strServerHost = QStringLiteral(LARK_UPDATE_HOST);
quint16 g_nServerPort = LARK_UPDATE_PORT;
const QString ManagedCopyText = QStringLiteral("程序由系统软件包管理，请用软件包管理器更新");
} // namespace

QtUpdateDialog::QtUpdateDialog(QWidget *parent)
    : QDialog(parent)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumSize(350, 180);
    m_strProgramDir = AppPaths::programDir();
    // not created here: MyApp makes it at start-up
    m_strDownloadDir = AppPaths::downloadDir();
    InitWidget();

    m_manager = new QNetworkAccessManager(this);
    connect(m_manager, SIGNAL(finished(QNetworkReply *)), this, SLOT(SltNetworkReply(QNetworkReply *)));
    QTimer::singleShot(300, this, SLOT(SltCheckVersion()));
}

QtUpdateDialog::~QtUpdateDialog()
{
    // There is no time-out: a stalled server is left by closing the dialog, and what
    // it sent so far must not wait in the download folder as if it were an update.
    if (m_reply && !m_reply->isFinished()) {
        m_manager->disconnect(this);
        m_reply->disconnect(this);
        m_reply->abort();
        QFile::remove(m_strTempFile);
    }
    m_manager->deleteLater();
}

void QtUpdateDialog::InitWidget()
{
    QtTitleBar *titleBar = new QtTitleBar(this, 1);
    titleBar->setWinLogo(QPixmap());
    titleBar->setWinTitle(QString("版本更新[%1]").arg(UpdateProtocol::currentVersionText()));
    connect(titleBar, SIGNAL(signalCloseWindow()), this, SLOT(close()));

    m_progressBar = new QProgressBar(this);
    m_progressBar->setTextVisible(false);
    m_progressBar->setFixedHeight(2);
    m_progressBar->setVisible(false);

    m_labStatus = new QLabel("正在检查更新，请稍后...", this);
    m_labStatus->setAlignment(Qt::AlignVCenter);
    m_labStatus->setMinimumHeight(30);

    QFrame *splitLine = new QFrame(this);
    splitLine->setObjectName("splitLine");
    splitLine->setFixedHeight(1);

    m_textBrowser = new QTextBrowser(this);
    m_textBrowser->setFixedHeight(120);
    m_textBrowser->setUndoRedoEnabled(false);

    QVBoxLayout *contentLayout = new QVBoxLayout;
    contentLayout->setContentsMargins(15, 0, 15, 10);
    contentLayout->setSpacing(0);
    contentLayout->addWidget(m_labStatus);
    contentLayout->addWidget(splitLine);
    contentLayout->addWidget(m_textBrowser, 1);

    QWidget *buttonBar = new QWidget(this);
    buttonBar->setFixedHeight(35);
    buttonBar->setStyleSheet("QWidget {background-color: #1e1e1e;} "
                             "QPushButton {border: 1px solid #797979; min-width: 65px;}");
    QHBoxLayout *buttonLayout = new QHBoxLayout(buttonBar);
    buttonLayout->setContentsMargins(0, 0, 0, 0);
    buttonLayout->setSpacing(10);
    m_btnUpdate = new QPushButton("更新", buttonBar);
    m_btnUpdate->setEnabled(false);
    QPushButton *btnCancel = new QPushButton("取消", buttonBar);
    buttonLayout->addWidget(m_btnUpdate, 1, Qt::AlignCenter);
    buttonLayout->addWidget(btnCancel, 1, Qt::AlignCenter);
    connect(m_btnUpdate, SIGNAL(clicked()), this, SLOT(SltDownloadFile()));
    connect(btnCancel, SIGNAL(clicked()), this, SLOT(close()));

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(titleBar);
    layout->addLayout(contentLayout, 1);
    layout->addWidget(m_progressBar);
    layout->addWidget(buttonBar);
}

void QtUpdateDialog::setUpdateServer(const QString &host, quint16 port)
{
    g_strServerHost = host;
    g_nServerPort = port;
}

QString QtUpdateDialog::versionCheckUrl()
{
    return QString("http://%1:%2/cv/%3").arg(g_strServerHost).arg(g_nServerPort).arg(ProductToken);
}

QString QtUpdateDialog::downloadUrl()
{
    return QString("http://%1:%2/up/%3").arg(g_strServerHost).arg(g_nServerPort).arg(ProductToken);
}

quint32 QtUpdateDialog::getVersionValue(QString version)
{
    return UpdateProtocol::versionValue(version);
}

void QtUpdateDialog::SltCheckVersion()
{
    QNetworkRequest request{QUrl(versionCheckUrl())};
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
    m_manager->get(request);
}

void QtUpdateDialog::SltNetworkReply(QNetworkReply *reply)
{
    // A download cut off (reset, fewer bytes than announced) never reaches the unpacking:
    // say so, drop the part, and let the user try again. A failed version check stays
    // silent, as it always has.
    if (reply == m_reply && reply->error() != QNetworkReply::NoError) {
        QFile::remove(m_strTempFile);
        m_textBrowser->append(QString("下载未完成(%1)，程序未做任何更改！").arg(reply->errorString()));
        m_btnUpdate->setEnabled(true);
        return;
    }
    // the download ends here too, its body long since read by SltReadFiles
    handleVersionReply(reply->readAll());
}

void QtUpdateDialog::handleVersionReply(const QByteArray &body)
{
    const UpdateProtocol::VersionReply reply = UpdateProtocol::parseVersionReply(body);
    switch (reply.kind) {
    case UpdateProtocol::VersionReply::Empty:
    case UpdateProtocol::VersionReply::NotObject:
        return;
    case UpdateProtocol::VersionReply::Invalid:
        m_labStatus->setText("更新失败，请检查网络连接！~");
        return;
    case UpdateProtocol::VersionReply::Object:
        break;
    }

    if (getVersionValue(reply.verNum) <= quint32(UpdateProtocol::CurrentVersionValue)) {
        m_labStatus->setText("当前版本已经是最新版本！");
        return;
    }
    m_labStatus->setText("检测到新版本: V" + reply.verNum);
    m_textBrowser->setText(reply.verInfo);
    if (!AppPaths::isPortableDir(m_strProgramDir)) {
        m_textBrowser->append("\n" + ManagedCopyText);
        m_textBrowser->moveCursor(QTextCursor::End);
        return;
    }
    m_btnUpdate->setEnabled(true);
    m_textBrowser->append("\n是否立即下载新版本?");
    m_textBrowser->moveCursor(QTextCursor::End);
}

void QtUpdateDialog::SltDownloadFile()
{
    // unpacking over files the package manager owns would break the package
    if (!AppPaths::isPortableDir(m_strProgramDir)) {
        m_labStatus->setText(ManagedCopyText);
        m_btnUpdate->setEnabled(false);
        return;
    }
    m_progressBar->setVisible(true);
    m_btnUpdate->setEnabled(false);
    m_strTempFile = m_strDownloadDir + "/update.tmp";
    QFile::remove(m_strTempFile);
    m_strTargetFile.clear();

    QNetworkRequest request{QUrl(downloadUrl())};
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
    m_reply = m_manager->get(request);
    connect(m_reply, SIGNAL(downloadProgress(qint64, qint64)), this, SLOT(downloadProgress(qint64, qint64)));
    connect(m_reply, SIGNAL(readyRead()), this, SLOT(SltReadFiles()));
}

void QtUpdateDialog::SltReadFiles()
{
    if (!m_reply)
        return;
    saveDownloadData(QString::fromUtf8(m_reply->rawHeader("Content-Disposition")), m_reply->readAll());
}

void QtUpdateDialog::saveDownloadData(const QString &contentDisposition, const QByteArray &data)
{
    if (m_strTempFile.isEmpty())
        m_strTempFile = m_strDownloadDir + "/update.tmp";
    if (m_strTargetFile.isEmpty()) {
        const QString name = UpdateProtocol::fileNameFromDisposition(contentDisposition);
        m_strTargetFile = m_strDownloadDir + "/" + UpdateProtocol::safeDownloadName(name);
        QFile::remove(m_strTargetFile);
    }
    QFile file(m_strTempFile);
    if (file.open(QIODevice::Append)) {
        file.write(data);
        file.close();
    }
}

void QtUpdateDialog::downloadProgress(qint64 received, qint64 total)
{
    // a reply that failed (cut off, refused) is never complete, whatever it counted
    if (m_reply && m_reply->isFinished() && m_reply->error() != QNetworkReply::NoError)
        return;
    // Without a content length the size is only known once the reply has finished;
    // its last report then carries the real count.
    if (total <= 0 && m_reply && !m_reply->isFinished())
        return;
    if (finishDownload(received, total)) {
        QCoreApplication::quit();
        restartProgram(m_strProgramDir);
    }
}

bool QtUpdateDialog::finishDownload(qint64 received, qint64 total)
{
    m_progressBar->setMaximum(int(total));
    m_progressBar->setValue(int(received));
    if (total > received)
        return false;
    // a download that stopped short of what was announced is not unpacked
    if (QFileInfo(m_strTempFile).size() < qMax(total, received))
        return false;

    QFile::rename(m_strTempFile, m_strTargetFile);
    if (!m_strTargetFile.endsWith("zip")) {
        m_textBrowser->append("升级文件格式解析错误！请联系管理员！");
        return false;
    }
    m_textBrowser->append("文件更新完成，正在解压文件,稍后自动重启！");
    return unpackArchive(m_strTargetFile, m_strProgramDir);
}

bool QtUpdateDialog::unpackArchive(const QString &zipPath, const QString &targetDir)
{
    const UpdateArchive archive(zipPath);
    if (!archive.isReadable())
        return false;
    m_progressBar->setMaximum(archive.count());
    m_progressBar->setValue(0);
    // the name is listed before the bar moves, so the bar never runs ahead of the list
    const bool unpacked = archive.unpack(targetDir, [this](int index, const QString &name, bool skipped) {
        m_textBrowser->insertPlainText((skipped ? "已跳过: " + name : name) + "\r\n");
        m_progressBar->setValue(index);
    });
    // refused before a byte was written: the program is the old one, whole
    if (!unpacked)
        m_textBrowser->append(archive.errorString() + "，程序未做任何更改！");
    return unpacked;
}

bool QtUpdateDialog::restartProgram(const QString &programDir)
{
    // the program as one argument, not a command line, so blanks in the path stay
    return QProcess::startDetached(programDir + "/larkTools", QStringList(), programDir);
}
