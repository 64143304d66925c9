#include "UiSkin.h"
#include "AppConfig.h"

#include <QApplication>
#include <QFile>

// The resources live in a static library; referencing them here, in a file every
// program links, registers them before main runs.
static int lark_init_resources()
{
    Q_INIT_RESOURCE(larkresources);
    return 0;
}
static const int s_larkResourcesRegistered = lark_init_resources();

QString UiSkin::m_strAppFontNormal = "Source Code Pro";
QString UiSkin::m_strTextColor = "#f2f2f2";
QString UiSkin::m_strHighLightClr = "#02a1dd";
QString UiSkin::m_strMessageBoxSlider = "#797979";
QString UiSkin::m_strMessageBoxTitleBg = "#323232";
QString UiSkin::m_strMessageBoxBg = "#1E1E1E";
QString UiSkin::m_strMessageBoxTextClr = "#AEBFC5";
QString UiSkin::m_strMessageBoxBtnBg = "#323232";
QColor UiSkin::m_widgetSliderStyle = QColor::fromRgb(0);

void UiSkin::LoadStyleSheet(const int &skin)
{
    QString stem = "default";
    if (skin == 0) {
        m_strMessageBoxTitleBg = "#323232";
        m_strMessageBoxBg = "#1E1E1E";
        m_strMessageBoxTextClr = "#AEBFC5";
        m_strMessageBoxBtnBg = "#323232";
        m_widgetSliderStyle = QColor::fromRgb(0);
    } else if (skin == 1) {
        stem = "white";
        m_strMessageBoxTitleBg = "#0078d7";
        m_strMessageBoxBg = "#f0f0f0";
        m_strMessageBoxTextClr = "#000000";
        m_strMessageBoxBtnBg = "#e1e1e1";
        m_widgetSliderStyle = QColor("#797979");
    }
    AppConfig::SaveSettings("Common", "Skin", skin);

    QFile file(QString(":/resources/css/%1.css").arg(stem));
    if (!file.open(QIODevice::ReadOnly))
        return;
    QByteArray data = file.readAll();
    const int zero = data.indexOf('\0');
    if (zero >= 0)
        data.truncate(zero);
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3); // the sheets are saved with a byte order mark
    qApp->setStyleSheet(QString::fromUtf8(data));
    file.close();
}
