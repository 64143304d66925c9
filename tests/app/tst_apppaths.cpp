#include "AppConfig.h"
#include "AppPaths.h"
#include "LarkRelease.h"
#include "LarkTest.h"
#include "MyApp.h"
#include "QtSendBoxWidget.h"
#include "UiSkin.h"

#include <QLineEdit>
#include <QtTest>

class TstAppPaths : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        QVERIFY(m_tmp.isValid());
        qputenv("XDG_CONFIG_HOME", m_tmp.filePath("config").toLocal8Bit());
        qputenv("XDG_CACHE_HOME", m_tmp.filePath("cache").toLocal8Bit());
    }
    void cleanup() { AppPaths::setProgramDir(QString()); }

    void aCopyOwnsOnlyAFolderItCanWriteAndWasNotInstalledIn()
    {
        QVERIFY(AppPaths::isPortableDir(m_tmp.path()) && !AppPaths::isPortableDir(m_tmp.filePath("missing")));
        // root can write there, but the package manager owns it
        if (QFileInfo(LARK_INSTALL_FULL_BINDIR).isDir())
            QVERIFY(!AppPaths::isPortableDir(LARK_INSTALL_FULL_BINDIR));
    }

    void settingsAndSendListsSurviveARestart_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("portable copy") << false;
        QTest::newRow("read-only copy") << true;
    }

    void settingsAndSendListsSurviveARestart()
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

private:
    QTemporaryDir m_tmp;
};

LARK_TEST_MAIN(TstAppPaths)
#include "tst_apppaths.moc"
