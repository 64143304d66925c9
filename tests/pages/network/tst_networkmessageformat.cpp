#include "LarkTestCore.h"
#include "MyApp.h"
#include "NetworkMessageFormat.h"
#include "NumberTool.h"

#include <QTest>
#include <QTextCodec>

// The receive view's lines and the page's field parsing, without a window.
class TstNetworkMessageFormat : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // what the serial page sets up at start
        NumberTool::m_newLine = QByteArray("\r\n");
    }

    void cleanup()
    {
        MyApp::m_nTextCodecIndex = 1;
        NumberTool::m_newLine = QByteArray("\r\n");
    }

    void asciiLineTagsTheSenderAndDropsOneTrailingLineEnd_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("line");
        QTest::newRow("server client") << "127.0.0.1 23" << QByteArray("hello\r\n")
                                       << "[Tcp client 127.0.0.1 23] hello";
        QTest::newRow("from the server") << NetworkMessageFormat::serverSenderName() << QByteArray("ok")
                                         << "[Tcp client  来自服务端消息 ] ok";
        QTest::newRow("udp") << NetworkMessageFormat::udpSenderName(QHostAddress("10.0.0.9"), 5000)
                             << QByteArray("text") << "[Tcp client  UDP from 10.0.0.9:5000 ] text";
        QTest::newRow("only the last pair goes") << "c" << QByteArray("a\r\n\r\n") << "[Tcp client c] a\r\n";
        QTest::newRow("inner line ends stay") << "c" << QByteArray("a\r\nb") << "[Tcp client c] a\r\nb";
        QTest::newRow("bare LF stays") << "c" << QByteArray("a\n") << "[Tcp client c] a\n";
        QTest::newRow("bare CR stays") << "c" << QByteArray("a\r") << "[Tcp client c] a\r";
        QTest::newRow("LF CR is no line end") << "c" << QByteArray("a\n\r") << "[Tcp client c] a\n\r";
        QTest::newRow("only a line end") << "c" << QByteArray("\r\n") << "[Tcp client c] ";
        QTest::newRow("markup is text") << "c" << QByteArray("<b>x</b>") << "[Tcp client c] <b>x</b>";
    }

    void asciiLineTagsTheSenderAndDropsOneTrailingLineEnd()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, data);
        QFETCH(QString, line);
        QCOMPARE(NetworkMessageFormat::asciiLine(name, data), line);
    }

    void asciiLineKeepsEverythingBeforeTheNewLineIsSetUp()
    {
        // before the serial page exists m_newLine is empty, which must not eat bytes
        NumberTool::m_newLine.clear();
        QCOMPARE(NetworkMessageFormat::asciiLine("c", "ab\r\n"), QString("[Tcp client c] ab\r\n"));
        QCOMPARE(NetworkMessageFormat::asciiLine("c", "ab"), QString("[Tcp client c] ab"));
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
        const QString text = "温度 25℃";
        const QByteArray bytes = QTextCodec::codecForName(codec)->fromUnicode(text) + "\r\n";
        QCOMPARE(NetworkMessageFormat::asciiLine("c", bytes), "[Tcp client c] " + text);
    }

    void hexTextRunsOnWithoutTagsOrBreaks()
    {
        QCOMPARE(NetworkMessageFormat::hexText(QByteArray("\x01\xAB\r\n", 4)), QString("01 AB 0D 0A "));
        QCOMPARE(NetworkMessageFormat::hexText(QByteArray()), QString());
    }

    void udpSenderNameShowsMappedIpv4AsIpv4_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("name");
        QTest::newRow("mapped") << "::ffff:192.168.1.7" << 6000 << " UDP from 192.168.1.7:6000 ";
        QTest::newRow("ipv4") << "127.0.0.1" << 1 << " UDP from 127.0.0.1:1 ";
        QTest::newRow("ipv6") << "::1" << 65535 << " UDP from ::1:65535 ";
    }

    void udpSenderNameShowsMappedIpv4AsIpv4()
    {
        QFETCH(QString, address);
        QFETCH(int, port);
        QFETCH(QString, name);
        QCOMPARE(NetworkMessageFormat::udpSenderName(QHostAddress(address), quint16(port)), name);
    }

    void portTextThatIsNoPortGivesZero_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("port");
        QTest::newRow("default") << "8000" << 8000;
        QTest::newRow("blanks") << " 8001 " << 8001;
        QTest::newRow("highest") << "65535" << 65535;
        QTest::newRow("too high") << "65536" << 0;
        QTest::newRow("far too high") << "99999999999" << 0;
        QTest::newRow("negative") << "-1" << 0;
        QTest::newRow("letters") << "80a0" << 0;
        QTest::newRow("empty") << "" << 0;
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
