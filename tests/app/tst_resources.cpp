#include "LarkTest.h"

#include "AppConfig.h"
#include "IconHelper.h"
#include "UiSkin.h"

#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QPainterPath>
#include <QPushButton>
#include <QRawFont>
#include <QTranslator>

namespace {
QStringList s_warnings;
void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &msg)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        s_warnings << msg;
}
} // namespace

// The compiled-in resources: the generated icon font must carry every glyph the
// program draws, the images and the translation must load, both skins must parse.
class TstResources : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qApp->setStyleSheet(QString()); }

    void imagesAndTranslationLoad()
    {
        for (const char *name : {"app_logo", "logo_title", "arrow-down", "arrow-up"})
            QVERIFY2(!QImage(QString(":/resources/images/%1.png").arg(name)).isNull(), name);
        QTranslator translator;
        QVERIFY(translator.load(":/resources/qm/qt_zh_CN.qm"));
        QCOMPARE(translator.translate("QPlatformTheme", "Cancel"), QString("取消"));
    }

    void iconFontDrawsEveryGlyphTheProgramUses()
    {
        QCOMPARE(IconHelper::Instance()->iconFont().family(), QString("IconFont"));
        QFile file(":/resources/fonts/iconfont.ttf");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QRawFont font(file.readAll(), 16);
        // title bar, message boxes, main window buttons, fold button, graph legend and
        // the binary editor's tool buttons; an empty outline would draw nothing
        for (uint cp : {0xE602, 0xE607, 0xE609, 0xE60B, 0xE60E, 0xE612, 0xE614, 0xE622, 0xE63B, 0xE661,
                        0xE68B, 0xE6A7, 0xE6AE, 0xE6AF, 0xE6BD, 0xE6F1, 0xE717, 0xE762, 0xE7FE, 0xEA73}) {
            const QVector<quint32> glyphs = font.glyphIndexesForString(QString(QChar(cp)));
            QVERIFY2(font.supportsCharacter(cp) && !font.pathForGlyph(glyphs.value(0)).isEmpty(),
                     qPrintable(QString::number(cp, 16)));
        }
        const QImage image = IconHelper::Instance()->getPixmap("#ffffff", QChar(0xE68B), 12, 16, 16).toImage();
        int opaque = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                opaque += qAlpha(image.pixel(x, y)) > 128;
        QVERIFY2(opaque > 10 && opaque < 16 * 16 / 2, qPrintable(QString::number(opaque))); // a cross
    }

    void sheetsParseWithoutWarnings_data()
    {
        QTest::addColumn<int>("skin");
        QTest::newRow("dark") << 0;
        QTest::newRow("light") << 1;
    }

    void sheetsParseWithoutWarnings()
    {
        QFETCH(int, skin);
        AppConfig::CreateSettings();
        s_warnings.clear();
        const QtMessageHandler previous = qInstallMessageHandler(collectWarnings);
        UiSkin::LoadStyleSheet(skin);
        // a sheet is parsed when a widget is polished with it
        QWidget window;
        auto *button = new QPushButton("确定", &window);
        new QComboBox(&window);
        window.grab();
        qInstallMessageHandler(previous);
        QVERIFY2(s_warnings.isEmpty(), qPrintable(s_warnings.join('\n')));
        QCOMPARE(button->font().pixelSize(), 13);
    }
};

LARK_TEST_MAIN(TstResources)
#include "tst_resources.moc"
