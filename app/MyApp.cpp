#include "MyApp.h"
#include "AppConfig.h"
#include "UiSkin.h"

#include <QCoreApplication>
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
    const QString base = QCoreApplication::applicationDirPath() + "/";
    for (const QString &name : dirs) {
        QDir dir(base + name);
        if (!dir.exists())
            dir.mkpath(base + name);
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
