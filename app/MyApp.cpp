#include "MyApp.h"
#include "AppConfig.h"
#include "AppPaths.h"
#include "UiSkin.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>

int MyApp::m_nTextCodecIndex = 1;
int MyApp::m_nSkinStyle = 0;

void MyApp::InitApp()
{
    // The locale codec is GB18030 whatever the text codec setting says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("gb18030"));
    CheckDirs({"conf", "download"});
    AppConfig::CreateSettings();
    AppConfig::LoadLocalSettings();
    UiSkin::LoadStyleSheet(MyApp::m_nSkinStyle);
}

void MyApp::CheckDirs(const QStringList &dirs)
{
    // beside the executable for a copy that owns its folder, else in the XDG folders
    for (const QString &name : dirs) {
        const QString path = AppPaths::dataDir(name);
        QDir dir(path);
        if (!dir.exists())
            dir.mkpath(path);
    }
}

void MyApp::ResetConfig()
{
    QFile::remove(AppConfig::m_strSettingsFile);
    InitApp();
}

QByteArray MyApp::getTextCodec()
{
    return m_nTextCodecIndex == 1 ? QByteArray("GB18030") : QByteArray("UTF-8");
}

QByteArray MyApp::strToUnicode(const QString &text)
{
    QTextCodec *codec = QTextCodec::codecForName(getTextCodec());
    return codec ? codec->fromUnicode(text) : text.toUtf8();
}

QString MyApp::toUnicode(const QByteArray &data)
{
    QTextCodec *codec = QTextCodec::codecForName(getTextCodec());
    return codec ? codec->toUnicode(data) : QString::fromUtf8(data);
}
