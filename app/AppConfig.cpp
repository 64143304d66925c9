#include "AppConfig.h"
#include "AppPaths.h"
#include "MyApp.h"

#include <QFile>
#include <QSettings>

QString AppConfig::m_strSettingsFile = "conf/config.ini";
QColor AppConfig::m_colorRecvBgColor = QColor("#4b4b4b");
QColor AppConfig::m_colorRecvTextColor = QColor("#f2f2f2");
QColor AppConfig::m_colorSendBgColor = QColor("#4b4b4b");
QColor AppConfig::m_colorSendTextColor = QColor("#f2f2f2");

void AppConfig::CreateSettings()
{
    m_strSettingsFile = AppPaths::confDir() + "/config.ini";
    QSettings settings(m_strSettingsFile, QSettings::IniFormat);
    const QString groups = settings.childGroups().join("");
    // An existing file with any group at all is left as it is, whatever keys it lacks.
    if (QFile::exists(m_strSettingsFile) && !groups.isEmpty())
        return;
    settings.beginGroup("Common");
    settings.setValue("RecvBackground", m_colorRecvBgColor.name());
    settings.setValue("RecvTextColor", m_colorRecvTextColor.name());
    settings.setValue("SendBackground", m_colorSendBgColor.name());
    settings.setValue("SendTextColor", m_colorSendTextColor.name());
    settings.setValue("TextCodec", 1);
    settings.setValue("Skin", 0);
    settings.endGroup();
}

void AppConfig::LoadLocalSettings()
{
    QSettings settings(m_strSettingsFile, QSettings::IniFormat);
    settings.beginGroup("Common");
    m_colorRecvBgColor.setNamedColor(settings.value("RecvBackground", "#4b4b4b").toString());
    m_colorRecvTextColor.setNamedColor(settings.value("RecvTextColor", "#f2f2f2").toString());
    m_colorSendBgColor.setNamedColor(settings.value("SendBackground", "#4b4b4b").toString());
    m_colorSendTextColor.setNamedColor(settings.value("SendTextColor", "#f2f2f2").toString());
    MyApp::m_nTextCodecIndex = settings.value("TextCodec", 1).toInt();
    MyApp::m_nSkinStyle = settings.value("Skin", 0).toInt();
    settings.endGroup();
}

void AppConfig::SaveSettings(const QString &group, const QString &key, const QVariant &value)
{
    QSettings settings(m_strSettingsFile, QSettings::IniFormat);
    settings.beginGroup(group);
    settings.setValue(key, value);
    settings.endGroup();
}

void AppConfig::SaveSettings(const QString &group, const QMap<QString, QVariant> &values)
{
    QSettings settings(m_strSettingsFile, QSettings::IniFormat);
    settings.beginGroup(group);
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        settings.setValue(it.key(), it.value());
    settings.endGroup();
    settings.sync();
}

QVariant AppConfig::ReadSettings(const QString &group, const QString &key, const QVariant &defaultValue)
{
    QSettings settings(m_strSettingsFile, QSettings::IniFormat);
    settings.beginGroup(group);
    const QVariant v = settings.value(key, defaultValue);
    settings.endGroup();
    return v;
}
