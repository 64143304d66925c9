#include "LarkTestCore.h"
#include "MyApp.h"
#include "NetworkMessageFormat.h"
#include "NumberTool.h"

#include <QTest>

// The edges of the receive view's lines and of the port fields, which the page's
// loopback tests do not reach: their common cases are checked there, end to end.
class TstNetworkMessageFormat : public QObject
{
    Q_OBJECT

private slots:
    void asciiLineDropsOnlyOneTrailingCrLfAndDecodes_data()
    {
        QTest::addColumn<QByteArray>("newLine");
        QTest::addColumn<int>("codec");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("line");
        QTest::newRow("only the last pair") << QByteArray("\r\n") << 1 << QByteArray("a\r\n\r\n") << "a\r\n";
        QTest::newRow("bare LF stays") << QByteArray("\r\n") << 1 << QByteArray("a\n") << "a\n";
        QTest::newRow("LF CR stays") << QByteArray("\r\n") << 1 << QByteArray("a\n\r") << "a\n\r";
        QTest::newRow("only a line end") << QByteArray("\r\n") << 1 << QByteArray("\r\n") << "";
        // before the serial page exists the new line is empty, which must not eat bytes
        QTest::newRow("no new line yet") << QByteArray() << 1 << QByteArray("ab\r\n") << "ab\r\n";
        // decoded with the program's text codec
        QTest::newRow("GB18030") << QByteArray("\r\n") << 1 << QByteArray("\xCE\xC2\xB6\xC8 25\xA1\xE6\r\n") << "温度 25℃";
        QTest::newRow("UTF-8") << QByteArray("\r\n") << 0 << QString("温度 25℃\r\n").toUtf8() << "温度 25℃";
    }

    void asciiLineDropsOnlyOneTrailingCrLfAndDecodes()
    {
        QFETCH(QByteArray, newLine);
        QFETCH(int, codec);
        QFETCH(QByteArray, data);
        QFETCH(QString, line);
        NumberTool::m_newLine = newLine;
        MyApp::m_nTextCodecIndex = codec;
        QCOMPARE(NetworkMessageFormat::asciiLine("c", data), "[Tcp client c] " + line);
    }

    void portTextThatIsNoPortGivesZero_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("port");
        QTest::newRow("blanks") << " 8001 " << 8001;
        QTest::newRow("highest") << "65535" << 65535;
        QTest::newRow("too high") << "70000" << 0;
        QTest::newRow("negative") << "-1" << 0;
        QTest::newRow("hex") << "0x1F40" << 0;
    }

    void portTextThatIsNoPortGivesZero()
    {
        QFETCH(QString, text);
        QTEST(int(NetworkMessageFormat::portFromText(text)), "port");
    }
};

LARK_TEST_GUILESS_MAIN(TstNetworkMessageFormat)
#include "tst_networkmessageformat.moc"
