#include "LarkTest.h"

#include "AppConfig.h"
#include "IconHelper.h"
#include "UiSkin.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFontDatabase>
#include <QImage>
#include <QPainterPath>
#include <QPushButton>
#include <QRawFont>
#include <QSettings>
#include <QTest>
#include <QTextCodec>
#include <QTranslator>

// The compiled-in resources: the generated icon font must carry every glyph the
// program draws, and both skins must load and parse.
class TstResources : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qApp->setStyleSheet(QString()); }

    void everyResourceLoads_data();
    void everyResourceLoads();
    void iconFontRegistersUnderItsFamilyName();
    void iconFontHasEveryGlyphTheProgramUses_data();
    void iconFontHasEveryGlyphTheProgramUses();
    void closeGlyphPixmapIsDrawn();
    void skinLoadsItsSheetAndIsSaved_data();
    void skinLoadsItsSheetAndIsSaved();
    void sheetsParseWithoutWarnings_data();
    void sheetsParseWithoutWarnings();

private:
    static QString sheetText(const QString &stem);
};

QString TstResources::sheetText(const QString &stem)
{
    QFile file(QString(":/resources/css/%1.css").arg(stem));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    QString text = QString::fromUtf8(file.readAll());
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    return text;
}

void TstResources::everyResourceLoads_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("dark sheet") << "css/default.css";
    QTest::newRow("light sheet") << "css/white.css";
    QTest::newRow("icon font") << "fonts/iconfont.ttf";
    QTest::newRow("window icon") << "images/app_logo.png";
    QTest::newRow("title logo") << "images/logo_title.png";
    QTest::newRow("arrow down") << "images/arrow-down.png";
    QTest::newRow("arrow up") << "images/arrow-up.png";
    QTest::newRow("translation") << "qm/qt_zh_CN.qm";
}

void TstResources::everyResourceLoads()
{
    QFETCH(QString, path);
    const QString full = ":/resources/" + path;
    QFile file(full);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(full));
    QVERIFY(file.size() > 0);

    if (path.endsWith(".png")) {
        const QImage image(full);
        QVERIFY(!image.isNull());
        QVERIFY(image.hasAlphaChannel());
    } else if (path.endsWith(".qm")) {
        QTranslator translator;
        QVERIFY(translator.load(full));
        // a catalog, not a list of other catalogs: a standard button is translated
        QCOMPARE(translator.translate("QPlatformTheme", "Cancel"), QString("取消"));
    } else if (path.endsWith(".css")) {
        const QByteArray data = file.readAll();
        // the dark sheet is kept with a byte order mark, and both are UTF-8
        QCOMPARE(data.startsWith("\xEF\xBB\xBF"), path == "css/default.css");
        QTextCodec::ConverterState state;
        QTextCodec::codecForName("UTF-8")->toUnicode(data.constData(), data.size(), &state);
        QCOMPARE(state.invalidChars, 0);
    }
}

void TstResources::iconFontRegistersUnderItsFamilyName()
{
    QCOMPARE(IconHelper::Instance()->iconFont().family(), QString("IconFont"));
    QVERIFY(QFontDatabase().families().contains("IconFont"));
}

void TstResources::iconFontHasEveryGlyphTheProgramUses_data()
{
    QTest::addColumn<uint>("codePoint");
    // every icon the program draws: title bar, message boxes, main window
    // buttons, fold button, graph legend and the binary editor's tool buttons
    const uint used[] = {0xE602, 0xE607, 0xE609, 0xE60B, 0xE60E, 0xE612, 0xE614,
                         0xE622, 0xE63B, 0xE661, 0xE68B, 0xE6A7, 0xE6AE, 0xE6AF,
                         0xE6BD, 0xE6F1, 0xE717, 0xE762, 0xE7FE, 0xEA73};
    for (uint cp : used)
        QTest::newRow(qPrintable(QString("U+%1").arg(cp, 4, 16, QChar('0')).toUpper())) << cp;
}

void TstResources::iconFontHasEveryGlyphTheProgramUses()
{
    QFETCH(uint, codePoint);
    QFile file(":/resources/fonts/iconfont.ttf");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QRawFont font(file.readAll(), 16);
    QVERIFY(font.isValid());
    QVERIFY(font.supportsCharacter(codePoint));
    // a glyph with an empty outline would pass the cmap test and draw nothing
    const QVector<quint32> glyphs = font.glyphIndexesForString(QString(QChar(codePoint)));
    QCOMPARE(glyphs.size(), 1);
    QVERIFY(!font.pathForGlyph(glyphs.first()).isEmpty());
}

void TstResources::closeGlyphPixmapIsDrawn()
{
    const QImage image = IconHelper::Instance()->getPixmap("#ffffff", QChar(0xE68B), 12, 16, 16).toImage();
    QCOMPARE(image.size(), QSize(16, 16));
    int opaque = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            opaque += qAlpha(image.pixel(x, y)) > 128;
    QVERIFY2(opaque > 10, qPrintable(QString::number(opaque)));
    QVERIFY(opaque < 16 * 16 / 2); // a cross, not a filled box
}

void TstResources::skinLoadsItsSheetAndIsSaved_data()
{
    QTest::addColumn<int>("skin");
    QTest::addColumn<QString>("stem");
    QTest::newRow("dark") << 0 << "default";
    QTest::newRow("light") << 1 << "white";
    QTest::newRow("unknown value falls back to dark") << 2 << "default";
}

void TstResources::skinLoadsItsSheetAndIsSaved()
{
    QFETCH(int, skin);
    QFETCH(QString, stem);
    AppConfig::CreateSettings();

    UiSkin::LoadStyleSheet(skin);

    const QString sheet = qApp->styleSheet();
    QVERIFY(sheet.size() > 1000);
    QVERIFY(!sheet.startsWith(QChar(0xFEFF)));
    QCOMPARE(sheet, sheetText(stem));
    QSettings settings(AppConfig::m_strSettingsFile, QSettings::IniFormat);
    QCOMPARE(settings.value("Common/Skin").toInt(), skin);
    QVERIFY(sheetText("default") != sheetText("white"));
}

namespace {
QStringList s_warnings;
void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &msg)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        s_warnings << msg;
}
} // namespace

void TstResources::sheetsParseWithoutWarnings_data()
{
    QTest::addColumn<int>("skin");
    QTest::newRow("dark") << 0;
    QTest::newRow("light") << 1;
}

void TstResources::sheetsParseWithoutWarnings()
{
    QFETCH(int, skin);
    AppConfig::CreateSettings();
    s_warnings.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectWarnings);

    UiSkin::LoadStyleSheet(skin);
    // a sheet is parsed when the first widget is polished with it
    QWidget window;
    auto *button = new QPushButton("确定", &window);
    auto *combo = new QComboBox(&window);
    combo->addItem("9600");
    window.ensurePolished();
    button->ensurePolished();
    combo->ensurePolished();
    window.grab();

    qInstallMessageHandler(previous);
    QVERIFY2(s_warnings.isEmpty(), qPrintable(s_warnings.join('\n')));
    QCOMPARE(button->font().pixelSize(), 13);
}

LARK_TEST_MAIN(TstResources)
#include "tst_resources.moc"
