#include "LarkTest.h"
#include "QtUpdateDialog.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTimer>
#include <QtEndian>
#include <QtTest>

#include <private/qzipwriter_p.h>

// A plain HTTP/1.1 server on loopback: one canned answer per path, each with or
// without Content-Length and Content-Disposition, optionally cut short.
class UpdateHttpServer : public QObject
{
    Q_OBJECT
public:
    struct Answer {
        QByteArray body;
        bool withLength = true;
        QByteArray disposition;
        int cutAt = -1; // bytes of the body actually sent before closing
    };
    QMap<QByteArray, Answer> answers;
    QList<QByteArray> requests;

    UpdateHttpServer()
    {
        connect(&m_server, SIGNAL(newConnection()), this, SLOT(onConnection()));
        m_server.listen(QHostAddress::LocalHost);
    }
    quint16 port() const { return m_server.serverPort(); }

private slots:
    void onConnection()
    {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, SIGNAL(readyRead()), this, SLOT(onReadyRead()));
        }
    }
    void onReadyRead()
    {
        QTcpSocket *socket = qobject_cast<QTcpSocket *>(sender());
        QByteArray request = socket->property("request").toByteArray() + socket->readAll();
        socket->setProperty("request", request);
        if (!request.contains("\r\n\r\n"))
            return;
        requests << request;
        const QByteArray path = request.split(' ').value(1);
        if (!answers.contains(path)) {
            socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
            socket->disconnectFromHost();
            return;
        }
        const Answer &a = answers[path];
        QByteArray head = "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: application/octet-stream\r\n";
        if (a.withLength)
            head += "Content-Length: " + QByteArray::number(a.body.size()) + "\r\n";
        if (!a.disposition.isEmpty())
            head += "Content-Disposition: " + a.disposition + "\r\n";
        socket->write(head + "\r\n" + (a.cutAt < 0 ? a.body : a.body.left(a.cutAt)));
        socket->disconnectFromHost();
    }

private:
    QTcpServer m_server;
};

class TstQtUpdateDialog : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void versionCheckAnswers_data();
    void versionCheckAnswers();
    void downloadUnpacksQuitsAndRestarts_data();
    void downloadUnpacksQuitsAndRestarts();
    void downloadNotAZipIsLeftAlone();
    void downloadCutShortIsNotUnpacked();
    void unpackWritesDirsFilesAndPermissions();
    void unsafeEntriesAreSkippedAndNamed_data();
    void unsafeEntriesAreSkippedAndNamed();
    void restartWorksFromAPathWithBlanks();

private:
    QtUpdateDialog *openDialog();
    bool waitForReplies(int count);
    static QByteArray makeZip(const std::function<void(QZipWriter &)> &fill);
    static void markExecutable(QByteArray &zip, const QByteArray &name);
    static QString standInScript(const QString &marker);
    static QByteArray readFile(const QString &path);
    static void forgetQuit();

    std::unique_ptr<UpdateHttpServer> m_server;
    QPointer<QtUpdateDialog> m_dialog;
    std::unique_ptr<QSignalSpy> m_finished;
};

void TstQtUpdateDialog::init()
{
    LarkTest::cleanAppDirs();
    // the program makes this folder at start-up; the dialog only writes into it
    QDir().mkpath(QCoreApplication::applicationDirPath() + "/download");
    m_server.reset(new UpdateHttpServer);
    QVERIFY(m_server->port() != 0);
    QtUpdateDialog::setUpdateServer("127.0.0.1", m_server->port());
}

void TstQtUpdateDialog::cleanup()
{
    m_finished.reset();
    delete m_dialog.data();
    m_server.reset();
    LarkTest::cleanAppDirs();
}

QtUpdateDialog *TstQtUpdateDialog::openDialog()
{
    m_dialog = new QtUpdateDialog;
    m_finished.reset(new QSignalSpy(m_dialog->findChild<QNetworkAccessManager *>(),
                                    SIGNAL(finished(QNetworkReply *))));
    m_dialog->show();
    return m_dialog;
}

bool TstQtUpdateDialog::waitForReplies(int count)
{
    return QTest::qWaitFor([&] { return m_finished->count() >= count; }, 5000);
}

QByteArray TstQtUpdateDialog::makeZip(const std::function<void(QZipWriter &)> &fill)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QZipWriter writer(&buffer);
    fill(writer);
    writer.close();
    return buffer.data();
}

// Qt 5's zip writer stores the owner's execute permission as a write permission, so
// the test sets the bit in the central directory the way other zip tools store it.
void TstQtUpdateDialog::markExecutable(QByteArray &zip, const QByteArray &name)
{
    const int eocd = zip.lastIndexOf(QByteArray("PK\x05\x06", 4));
    QVERIFY(eocd >= 0);
    int pos = qFromLittleEndian<quint32>(zip.constData() + eocd + 16);
    const int count = qFromLittleEndian<quint16>(zip.constData() + eocd + 10);
    for (int i = 0; i < count; ++i) {
        const int nameLen = qFromLittleEndian<quint16>(zip.constData() + pos + 28);
        const int skip = nameLen + qFromLittleEndian<quint16>(zip.constData() + pos + 30)
                         + qFromLittleEndian<quint16>(zip.constData() + pos + 32);
        if (zip.mid(pos + 46, nameLen) == name) {
            const quint32 attr = qFromLittleEndian<quint32>(zip.constData() + pos + 38) | (0100u << 16);
            qToLittleEndian(attr, zip.data() + pos + 38);
            return;
        }
        pos += 46 + skip;
    }
    QFAIL("no such entry");
}

QByteArray TstQtUpdateDialog::readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString TstQtUpdateDialog::standInScript(const QString &marker)
{
    return "#!/bin/sh\necho \"$PWD\" > '" + marker + "'\n";
}

// The dialog quits the application before it restarts the program; outside a running
// exec() that leaves a flag behind which would end every later event loop at once.
void TstQtUpdateDialog::forgetQuit()
{
    QTimer::singleShot(0, qApp, SLOT(quit()));
    qApp->exec();
}

void TstQtUpdateDialog::versionCheckAnswers_data()
{
    QTest::addColumn<bool>("serverThere");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("status");
    QTest::addColumn<bool>("offered");

    const QString waiting = "正在检查更新，请稍后...";
    const QString upToDate = "当前版本已经是最新版本！";
    QTest::newRow("same version") << true << QByteArray("{\"verNum\":\"1.0.1.5\",\"verInfo\":\"x\"}")
                                  << upToDate << false;
    QTest::newRow("newer") << true << QByteArray("{\"verNum\":\"1.0.1.6\",\"verInfo\":\"修复串口\"}")
                           << "检测到新版本: V1.0.1.6" << true;
    QTest::newRow("two parts read as 0") << true << QByteArray("{\"verNum\":\"1.1\",\"verInfo\":\"x\"}")
                                         << upToDate << false;
    QTest::newRow("older three parts") << true << QByteArray("{\"verNum\":\"2.1.3\"}") << upToDate << false;
    QTest::newRow("invalid json") << true << QByteArray("{verNum") << "更新失败，请检查网络连接！~" << false;
    QTest::newRow("not an object") << true << QByteArray("[\"1.0.1.6\"]") << waiting << false;
    QTest::newRow("no body") << true << QByteArray() << waiting << false;
    QTest::newRow("no server") << false << QByteArray() << waiting << false;
}

void TstQtUpdateDialog::versionCheckAnswers()
{
    QFETCH(bool, serverThere);
    QFETCH(QByteArray, body);
    QFETCH(QString, status);
    QFETCH(bool, offered);

    m_server->answers["/cv/larkTools_unix"].body = body;
    if (!serverThere) {
        const quint16 port = m_server->port();
        m_server.reset();
        QtUpdateDialog::setUpdateServer("127.0.0.1", port);
    }
    QtUpdateDialog *dlg = openDialog();
    QLabel *label = dlg->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(label);
    QCOMPARE(label->text(), QString("正在检查更新，请稍后..."));
    QVERIFY(waitForReplies(1));

    QCOMPARE(label->text(), status);
    QPushButton *update = dlg->findChild<QPushButton *>();
    QCOMPARE(update->text(), QString("更新"));
    QCOMPARE(update->isEnabled(), offered);
    const QString text = dlg->findChild<QTextBrowser *>()->toPlainText();
    QCOMPARE(text, offered ? QString("修复串口\n\n是否立即下载新版本?") : QString());
    if (serverThere) {
        QCOMPARE(m_server->requests.size(), 1);
        const QByteArray request = m_server->requests.first();
        QVERIFY(request.startsWith("GET /cv/larkTools_unix HTTP/1.1\r\n"));
        QVERIFY(request.contains("Content-Type: application/x-www-form-urlencoded\r\n"));
    }
}

void TstQtUpdateDialog::downloadUnpacksQuitsAndRestarts_data()
{
    QTest::addColumn<bool>("withLength");
    QTest::newRow("content length") << true;
    QTest::newRow("no content length") << false;
}

void TstQtUpdateDialog::downloadUnpacksQuitsAndRestarts()
{
    QFETCH(bool, withLength);
    QTemporaryDir program(QDir::tempPath() + "/lark update XXXXXX");
    const QString marker = program.path() + "/restarted";
    // big enough to arrive in several reads, so a short read would show
    const QByteArray big(300000, 'b');
    QByteArray zip = makeZip([&](QZipWriter &w) {
        w.setCreationPermissions(QFile::ReadOwner | QFile::WriteOwner);
        w.addFile("larkTools", standInScript(marker).toUtf8());
        w.setCreationPermissions(QFile::ReadOwner | QFile::WriteOwner);
        w.addDirectory("data");
        w.addFile("data/big.bin", big);
    });
    markExecutable(zip, "larkTools");

    m_server->answers["/cv/larkTools_unix"].body = "{\"verNum\":\"1.0.1.6\",\"verInfo\":\"x\"}";
    UpdateHttpServer::Answer &up = m_server->answers["/up/larkTools_unix"];
    up.body = zip;
    up.withLength = withLength;
    up.disposition = "attachment; filename=larkTools_1.0.1.6.zip";

    QtUpdateDialog *dlg = openDialog();
    dlg->setProgramDir(program.path());
    QVERIFY(waitForReplies(1));
    QPushButton *update = dlg->findChild<QPushButton *>();
    QVERIFY(update->isEnabled());
    QTest::mouseClick(update, Qt::LeftButton);
    QVERIFY(dlg->findChild<QProgressBar *>()->isVisibleTo(dlg));
    QVERIFY(!update->isEnabled());

    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(marker), 5000);
    forgetQuit();
    QVERIFY(m_server->requests.last().startsWith("GET /up/larkTools_unix HTTP/1.1\r\n"));
    QCOMPARE(dlg->targetFilePath(), dlg->downloadDir() + "/larkTools_1.0.1.6.zip");
    QFile saved(dlg->targetFilePath());
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), zip);
    QFile unpacked(program.path() + "/data/big.bin");
    QVERIFY(unpacked.open(QIODevice::ReadOnly));
    QCOMPARE(unpacked.readAll(), big);
    // the first path joins the line of the message, as the view's cursor stands there
    QCOMPARE(dlg->findChild<QTextBrowser *>()->toPlainText(),
             QString("x\n\n是否立即下载新版本?\n文件更新完成，正在解压文件,稍后自动重启！larkTools\ndata\ndata/big.bin\n"));
    // the restarted program runs in its own folder
    QTRY_COMPARE(readFile(marker).trimmed(), program.path().toUtf8());
}

void TstQtUpdateDialog::downloadNotAZipIsLeftAlone()
{
    QTemporaryDir program;
    m_server->answers["/up/larkTools_unix"] = {"payload", true, "attachment; filename=larkTools.rar", -1};
    QtUpdateDialog *dlg = openDialog();
    dlg->setProgramDir(program.path());
    dlg->SltDownloadFile();
    QVERIFY(waitForReplies(2));

    QVERIFY(dlg->findChild<QTextBrowser *>()->toPlainText().contains("升级文件格式解析错误！请联系管理员！"));
    QFile saved(dlg->downloadDir() + "/larkTools.rar");
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), QByteArray("payload"));
    QVERIFY(QDir(program.path()).isEmpty());
}

void TstQtUpdateDialog::downloadCutShortIsNotUnpacked()
{
    QTemporaryDir program;
    const QByteArray zip = makeZip([](QZipWriter &w) { w.addFile("a.txt", QByteArray(50000, 'a')); });
    m_server->answers["/up/larkTools_unix"] = {zip, true, "filename=u.zip", zip.size() / 2};
    QtUpdateDialog *dlg = openDialog();
    dlg->setProgramDir(program.path());
    dlg->SltDownloadFile();
    QVERIFY(waitForReplies(2));

    QVERIFY(!dlg->findChild<QTextBrowser *>()->toPlainText().contains("文件更新完成"));
    QVERIFY(!QFile::exists(dlg->downloadDir() + "/u.zip"));
    QVERIFY(QDir(program.path()).isEmpty());
    // the count alone does not make a download complete: the file must hold it all
    QVERIFY(!dlg->finishDownload(zip.size(), zip.size()));
    QVERIFY(QDir(program.path()).isEmpty());
}

void TstQtUpdateDialog::unpackWritesDirsFilesAndPermissions()
{
    QTemporaryDir program;
    QVERIFY(QDir().mkpath(program.path() + "/conf"));
    QFile old(program.path() + "/conf/readme.txt");
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old text that is longer");
    old.close();

    const QString zipPath = program.path() + "/u.zip";
    QByteArray zip = makeZip([](QZipWriter &w) {
        w.addDirectory("lib");
        w.addDirectory("lib/plugins");
        w.setCreationPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        w.addFile("lib/plugins/tool", "#!/bin/sh\n");
        w.setCreationPermissions(QFile::ReadOwner | QFile::WriteOwner);
        w.addFile("conf/readme.txt", "new");
        w.addFile("missing/dir/file", "no folder for it");
    });
    markExecutable(zip, "lib/plugins/tool");
    QFile zipFile(zipPath);
    QVERIFY(zipFile.open(QIODevice::WriteOnly));
    zipFile.write(zip);
    zipFile.close();

    QtUpdateDialog *dlg = openDialog();
    QVERIFY(dlg->unpackArchive(zipPath, program.path()));

    QVERIFY(QFileInfo(program.path() + "/lib/plugins").isDir());
    const QFileInfo tool(program.path() + "/lib/plugins/tool");
    QCOMPARE(tool.permissions() & 0x0fff, QFile::ReadUser | QFile::WriteUser | QFile::ExeUser | QFile::ReadGroup);
    QCOMPARE(QFileInfo(program.path() + "/conf/readme.txt").permissions() & 0x0fff,
             QFile::ReadUser | QFile::WriteUser);
    QCOMPARE(readFile(old.fileName()), QByteArray("new text that is longer")); // the old tail stays
    QVERIFY(!QFile::exists(program.path() + "/missing"));
    QCOMPARE(dlg->findChild<QTextBrowser *>()->toPlainText(),
             QString("lib\nlib/plugins\nlib/plugins/tool\nconf/readme.txt\nmissing/dir/file\n"));
    QProgressBar *bar = dlg->findChild<QProgressBar *>();
    QCOMPARE(bar->maximum(), 5);
    QCOMPARE(bar->value(), 4);

    QVERIFY(!dlg->unpackArchive(program.path() + "/none.zip", program.path()));
}

void TstQtUpdateDialog::unsafeEntriesAreSkippedAndNamed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("symLinkEntry");
    QTest::newRow("up") << "../x" << false;
    QTest::newRow("up inside") << "sub/../../x" << false;
    QTest::newRow("absolute") << "@OUT@/x" << false;
    QTest::newRow("through a link out") << "out/x" << false;
    QTest::newRow("link entry") << "x" << true;
}

void TstQtUpdateDialog::unsafeEntriesAreSkippedAndNamed()
{
    QFETCH(QString, name);
    QFETCH(bool, symLinkEntry);
    // program and outside share a parent, so "../x" from the program is outside/../x
    QTemporaryDir parent;
    const QString programDir = parent.path() + "/program";
    const QString outside = parent.path() + "/outside";
    QVERIFY(QDir().mkpath(programDir + "/sub"));
    QVERIFY(QDir().mkpath(outside));
    QVERIFY(QFile::link(outside, programDir + "/out"));
    name.replace("@OUT@", outside);

    const QString zipPath = parent.path() + "/u.zip";
    QFile zipFile(zipPath);
    QVERIFY(zipFile.open(QIODevice::WriteOnly));
    zipFile.write(makeZip([&](QZipWriter &w) {
        if (symLinkEntry)
            w.addSymLink(name, outside + "/x");
        else
            w.addFile(name, "evil");
        w.addFile("good.txt", "good");
    }));
    zipFile.close();

    QtUpdateDialog *dlg = openDialog();
    QVERIFY(dlg->unpackArchive(zipPath, programDir));

    QCOMPARE(dlg->findChild<QTextBrowser *>()->toPlainText(), QString("已跳过: %1\ngood.txt\n").arg(name));
    QVERIFY(QDir(outside).isEmpty());
    QVERIFY(!QFile::exists(parent.path() + "/x"));
    QVERIFY(!QFileInfo(programDir + "/x").isSymLink());
    QVERIFY(!QFile::exists(programDir + "/x"));
    QVERIFY(QFile::exists(programDir + "/good.txt"));
}

void TstQtUpdateDialog::restartWorksFromAPathWithBlanks()
{
    QTemporaryDir program(QDir::tempPath() + "/lark tools XXXXXX");
    const QString marker = program.path() + "/ran";
    QFile script(program.path() + "/larkTools");
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write(standInScript(marker).toUtf8());
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QVERIFY(QtUpdateDialog::restartProgram(program.path()));
    QTRY_COMPARE(readFile(marker).trimmed(), program.path().toUtf8());
}

LARK_TEST_MAIN(TstQtUpdateDialog)
#include "tst_qtupdatedialog.moc"
