#include "LarkTestCore.h"
#include "MyApp.h"
#include "NetworkMessageFormat.h"
#include "NumberTool.h"

#include <QTest>
#include <QTextCodec>

// The edges of the receive view's lines and of the port fields, which the page's
// loopback tests do not reach: their common cases are checked there, end to end.
class TstNetworkMessageFormat : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        // what the serial page sets up at start
        NumberTool::m_newLine = QByteArray("\r\n");
        MyApp::m_nTextCodecIndex = 1;
    }

    void asciiLineDropsOnlyOneTrailingCrLf_data()
    {
        QTest::addColumn<QByteArray>("newLine");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("line");
        QTest::newRow("only the last pair") << QByteArray("\r\n") << QByteArray("a\r\n\r\n") << "[Tcp client c] a\r\n";
        QTest::newRow("bare LF stays") << QByteArray("\r\n") << QByteArray("a\n") << "[Tcp client c] a\n";
        QTest::newRow("LF CR stays") << QByteArray("\r\n") << QByteArray("a\n\r") << "[Tcp client c] a\n\r";
        QTest::newRow("only a line end") << QByteArray("\r\n") << QByteArray("\r\n") << "[Tcp client c] ";
        // before the serial page exists the new line is empty, which must not eat bytes
        QTest::newRow("no new line yet") << QByteArray() << QByteArray("ab\r\n") << "[Tcp client c] ab\r\n";
    }

    void asciiLineDropsOnlyOneTrailingCrLf()
    {
        QFETCH(QByteArray, newLine);
        QFETCH(QByteArray, data);
        QFETCH(QString, line);
        NumberTool::m_newLine = newLine;
        QCOMPARE(NetworkMessageFormat::asciiLine("c", data), line);
    }

    void asciiLineDecodesWithTheTextCodec_data()
    {
        QTest::addColumn<int>("codecIndex");
        QTest::addColumn<QByteArray>("codec");
        QTest::newRow("GB18030") << 1 << QByteArray("GB18030");
        QTest::newRow("UTF-8") << 0 << QByteArray("UTF-8");
    }

    void asciiLineDecodesWithTheTextCodec()
    {
        QFETCH(int, codecIndex);
        QFETCH(QByteArray, codec);
        MyApp::m_nTextCodecIndex = codecIndex;
        const QByteArray bytes = QTextCodec::codecForName(codec)->fromUnicode("温度 25℃") + "\r\n";
        QCOMPARE(NetworkMessageFormat::asciiLine("c", bytes), QString("[Tcp client c] 温度 25℃"));
    }

    void portTextThatIsNoPortGivesZero_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("port");
        QTest::newRow("blanks") << " 8001 " << 8001;
        QTest::newRow("highest") << "65535" << 65535;
        QTest::newRow("too high") << "65536" << 0;
        QTest::newRow("negative") << "-1" << 0;
        QTest::newRow("hex") << "0x1F40" << 0;
    }

    void portTextThatIsNoPortGivesZero()
    {
        QFETCH(QString, text);
        QFETCH(int, port);
        QCOMPARE(int(NetworkMessageFormat::portFromText(text)), port);
    }
};

LARK_TEST_GUILESS_MAIN(TstNetworkMessageFormat)
#include "tst_networkmessageformat.moc"
