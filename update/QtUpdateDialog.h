#ifndef QTUPDATEDIALOG_H
#define QTUPDATEDIALOG_H

#include <QDialog>
#include <QFile>
#include <QString>

class QLabel;
class QNetworkAccessManager;
class QNetworkReply;
class QProgressBar;
class QPushButton;
class QTextBrowser;

// Asks the update server for the newest version, offers it with its release text, and
// on request downloads a zip, unpacks it over the program's folder, quits and starts
// the program anew. Plain HTTP GETs through one QNetworkAccessManager.
class QtUpdateDialog : public QDialog
{
    Q_OBJECT
public:
    explicit QtUpdateDialog(QWidget *parent = nullptr);
    ~QtUpdateDialog() override;

    // Where every dialog opened from now on asks; the program's own server otherwise.
    static void setUpdateServer(const QString &host, quint16 port);
    static QString versionCheckUrl();
    static QString downloadUrl();

    // The work done after each answer of the server, callable without a network.
    void handleVersionReply(const QByteArray &body);
    void saveDownloadData(const QString &contentDisposition, const QByteArray &data);
    // True when the download is complete and was handed to unpacking.
    bool finishDownload(qint64 received, qint64 total);
    // Unpacks zipPath over targetDir, listing every entry in the text view; entries
    // that would land outside targetDir and link entries are skipped and named.
    // False when the archive cannot be read, or is refused whole (the reason joins the
    // view; nothing is written then).
    bool unpackArchive(const QString &zipPath, const QString &targetDir);
    // Starts programDir/larkTools as a detached process; the path may hold blanks.
    static bool restartProgram(const QString &programDir);

    // The folder unpacked over and restarted from; the executable's own by default.
    void setProgramDir(const QString &dir) { m_strProgramDir = dir; }
    QString programDir() const { return m_strProgramDir; }
    QString downloadDir() const { return m_strDownloadDir; }
    QString targetFilePath() const { return m_strTargetFile; }

public slots:
    void SltCheckVersion();
    void SltDownloadFile();
    void SltNetworkReply(QNetworkReply *reply);
    void SltReadFiles();
    void downloadProgress(qint64 received, qint64 total);

private:
    void InitWidget();
    quint32 getVersionValue(QString version);

    QProgressBar *m_progressBar = nullptr;
    QLabel *m_labStatus = nullptr;
    QTextBrowser *m_textBrowser = nullptr;
    QPushButton *m_btnUpdate = nullptr;
    QNetworkAccessManager *m_manager = nullptr;
    QNetworkReply *m_reply = nullptr;
    QString m_strDownloadDir;
    QString m_strTempFile;
    QString m_strTargetFile;
    QString m_strProgramDir;
};

#endif // QTUPDATEDIALOG_H
