// The whole update road with real parts: nginx serving the shipped configuration on
// loopback, a portable copy of this build's larkTools in a temporary folder, and the
// release of a later version made by `make dist`. The copy's own dialog is driven from
// inside it by the larke2edriver plugin; this test sets the stage and judges the
// report. Run by `make update-e2e`, which builds both versions.
#include "LarkRelease.h"
#include "LarkTestCore.h"

#include <QtTest>
#include <QTcpSocket>

#include <signal.h>

class TstUpdateEndToEnd : public QObject
{
    Q_OBJECT
private slots:
    void copyUpdatesItselfRestartsAndThenIsUpToDate()
    {
        const QString release = QString::fromLocal8Bit(qgetenv("LARK_E2E_RELEASE"));
        QFile json(release + "/larkTools_unix.json");
        QVERIFY2(json.open(QIODevice::ReadOnly), "LARK_E2E_RELEASE must name the releases/ folder of make_dist.py");
        const QString newVersion = QJsonDocument::fromJson(json.readAll()).object().value("verNum").toString();

        // the server folder as deploy/update-server/README.md lays it out; nginx started by
        // root serves as nobody, who must be able to read it
        QFile::setPermissions(m_dir.path(), QFile::permissions(m_dir.path()) | QFile::ReadOther | QFile::ExeOther);
        const QString server = m_dir.filePath("server"), copy = m_dir.filePath("copy");
        for (const QString &sub : {"/logs", "/tmp", "/releases"})
            QVERIFY(QDir().mkpath(server + sub));
        QVERIFY(QFile::copy(LARK_UPDATE_SERVER_DIR "/nginx.conf", server + "/nginx.conf"));
        for (const QString &name : {"/larkTools_unix.json", "/larkTools_unix.zip"})
            QVERIFY(QFile::copy(release + name, server + "/releases" + name));
        QFile listen(server + "/listen.conf");
        QVERIFY(listen.open(QIODevice::WriteOnly));
        listen.write(QString("listen 127.0.0.1:%1;\n").arg(LARK_UPDATE_PORT).toUtf8());
        listen.close();
        m_nginx.setProcessChannelMode(QProcess::ForwardedChannels);
        m_nginx.start("nginx", {"-p", server + "/", "-c", "nginx.conf", "-e", "stderr", "-g", "daemon off;"});
        QVERIFY2(m_nginx.waitForStarted(), "nginx-light is not installed");
        QTRY_VERIFY_WITH_TIMEOUT(([] {
            QTcpSocket probe;
            probe.connectToHost("127.0.0.1", LARK_UPDATE_PORT);
            return probe.waitForConnected(200);
        }()) || m_nginx.state() == QProcess::NotRunning, 10000);
        QVERIFY2(m_nginx.state() == QProcess::Running, "nginx did not start: is the port taken?");

        QVERIFY(QDir().mkpath(copy) && QFile::copy(LARK_E2E_PROGRAM, copy + "/larkTools"));
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("QT_PLUGIN_PATH", LARK_E2E_DRIVER_DIR);
        env.insert("QT_QPA_GENERIC_PLUGINS", "larke2edriver");
        env.insert("LARK_E2E_REPORT", m_dir.filePath("report.txt"));
        QProcess first;
        first.setProcessEnvironment(env);
        first.start(copy + "/larkTools", QStringList());
        QVERIFY(first.waitForStarted());
        const qint64 firstPid = first.processId();
        QTRY_VERIFY2_WITH_TIMEOUT(report().contains("2 done"), qPrintable(report()), 120000);
        QTRY_COMPARE_WITH_TIMEOUT(first.state(), QProcess::NotRunning, 10000);

        const QStringList expected = {
            QString("1 pid=%1").arg(firstPid),
            "1 status=检测到新版本: V" + newVersion,
            "1 update-clicked",
            // another process, started from the release's files: it holds the new version
            "2 status=当前版本已经是最新版本！",
        };
        const QStringList lines = report().split('\n');
        for (const QString &line : expected)
            QVERIFY2(lines.contains(line), qPrintable(line + " missing from:\n" + report()));
        QVERIFY(!lines.contains(QString("2 pid=%1").arg(firstPid)) && QFile::exists(copy + "/doc/manual/index.html"));
    }

    void cleanupTestCase()
    {
        // a second run left behind by a failure: its pid is in the report
        const QString text = report();
        const int at = text.indexOf("2 pid=");
        if (at >= 0 && !text.contains("2 done"))
            ::kill(text.mid(at + 6).section('\n', 0, 0).toInt(), SIGTERM);
        m_nginx.terminate();
        m_nginx.waitForFinished(5000);
    }

private:
    QString report() const
    {
        QFile file(m_dir.filePath("report.txt"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    QTemporaryDir m_dir;
    QProcess m_nginx;
};

LARK_TEST_GUILESS_MAIN(TstUpdateEndToEnd)
#include "tst_updateendtoend.moc"
