#ifndef UISKIN_H
#define UISKIN_H

#include <QColor>
#include <QString>

// Skin colours that code needs outside the style sheets, and the loading of the sheets.
class UiSkin
{
public:
    static QString m_strAppFontNormal;
    static QString m_strTextColor;
    static QString m_strHighLightClr;
    static QString m_strMessageBoxSlider;
    static QString m_strMessageBoxTitleBg;
    static QString m_strMessageBoxBg;
    static QString m_strMessageBoxTextClr;
    static QString m_strMessageBoxBtnBg;
    static QColor m_widgetSliderStyle;

    static void LoadStyleSheet(const int &skin);
};

#endif // UISKIN_H
