#include "AppConfig.h"
#include "LarkTest.h"
#include "MyApp.h"

#include <QtWidgets>
#include <QtTest>

static QStringList s_warnings;

// Whatever conf/config.ini beside the executable holds (or whatever stands in its
// way), the program starts, leaving statics, style sheet and file as a start does.
class TstAppConfig : public QObject
{
    Q_OBJECT
    QString confDir() const { return QCoreApplication::applicationDirPath() + "/conf"; }

private slots:
    void init()
    {
        LarkTest::cleanAppDirs();
        QFile::remove(confDir()); // a plain file left by a test
        MyApp::m_nTextCodecIndex = 1;
        MyApp::m_nSkinStyle = 0;
        AppConfig::m_colorRecvBgColor = QColor("#4b4b4b");
        qApp->setStyleSheet(QString());
    }
    void cleanup() { init(); }

    void startUpReadsOrWritesTheSettingsFile_data()
    {
        // content: the file before the start; "no file", or "plain file" for a conf that
        // is a plain file, so that nothing can be made or written. -1: whatever comes.
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("codec");
        QTest::addColumn<int>("skin");
        QTest::addColumn<bool>("filled");
        QTest::newRow("first start") << QByteArray("no file") << 1 << 0 << true;
        QTest::newRow("keys but no group") << QByteArray("Skin=1\n") << 1 << 0 << true;
        QTest::newRow("another group only") << QByteArray("[Other]\nSkin=1\nTextCodec=0\n") << 1 << 0 << false;
        QTest::newRow("unknown codec decodes as UTF-8") << QByteArray("[Common]\nTextCodec=7\n") << 7 << 0 << false;
        QTest::newRow("unknown skin is dark, written back") << QByteArray("[Common]\nSkin=5\n") << 1 << 5 << false;
        const QByteArray junk = QByteArray::fromHex("00ff5b0a3d80fe").repeated(600);
        QTest::newRow("corrupt") << junk + "\n[Common\nSkin=\x01\x02\nTextCodec=abc\n" << -1 << -1 << false;
        QTest::newRow("conf is a plain file") << QByteArray("plain file") << 1 << 0 << false;
    }

    void startUpReadsOrWritesTheSettingsFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, codec);
        QFETCH(int, skin);
        QFETCH(bool, filled);
        const QString ini = confDir() + "/config.ini";
        if (content != "no file") {
            if (content != "plain file")
                QDir().mkpath(confDir());
            QFile f(content == "plain file" ? confDir() : ini);
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(content) == content.size() && f.flush());
            // QSettings caches files by time stamp and size: make each one look new
            static int tick = 0;
            f.setFileTime(QDateTime::currentDateTime().addSecs(-3600 - ++tick), QFileDevice::FileModificationTime);
        }
        // in memory, away from every default, as a previous run may have left them
        MyApp::m_nTextCodecIndex = 0;
        MyApp::m_nSkinStyle = 1;
        AppConfig::m_colorRecvBgColor = QColor("#123456");

        s_warnings.clear();
        const auto previous = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &msg) {
            if (type != QtDebugMsg && type != QtInfoMsg)
                s_warnings << msg;
        });
        MyApp::InitApp();
        // the sheet is parsed when a widget is polished with it
        QWidget window;
        new QPushButton("确定", &window);
        new QComboBox(&window);
        window.grab();
        qInstallMessageHandler(previous);
        QVERIFY2(s_warnings.isEmpty(), qPrintable(s_warnings.join('\n')));
        QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("GB18030"));
        QVERIFY(content == "plain file" ? QFileInfo(confDir()).isFile()
                                        : QDir(QCoreApplication::applicationDirPath() + "/download").exists());
        if (codec < 0)
            return; // a corrupt file only must not stop the start
        QCOMPARE(MyApp::m_nTextCodecIndex, codec);
        const QString text = QString::fromUtf8("温度 25℃");
        QCOMPARE(MyApp::strToUnicode(text), QTextCodec::codecForName(codec == 1 ? "GB18030" : "UTF-8")->fromUnicode(text));
        QCOMPARE(MyApp::toUnicode(MyApp::strToUnicode(text)), text);
        QCOMPARE(MyApp::m_nSkinStyle, skin);
        QSettings s(ini, QSettings::IniFormat);
        QCOMPARE(s.value("Common/Skin").toInt(), skin);
        QCOMPARE(s.contains("Common/RecvBackground"), filled);
        QCOMPARE(s.value("Other/Skin").toInt(), content.startsWith("[Other]") ? 1 : 0); // left alone
        if (filled) {
            // colours as lower-case #rrggbb, taken from memory at the time of writing
            QCOMPARE(s.value("Common/RecvBackground").toString(), QString("#123456"));
            QCOMPARE(s.value("Common/TextCodec").toInt(), 1);
        } else if (content.startsWith("[")) {
            QCOMPARE(AppConfig::m_colorRecvBgColor, QColor("#4b4b4b")); // the read default
        }
    }
};

LARK_TEST_MAIN(TstAppConfig)
#include "tst_appconfig.moc"
