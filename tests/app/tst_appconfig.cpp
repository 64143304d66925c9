#include "AppConfig.h"
#include "LarkTest.h"
#include "MyApp.h"
#include "UiSkin.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTextCodec>
#include <QtTest>

// Start-up directories and the settings file, checked on the real files beside the
// test executable (the runner wipes conf/ and download/ before each class).
class TstAppConfig : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void firstStartMakesDirectoriesAndWritesAllKeys();
    void existingFilesAreFilledOrLeftByTheirGroups_data();
    void existingFilesAreFilledOrLeftByTheirGroups();
    void unknownCodecIndexDecodesAsUtf8();
    void unknownSkinLoadsTheDarkSheetAndIsWrittenBack();
    void lightSkinSetsItsColoursAndSurvivesARestart();
    void codecChosenInMemoryDoesNotSurviveARestart();
    void localeCodecStaysGb18030();
    void resetRemovesOnlyTheSettingsFile();
    void textCodecsEncodeAndDecodeUserData();
    void unusableProgramDirectoryNeverStopsStartUp();
    void corruptSettingsFileNeverStopsStartUp();

private:
    QString confDir() const { return QCoreApplication::applicationDirPath() + "/conf"; }
    QString iniPath() const { return confDir() + "/config.ini"; }
    void writeIni(const QByteArray &content);
    void resetStatics();
};

void TstAppConfig::resetStatics()
{
    MyApp::m_nTextCodecIndex = 1;
    MyApp::m_nSkinStyle = 0;
    AppConfig::m_colorRecvBgColor = QColor("#4b4b4b");
    AppConfig::m_colorRecvTextColor = QColor("#f2f2f2");
    AppConfig::m_colorSendBgColor = QColor("#4b4b4b");
    AppConfig::m_colorSendTextColor = QColor("#f2f2f2");
    UiSkin::m_strMessageBoxTitleBg = "#323232";
}

void TstAppConfig::init()
{
    LarkTest::cleanAppDirs();
    QFile::remove(confDir()); // a plain file left by a test
    resetStatics();
}

void TstAppConfig::cleanup()
{
    QFile::remove(confDir());
    LarkTest::cleanAppDirs();
    resetStatics();
    qApp->setStyleSheet(QString());
}

void TstAppConfig::writeIni(const QByteArray &content)
{
    QDir().mkpath(confDir());
    QFile f(iniPath());
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(content);
    f.flush();
    // QSettings keeps a process-wide cache of the file keyed by time stamp and size;
    // a rewrite within the same clock tick with the same size would go unnoticed
    static int tick = 0;
    f.setFileTime(QDateTime::currentDateTime().addSecs(-3600 - ++tick), QFileDevice::FileModificationTime);
}

void TstAppConfig::firstStartMakesDirectoriesAndWritesAllKeys()
{
    MyApp::InitApp();
    QVERIFY(QDir(confDir()).exists());
    QVERIFY(QDir(QCoreApplication::applicationDirPath() + "/download").exists());
    QCOMPARE(AppConfig::m_strSettingsFile, iniPath());

    QFile f(iniPath());
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(f.readAll());
    QVERIFY(text.startsWith("[Common]"));
    // colours as lower-case #rrggbb
    const QStringList keys = {"RecvBackground=#4b4b4b", "RecvTextColor=#f2f2f2", "SendBackground=#4b4b4b",
                              "SendTextColor=#f2f2f2", "TextCodec=1", "Skin=0"};
    for (const QString &k : keys)
        QVERIFY2(text.contains(k), qPrintable(k));
    QCOMPARE(text.count('='), keys.size());
    QVERIFY(!qApp->styleSheet().isEmpty());
}

void TstAppConfig::existingFilesAreFilledOrLeftByTheirGroups_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("filled");
    QTest::newRow("empty file") << QByteArray() << true;
    QTest::newRow("keys but no group") << QByteArray("Skin=1\n") << true;
    QTest::newRow("another group only") << QByteArray("[Other]\nSkin=1\nTextCodec=0\n") << false;
    QTest::newRow("common lacking keys") << QByteArray("[Common]\nTextCodec=0\n") << false;
}

void TstAppConfig::existingFilesAreFilledOrLeftByTheirGroups()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, filled);
    writeIni(content);
    MyApp::m_nTextCodecIndex = 0;
    MyApp::m_nSkinStyle = 1;
    AppConfig::CreateSettings();
    AppConfig::LoadLocalSettings();

    QSettings s(iniPath(), QSettings::IniFormat);
    QCOMPARE(s.contains("Common/RecvBackground"), filled);
    if (filled) {
        QCOMPARE(MyApp::m_nTextCodecIndex, 1);
        QCOMPARE(MyApp::m_nSkinStyle, 0);
    } else {
        // missing keys take their read defaults; present ones are used
        QCOMPARE(MyApp::m_nSkinStyle, 0);
        QCOMPARE(MyApp::m_nTextCodecIndex, content.contains("[Common]") ? 0 : 1);
        QCOMPARE(AppConfig::m_colorRecvBgColor, QColor("#4b4b4b"));
        if (content.contains("[Other]"))
            QCOMPARE(s.value("Other/Skin").toInt(), 1);
    }
}

void TstAppConfig::unknownCodecIndexDecodesAsUtf8()
{
    writeIni("[Common]\nTextCodec=7\n");
    MyApp::InitApp();
    QCOMPARE(MyApp::m_nTextCodecIndex, 7);
    QCOMPARE(MyApp::getTextCodec(), QByteArray("UTF-8"));
    QCOMPARE(MyApp::toUnicode(QByteArray("\xe4\xb8\xad")), QString::fromUtf8("中"));
}

void TstAppConfig::unknownSkinLoadsTheDarkSheetAndIsWrittenBack()
{
    writeIni("[Common]\nSkin=5\n");
    UiSkin::m_strMessageBoxTitleBg = "#123456";
    MyApp::InitApp();
    QCOMPARE(MyApp::m_nSkinStyle, 5);
    QCOMPARE(UiSkin::m_strMessageBoxTitleBg, QString("#123456"));
    QFile dark(":/resources/css/default.css");
    QVERIFY(dark.open(QIODevice::ReadOnly));
    QVERIFY(qApp->styleSheet().size() > 0);
    QVERIFY(dark.readAll().contains(qApp->styleSheet().left(40).toUtf8()));
    QCOMPARE(AppConfig::ReadSettings("Common", "Skin").toInt(), 5);
}

void TstAppConfig::lightSkinSetsItsColoursAndSurvivesARestart()
{
    MyApp::InitApp();
    MyApp::m_nSkinStyle = 1;
    UiSkin::LoadStyleSheet(MyApp::m_nSkinStyle);
    QCOMPARE(UiSkin::m_strMessageBoxTitleBg, QString("#0078d7"));
    QCOMPARE(UiSkin::m_widgetSliderStyle, QColor("#797979"));
    const QString light = qApp->styleSheet();

    MyApp::m_nSkinStyle = 0;
    MyApp::InitApp(); // as a new start would
    QCOMPARE(MyApp::m_nSkinStyle, 1);
    QCOMPARE(qApp->styleSheet(), light);

    UiSkin::LoadStyleSheet(0);
    QCOMPARE(UiSkin::m_strMessageBoxTitleBg, QString("#323232"));
    QCOMPARE(UiSkin::m_widgetSliderStyle, QColor::fromRgb(0));
    QVERIFY(qApp->styleSheet() != light);
}

void TstAppConfig::codecChosenInMemoryDoesNotSurviveARestart()
{
    MyApp::InitApp();
    MyApp::m_nTextCodecIndex = 0;
    QCOMPARE(MyApp::getTextCodec(), QByteArray("UTF-8"));
    MyApp::InitApp();
    QCOMPARE(MyApp::m_nTextCodecIndex, 1);
    QCOMPARE(MyApp::getTextCodec(), QByteArray("GB18030"));
}

void TstAppConfig::localeCodecStaysGb18030()
{
    writeIni("[Common]\nTextCodec=0\n");
    MyApp::InitApp();
    QCOMPARE(MyApp::getTextCodec(), QByteArray("UTF-8"));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("GB18030"));
}

void TstAppConfig::resetRemovesOnlyTheSettingsFile()
{
    writeIni("[Common]\nSkin=1\nTextCodec=0\n");
    QFile other(confDir() + "/ser_send_data.txt");
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.write("keep me");
    other.close();
    MyApp::InitApp();
    QCOMPARE(MyApp::m_nSkinStyle, 1);

    MyApp::ResetConfig();
    QCOMPARE(MyApp::m_nSkinStyle, 0);
    QCOMPARE(MyApp::m_nTextCodecIndex, 1);
    QCOMPARE(AppConfig::ReadSettings("Common", "TextCodec").toInt(), 1);
    QVERIFY(QFile::exists(other.fileName()));
}

void TstAppConfig::textCodecsEncodeAndDecodeUserData()
{
    const QString text = QString::fromUtf8("温度 25℃");
    MyApp::m_nTextCodecIndex = 1;
    const QByteArray gb = MyApp::strToUnicode(text);
    QCOMPARE(gb, QTextCodec::codecForName("GB18030")->fromUnicode(text));
    QCOMPARE(MyApp::toUnicode(gb), text);
    MyApp::m_nTextCodecIndex = 0;
    QCOMPARE(MyApp::strToUnicode(text), text.toUtf8());
    QCOMPARE(MyApp::toUnicode(text.toUtf8()), text);
}

void TstAppConfig::unusableProgramDirectoryNeverStopsStartUp()
{
    // "conf" taken by a plain file: no directory can be made and nothing can be
    // written; the program must start on its defaults all the same
    QFile blocker(confDir());
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.write("x");
    blocker.close();
    MyApp::m_nSkinStyle = 0;
    MyApp::InitApp();
    QCOMPARE(MyApp::m_nSkinStyle, 0);
    QCOMPARE(MyApp::m_nTextCodecIndex, 1);
    QVERIFY(!qApp->styleSheet().isEmpty());
    QVERIFY(QFileInfo(confDir()).isFile());
}

void TstAppConfig::corruptSettingsFileNeverStopsStartUp()
{
    QByteArray junk;
    for (int i = 0; i < 4096; ++i)
        junk.append(char((i * 37 + 11) & 0xFF));
    writeIni(junk + "\n[Common\nSkin=\x01\x02\nTextCodec=abc\n");
    MyApp::InitApp();
    QVERIFY(!qApp->styleSheet().isEmpty());
}

LARK_TEST_MAIN(TstAppConfig)
#include "tst_appconfig.moc"
