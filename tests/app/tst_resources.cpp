#include "IconHelper.h"
#include "LarkGuiTest.h"

#include <QtGui>
#include <QTranslator>

// The icon font must draw every glyph the program uses; images and translation load.
class TstResources : public QObject
{
    Q_OBJECT

private slots:
    void compiledInResourcesLoad()
    {
        Q_INIT_RESOURCE(larkresources); // the program does this in its skin code
        for (const char *name : {"app_logo", "logo_title", "arrow-down", "arrow-up"})
            QVERIFY2(!QImage(QString(":/resources/images/%1.png").arg(name)).isNull(), name);
        QTranslator translator;
        QVERIFY(translator.load(":/resources/qm/qt_zh_CN.qm"));
        QCOMPARE(translator.translate("QPlatformTheme", "Cancel"), QString("取消"));
        QCOMPARE(IconHelper::Instance()->iconFont().family(), QString("IconFont"));
        const QRawFont font(QString(":/resources/fonts/iconfont.ttf"), 16);
        // title bar, message boxes, main window buttons, fold button, graph legend and
        // the binary editor's tool buttons; an empty outline would draw nothing
        for (uint cp : {0xE602, 0xE607, 0xE609, 0xE60B, 0xE60E, 0xE612, 0xE614, 0xE622, 0xE63B, 0xE661,
                        0xE68B, 0xE6A7, 0xE6AE, 0xE6AF, 0xE6BD, 0xE6F1, 0xE717, 0xE762, 0xE7FE, 0xEA73})
            QVERIFY2(font.supportsCharacter(cp)
                         && !font.pathForGlyph(font.glyphIndexesForString(QChar(cp)).value(0)).isEmpty(),
                     qPrintable(QString::number(cp, 16)));
    }
};

LARK_TEST_GUI_MAIN(TstResources)
#include "tst_resources.moc"
