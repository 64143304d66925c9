#include "AppConfig.h"
#include "AppPaths.h"
#include "LarkRelease.h"
#include "LarkTest.h"
#include "MyApp.h"
#include "QtSendBoxWidget.h"
#include "UiSkin.h"

#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

class TstAppPaths : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { AppPaths::setProgramDir(QString()); }
    void filesLieBesideAnOwnedCopyAndInTheUserFoldersOtherwise_data();
    void filesLieBesideAnOwnedCopyAndInTheUserFoldersOtherwise();
    void settingsAndSendListsSurviveARestart_data();
    void settingsAndSendListsSurviveARestart();
    void manualAndLicenseComeFromTheCopyThenFromAnInstalledPrefix();

private:
    QTemporaryDir m_tmp;
};

void TstAppPaths::init()
{
    QVERIFY(m_tmp.isValid());
    qputenv("XDG_CONFIG_HOME", m_tmp.filePath("config").toLocal8Bit());
    qputenv("XDG_CACHE_HOME", m_tmp.filePath("cache").toLocal8Bit());
}

void TstAppPaths::filesLieBesideAnOwnedCopyAndInTheUserFoldersOtherwise_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("portable");
    QTest::newRow("a folder the user writes keeps them beside the program") << "writable" << true;
    QTest::newRow("a read-only folder sends them to the user's folders") << "read-only" << false;
    QTest::newRow("the package's install folder does too, even for root") << "installed" << false;
    QTest::newRow("a folder that does not exist does too") << "missing" << false;
}

void TstAppPaths::filesLieBesideAnOwnedCopyAndInTheUserFoldersOtherwise()
{
    QFETCH(QString, kind);
    QFETCH(bool, portable);
    QString dir = m_tmp.filePath(kind);
    QScopedPointer<LarkTest::ReadOnlyFolder> readOnly;
    if (kind == "writable")
        QDir().mkpath(dir);
    if (kind == "read-only") {
        readOnly.reset(new LarkTest::ReadOnlyFolder(dir));
        if (!readOnly->isReady())
            QSKIP("root without the right to mount cannot make a folder it may not write");
    }
    if (kind == "installed") {
        dir = LARK_INSTALL_FULL_BINDIR;
        if (!QFileInfo(dir).isDir())
            QSKIP("the install folder does not exist on this machine");
    }

    AppPaths::setProgramDir(dir);
    QCOMPARE(AppPaths::isPortable(), portable);
    QCOMPARE(AppPaths::confDir(), portable ? dir + "/conf" : m_tmp.filePath("config/larkTools/conf"));
    QCOMPARE(AppPaths::downloadDir(), portable ? dir + "/download" : m_tmp.filePath("cache/larkTools/download"));
}

void TstAppPaths::settingsAndSendListsSurviveARestart_data()
{
    QTest::addColumn<bool>("readOnly");
    QTest::newRow("portable copy") << false;
    QTest::newRow("read-only copy") << true;
}

void TstAppPaths::settingsAndSendListsSurviveARestart()
{
    QFETCH(bool, readOnly);
    const QString program = m_tmp.filePath(readOnly ? "ro-program" : "program");
    QDir().mkpath(program);
    QScopedPointer<LarkTest::ReadOnlyFolder> guard(readOnly ? new LarkTest::ReadOnlyFolder(program) : nullptr);
    if (guard && !guard->isReady())
        QSKIP("root without the right to mount cannot make a folder it may not write");
    AppPaths::setProgramDir(program);
    const QString conf = readOnly ? m_tmp.filePath("config/larkTools/conf") : program + "/conf";
    const QString download = readOnly ? m_tmp.filePath("cache/larkTools/download") : program + "/download";

    // first start: folders made, defaults written, the light skin chosen, a list kept
    MyApp::InitApp();
    QVERIFY(QFileInfo(download).isDir());
    QCOMPARE(AppConfig::m_strSettingsFile, conf + "/config.ini");
    MyApp::m_nSkinStyle = 1;
    UiSkin::LoadStyleSheet(MyApp::m_nSkinStyle);
    {
        QtSendBoxWidget box(nullptr, 7);
        QLineEdit *row = box.findChildren<QLineEdit *>().value(0);
        QVERIFY(row);
        row->setText("AT+GMR");
        QMetaObject::invokeMethod(row, "editingFinished");
    }
    QVERIFY(QFile::exists(conf + "/ser_multi_conf.txt"));

    // second start in the same process, as far as the files are concerned
    MyApp::m_nSkinStyle = 0;
    MyApp::InitApp();
    QCOMPARE(MyApp::m_nSkinStyle, 1);
    QtSendBoxWidget box(nullptr, 7);
    QVERIFY(box.multiData().values().contains("AT+GMR"));
    QCOMPARE(QDir(program).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty(), readOnly);
}

void TstAppPaths::manualAndLicenseComeFromTheCopyThenFromAnInstalledPrefix()
{
    const auto touch = [](const QString &path) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        return file.open(QIODevice::WriteOnly);
    };
    // a prefix laid out as the package installs it, the program in its bin/
    const QString prefix = m_tmp.filePath("prefix");
    QVERIFY(touch(prefix + "/bin/larkTools"));
    AppPaths::setProgramDir(prefix + "/bin");
    QVERIFY(touch(prefix + "/share/doc/larktools/manual/index.html"));
    QVERIFY(touch(prefix + "/share/doc/larktools/copyright"));
    QCOMPARE(AppPaths::manualFile(), prefix + "/share/doc/larktools/manual/index.html");
    QCOMPARE(AppPaths::licenseFile(), prefix + "/share/doc/larktools/copyright");

    // an unpacked release brings its own, and those come first
    QVERIFY(touch(prefix + "/bin/doc/manual/index.html"));
    QVERIFY(touch(prefix + "/bin/LICENSE"));
    QCOMPARE(AppPaths::manualFile(), prefix + "/bin/doc/manual/index.html");
    QCOMPARE(AppPaths::licenseFile(), prefix + "/bin/LICENSE");
}

LARK_TEST_MAIN(TstAppPaths)
#include "tst_apppaths.moc"
