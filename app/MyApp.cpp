#include "MyApp.h"
#include "AppConfig.h"
#include "AppPaths.h"
#include "UiSkin.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>

#ifdef __GLIBC__
#include <malloc.h>
#endif

int MyApp::m_nTextCodecIndex = 1;
int MyApp::m_nSkinStyle = 0;

void MyApp::InitApp()
{
#ifdef __GLIBC__
    // A fast link shows megabytes a second as text, in chunks of a few hundred
    // kilobytes to a few megabytes. glibc raises its mmap threshold each time such a
    // chunk is freed, up to 32 MB, and then serves them from the heap, which the small
    // allocations between them keep from shrinking: over a long HEX session the program
    // held a gigabyte it no longer used. Fixed thresholds give every large block back.
    // At 1 MB the text of one display frame still comes from the heap: a lower threshold
    // made each frame an mmap with fresh page faults, a quarter more CPU for a HEX view.
    mallopt(M_MMAP_THRESHOLD, 1024 * 1024);
    mallopt(M_TRIM_THRESHOLD, 4 * 1024 * 1024);
#endif
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
