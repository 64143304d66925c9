#include "LarkTest.h"
#include "QtUpdateDialog.h"
#include "UpdateZip.h"

#include <QtNetwork>
#include <QtWidgets>
#include <QtTest>

#include <sys/socket.h>

// The test is its own update server: plain HTTP/1.1 on loopback, one canned raw answer
// per path, the connection closed after it (so a cut-short answer is just fewer bytes).
class TstQtUpdateDialog : public QObject
{
    Q_OBJECT
protected slots:
    void onConnection()
    {
        QTcpSocket *socket = m_server.nextPendingConnection();
        connect(socket, SIGNAL(readyRead()), this, SLOT(onRequest()));
        connect(socket, SIGNAL(disconnected()), socket, SLOT(deleteLater()));
    }
    void onRequest()
    {
        QTcpSocket *socket = qobject_cast<QTcpSocket *>(sender());
        if (!socket->peek(4096).contains("\r\n\r\n"))
            return;
        m_requests << socket->readAll();
        const bool download = m_requests.last().startsWith("GET /up/");
        socket->write(m_answers.value(m_requests.last().split(' ').value(1)));
        if (download && m_end == Stall)
            return;
        if (download && m_end == Reset) {
            socket->flush();
            const linger reset{1, 0}; // closed with a reset, not a goodbye
            setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
            socket->abort();
            return;
        }
        socket->disconnectFromHost();
    }

private:
    enum End { Close, Stall, Reset };
    End m_end = Close;
    static QByteArray httpOk(const QByteArray &body, bool withLength = true, const QByteArray &fileName = "",
                             int sent = -1)
    {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\n"
               + (withLength ? "Content-Length: " + QByteArray::number(body.size()) + "\r\n" : QByteArray())
               + (fileName.isEmpty() ? QByteArray() : "Content-Disposition: attachment; filename=" + fileName + "\r\n")
               + "\r\n" + (sent < 0 ? body : body.left(sent));
    }
    // the dialog, asking the server at once; programDir set before the answer comes.
    // Null when no answer came
    QtUpdateDialog *openDialog(const QString &programDir = QString())
    {
        m_dialog = new QtUpdateDialog;
        m_replies.reset(new QSignalSpy(m_dialog->findChild<QNetworkAccessManager *>(),
                                       SIGNAL(finished(QNetworkReply *))));
        if (!programDir.isEmpty())
            m_dialog->setProgramDir(programDir);
        m_dialog->show();
        return waitForReplies(1) ? m_dialog.data() : nullptr;
    }
    bool waitForReplies(int count)
    {
        return QTest::qWaitFor([&] { return m_replies->count() >= count; }, 5000);
    }
    QString viewText() const { return m_dialog->findChild<QTextBrowser *>()->toPlainText(); }
    QString status() const { return m_dialog->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly)->text(); }
    void offer(const QByteArray &info) { m_answers["/cv/larkTools_unix"] = httpOk("{\"verNum\":\"1.0.1.6\",\"verInfo\":\"" + info + "\"}"); }

    QTcpServer m_server;
    QMap<QByteArray, QByteArray> m_answers; // path -> raw answer
    QList<QByteArray> m_requests;
    QPointer<QtUpdateDialog> m_dialog;
    std::unique_ptr<QSignalSpy> m_replies;

private slots:
    void init()
    {
        LarkTest::cleanAppDirs();
        // the program makes this folder at start-up; the dialog only writes into it
        QDir().mkpath(QCoreApplication::applicationDirPath() + "/download");
        m_answers.clear();
        m_requests.clear();
        m_end = Close;
        m_server.close();
        connect(&m_server, SIGNAL(newConnection()), this, SLOT(onConnection()), Qt::UniqueConnection);
        QVERIFY(m_server.listen(QHostAddress::LocalHost));
        QtUpdateDialog::setUpdateServer("127.0.0.1", m_server.serverPort());
    }

    void cleanup()
    {
        m_replies.reset();
        delete m_dialog.data();
        LarkTest::cleanAppDirs();
    }

    void versionCheckAnswers_data()
    {
        QTest::addColumn<QByteArray>("body"); // "-" for no server at all
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("offered");
        const QString waiting = "正在检查更新，请稍后...", upToDate = "当前版本已经是最新版本！";
        QTest::newRow("same version") << QByteArray("{\"verNum\":\"1.0.1.5\",\"verInfo\":\"x\"}") << upToDate << false;
        QTest::newRow("newer") << QByteArray("{\"verNum\":\"1.0.1.6\",\"verInfo\":\"修复串口\"}")
                               << "检测到新版本: V1.0.1.6" << true;
        QTest::newRow("two parts read as 0") << QByteArray("{\"verNum\":\"1.1\"}") << upToDate << false;
        QTest::newRow("invalid json") << QByteArray("{verNum") << "更新失败，请检查网络连接！~" << false;
        QTest::newRow("not an object") << QByteArray("[\"1.0.1.6\"]") << waiting << false;
        QTest::newRow("no body") << QByteArray() << waiting << false;
        QTest::newRow("no server") << QByteArray("-") << waiting << false;
    }

    void versionCheckAnswers()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, offered);
        m_answers["/cv/larkTools_unix"] = httpOk(body);
        if (body == "-")
            m_server.close();
        QVERIFY(openDialog());
        QTEST(status(), "status");
        QCOMPARE(viewText(), offered ? QString("修复串口\n\n是否立即下载新版本?") : QString());
    }

    void downloadUnpacksAndRestarts_data()
    {
        QTest::addColumn<bool>("withLength");
        QTest::addColumn<QByteArray>("fileName");
        QTest::addColumn<QString>("reported"); // what the view gains after the release text
        const QString unpacking = "\n文件更新完成，正在解压文件,稍后自动重启！";
        const QString unpacked = unpacking + "larkTools\ndata\ndata/big.bin\nreadme.txt\n已跳过: ../evil\n";
        QTest::newRow("content length") << true << QByteArray("larkTools_1.0.1.6.zip") << unpacked;
        QTest::newRow("no content length") << false << QByteArray("u.zip") << unpacked;
        QTest::newRow("not a zip: kept") << true << QByteArray("u.rar") << "\n升级文件格式解析错误！请联系管理员！";
    }

    void downloadUnpacksAndRestarts()
    {
        QFETCH(bool, withLength);
        QFETCH(QByteArray, fileName);
        QFETCH(QString, reported);
        const bool restarts = reported.contains("larkTools");
        // a blank in the program's path must not split the command that restarts it
        QTemporaryDir program(QDir::tempPath() + "/lark update XXXXXX");
        const QString marker = program.path() + "/restarted";
        // incompressible, so that the archive arrives in several reads
        QByteArray big(300000, 0);
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(big.data()), big.size() / 4);
        // ../evil is named as skipped; the archive's own test has the cases
        const QByteArray zip = updateZip({{"larkTools", "#!/bin/sh\necho \"$PWD\" > '" + marker.toUtf8() + "'\n"},
            {"data/", ""}, {"data/big.bin", big}, {"readme.txt", "new"}, {"../evil", "out"}}, {"larkTools"});

        offer("x");
        m_answers["/up/larkTools_unix"] = httpOk(zip, withLength, fileName);
        QtUpdateDialog *dlg = openDialog(program.path());
        QVERIFY(dlg);
        QTest::mouseClick(dlg->findChild<QPushButton *>(), Qt::LeftButton);
        if (restarts) {
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(marker), 5000);
            // the dialog quits the application before the restart; outside a running exec()
            // that leaves a flag behind which would end every later event loop at once
            QTimer::singleShot(0, qApp, SLOT(quit()));
            qApp->exec();
        } else {
            QVERIFY(waitForReplies(2));
        }
        QCOMPARE(m_requests.size(), 2);
        for (const QByteArray &request : m_requests)
            QVERIFY(request.contains("Content-Type: application/x-www-form-urlencoded\r\n"));
        QVERIFY(m_requests.last().startsWith("GET /up/larkTools_unix HTTP/1.1\r\n"));
        // the first path joins the line of the message, as the view's cursor stands there
        QCOMPARE(viewText(), "x\n\n是否立即下载新版本?" + reported);
        QCOMPARE(LarkTest::readFile(dlg->downloadDir() + "/" + fileName), zip);
        if (restarts) { // the restarted program runs in its own folder
            QCOMPARE(LarkTest::readFile(program.path() + "/data/big.bin"), big);
            QTRY_COMPARE(LarkTest::readFile(marker).trimmed(), program.path().toUtf8());
        } else { // the count alone does not make a download complete: the file must hold it all
            QVERIFY(!dlg->finishDownload(zip.size(), zip.size()) && QDir(program.path()).isEmpty());
        }
    }

    void aCopyItCannotOverwriteIsLeftToThePackageManager()
    {
        QTemporaryDir tmp;
        LarkTest::ReadOnlyFolder program(tmp.filePath("program"));
        if (!program.isReady())
            QSKIP("root without the right to mount cannot make a folder it may not write");
        offer("修复串口");
        QtUpdateDialog *dlg = openDialog(tmp.filePath("program"));
        QVERIFY(dlg);
        const QString managed = "程序由系统软件包管理，请用软件包管理器更新";
        QCOMPARE(viewText(), "修复串口\n\n" + managed);
        dlg->SltDownloadFile();
        QCOMPARE(status(), managed);
        QTest::qWait(0);
        QVERIFY(!m_requests.join().contains("/up/"));
    }

    void faultsLeaveTheProgramAsItWas_data()
    {
        QTest::addColumn<QByteArray>("answer"); // the download's raw answer
        QTest::addColumn<int>("end");           // how the server ends it
        QTest::addColumn<QString>("reported");  // what the view gains, at least
        const QByteArray zip = updateZip({{"larkTools", "#!/bin/sh\n"}, {"zeros.bin", QByteArray(2 << 20, '\0')}});
        const QString cut = "\n下载未完成(";
        // what the archive refuses, and why, is the archive's own test: here the refusal reaches the view
        QTest::newRow("stall after the headers: cancelled") << httpOk(zip, true, "u.zip", 100) << int(Stall) << QString();
        QTest::newRow("reset mid-body") << httpOk(zip, true, "u.zip", 100) << int(Reset) << cut;
        QTest::newRow("body shorter than its length") << httpOk(zip, true, "u.zip", 100) << int(Close) << cut;
        QTest::newRow("body longer than its length") << httpOk(zip.chopped(30), true, "u.zip") + zip.right(30) << int(Close)
            << "\n文件更新完成，正在解压文件,稍后自动重启！\n升级文件已损坏(目录不完整)";
    }

    // Whatever the server or the archive does wrong, nothing of the program is touched, no
    // restart comes, no partial download stays, and the view says what happened.
    void faultsLeaveTheProgramAsItWas()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, end);
        QFETCH(QString, reported);
        QTemporaryDir program;
        m_end = End(end);
        offer("x");
        m_answers["/up/larkTools_unix"] = answer;
        QtUpdateDialog *dlg = openDialog(program.path());
        QVERIFY(dlg);
        QTest::mouseClick(dlg->findChild<QPushButton *>(), Qt::LeftButton);
        if (end == Stall) {
            QTRY_VERIFY(QFile::exists(dlg->downloadDir() + "/update.tmp"));
            LarkTest::click(dlg, "取消");
            QTRY_VERIFY(m_dialog.isNull());
        } else {
            QVERIFY(waitForReplies(2));
            const QString view = viewText().mid(QString("x\n\n是否立即下载新版本?").size());
            QVERIFY2(view.startsWith(reported) && view.endsWith("，程序未做任何更改！"), qPrintable(view));
        }
        QVERIFY(!QFile::exists(QCoreApplication::applicationDirPath() + "/download/update.tmp"));
        QVERIFY(QDir(program.path()).isEmpty());
    }
};

LARK_TEST_MAIN(TstQtUpdateDialog)
#include "tst_qtupdatedialog.moc"
