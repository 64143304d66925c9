// The whole update road with real parts: nginx serving the shipped configuration on
// loopback, a portable copy of this build's larkTools in a temporary folder, and the
// release of a later version made by `make dist`. The copy's own update dialog is
// driven from inside the copy by the larke2edriver plugin; this test only sets the
// stage and judges the report. Run by `make update-e2e`, which builds both versions.
#include "LarkRelease.h"
#include "LarkTestCore.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <signal.h>

class TstUpdateEndToEnd : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void copyUpdatesItselfRestartsAndThenIsUpToDate();

private:
    static QByteArray fileHash(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256)
                                              : QByteArray();
    }
    QString report() const
    {
        QFile file(m_dir.filePath("report.txt"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    static bool copyFile(const QString &from, const QString &to)
    {
        return QFile::copy(from, to) && QFile::setPermissions(to, QFile(from).permissions());
    }

    QTemporaryDir m_dir;
    QString m_strRelease;
    QProcess m_nginx;
};

void TstUpdateEndToEnd::initTestCase()
{
    m_strRelease = QString::fromLocal8Bit(qgetenv("LARK_E2E_RELEASE"));
    if (!QFile::exists(m_strRelease + "/larkTools_unix.json"))
        QFAIL("LARK_E2E_RELEASE must name the releases/ folder of `scripts/make_dist.py` (make update-e2e does)");
    QVERIFY(m_dir.isValid());
    // nginx started by root serves as nobody, who must be able to read the release
    QFile::setPermissions(m_dir.path(), QFile::permissions(m_dir.path()) | QFile::ReadOther | QFile::ExeOther);

    // the server folder as deploy/update-server/README.md lays it out
    const QString server = m_dir.filePath("server");
    for (const char *sub : {"logs", "tmp", "releases"})
        QVERIFY(QDir().mkpath(server + "/" + sub));
    QVERIFY(copyFile(LARK_UPDATE_SERVER_DIR "/nginx.conf", server + "/nginx.conf"));
    QFile listen(server + "/listen.conf");
    QVERIFY(listen.open(QIODevice::WriteOnly));
    listen.write(QString("listen 127.0.0.1:%1;\n").arg(LARK_UPDATE_PORT).toUtf8());
    listen.close();
    for (const char *name : {"larkTools_unix.json", "larkTools_unix.zip"})
        QVERIFY(copyFile(m_strRelease + "/" + name, server + "/releases/" + name));

    m_nginx.setProcessChannelMode(QProcess::ForwardedChannels);
    m_nginx.start("nginx", {"-p", server + "/", "-c", "nginx.conf", "-e", "stderr", "-g", "daemon off;"});
    QVERIFY2(m_nginx.waitForStarted(), "nginx-light is not installed");
    QTRY_VERIFY_WITH_TIMEOUT(([] {
        QTcpSocket probe;
        probe.connectToHost("127.0.0.1", LARK_UPDATE_PORT);
        return probe.waitForConnected(200);
    }()) || m_nginx.state() == QProcess::NotRunning, 10000);
    QVERIFY2(m_nginx.state() == QProcess::Running, "nginx did not start: is the port taken?");
}

void TstUpdateEndToEnd::cleanupTestCase()
{
    // a second run left behind by a failure: its pid is in the report
    for (const QString &line : report().split('\n')) {
        if (line.startsWith("2 pid=") && !report().contains("2 done"))
            ::kill(line.mid(6).toInt(), SIGTERM);
    }
    m_nginx.terminate();
    m_nginx.waitForFinished(5000);
}

void TstUpdateEndToEnd::copyUpdatesItselfRestartsAndThenIsUpToDate()
{
    const QString copy = m_dir.filePath("copy");
    QVERIFY(QDir().mkpath(copy));
    QVERIFY(copyFile(LARK_E2E_PROGRAM, copy + "/larkTools"));
    const QByteArray oldHash = fileHash(copy + "/larkTools");

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("QT_PLUGIN_PATH", LARK_E2E_DRIVER_DIR);
    env.insert("QT_QPA_GENERIC_PLUGINS", "larke2edriver");
    env.insert("LARK_E2E_REPORT", m_dir.filePath("report.txt"));
    QProcess first;
    first.setProcessEnvironment(env);
    first.setProcessChannelMode(QProcess::ForwardedChannels);
    first.start(copy + "/larkTools", QStringList());
    QVERIFY(first.waitForStarted());
    const qint64 firstPid = first.processId();

    QTRY_VERIFY2_WITH_TIMEOUT(report().contains("2 done"), qPrintable(report()), 120000);
    QTRY_COMPARE_WITH_TIMEOUT(first.state(), QProcess::NotRunning, 10000);

    const QString current = QString("%1.%2.%3.%4").arg(LARK_VERSION_1).arg(LARK_VERSION_2).arg(LARK_VERSION_3).arg(LARK_VERSION_4);
    const QStringList lines = report().split('\n', Qt::SkipEmptyParts);
    QVERIFY2(lines.contains(QString("1 title=版本更新[%1]").arg(current)), qPrintable(report()));
    QVERIFY2(lines.contains("1 update-clicked"), qPrintable(report()));
    QVERIFY2(lines.contains("2 status=当前版本已经是最新版本！"), qPrintable(report()));
    // the restarted program is another process, and it is the release's
    QVERIFY(lines.contains(QString("1 pid=%1").arg(firstPid)));
    QVERIFY(!lines.contains(QString("2 pid=%1").arg(firstPid)));
    QVERIFY(fileHash(copy + "/larkTools") != oldHash);
    QVERIFY(QFile::exists(copy + "/doc/manual/index.html"));
    QVERIFY(QFileInfo(copy + "/larkTools").isExecutable());
    QFile json(m_strRelease + "/larkTools_unix.json");
    QVERIFY(json.open(QIODevice::ReadOnly));
    const QString newVersion = QJsonDocument::fromJson(json.readAll()).object().value("verNum").toString();
    QVERIFY2(lines.contains("1 status=检测到新版本: V" + newVersion), qPrintable(report()));
    QVERIFY2(lines.contains(QString("2 title=版本更新[%1]").arg(newVersion)), qPrintable(report()));
}

LARK_TEST_GUILESS_MAIN(TstUpdateEndToEnd)
#include "tst_updateendtoend.moc"
