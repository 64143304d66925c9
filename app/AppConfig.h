#ifndef APPCONFIG_H
#define APPCONFIG_H

#include <QColor>
#include <QMap>
#include <QString>
#include <QVariant>

// The one settings file, conf/config.ini, group Common. Every operation opens its
// own short-lived QSettings, so nothing is held open between calls.
class AppConfig
{
public:
    static QString m_strSettingsFile;
    static QColor m_colorRecvBgColor;
    static QColor m_colorRecvTextColor;
    static QColor m_colorSendBgColor;
    static QColor m_colorSendTextColor;

    static void CreateSettings();
    static void LoadLocalSettings();
    static void SaveSettings(const QString &group, const QString &key, const QVariant &value);
    static void SaveSettings(const QString &group, const QMap<QString, QVariant> &values);
    static QVariant ReadSettings(const QString &group, const QString &key, const QVariant &defaultValue = QVariant());
};

#endif // APPCONFIG_H
