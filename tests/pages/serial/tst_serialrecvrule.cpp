#include "LarkTestCore.h"
#include "MyApp.h"
#include "SerialRecvRule.h"

#include <QtTest>

class TstSerialRecvRule : public QObject
{
    Q_OBJECT
private slots:
    void onlyTheFirstTextChunkEndingAbove0x80IsHeld_data()
    {
        QTest::addColumn<QByteArray>("chunk");
        QTest::addColumn<bool>("ascii");
        QTest::addColumn<QByteArray>("waiting");
        QTest::addColumn<bool>("held");
        QTest::newRow("ends in a lead byte") << QByteArray("AT+\xD6") << true << QByteArray() << true;
        QTest::newRow("ends in 0xFF") << QByteArray("\xFF") << true << QByteArray() << true;
        QTest::newRow("0x80 is not above 0x80") << QByteArray("x\x80") << true << QByteArray() << false;
        QTest::newRow("plain ascii") << QByteArray("ok\r\n") << true << QByteArray() << false;
        QTest::newRow("high inside, low at the end") << QByteArray("\xD6\xD0!") << true << QByteArray() << false;
        QTest::newRow("hex display never holds") << QByteArray("\xD6") << false << QByteArray() << false;
        QTest::newRow("something waits already") << QByteArray("y\xD6") << true << QByteArray("x\xD6") << false;
        QTest::newRow("empty chunk") << QByteArray() << true << QByteArray() << false;
    }

    void onlyTheFirstTextChunkEndingAbove0x80IsHeld()
    {
        QFETCH(QByteArray, chunk);
        QFETCH(bool, ascii);
        QFETCH(QByteArray, waiting);
        QTEST(SerialRecvRule::holdChunk(chunk, ascii, waiting), "held");
    }

    void chunksShowAsHexOrInTheTextCodec_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("hex");
        QTest::addColumn<int>("codec");
        QTest::addColumn<QString>("text");
        QTest::newRow("hex, a blank after each byte") << QByteArray("\x00\x7F\x80\xFF", 4) << true << 1 << "00 7F 80 FF ";
        QTest::newRow("GB18030") << QByteArray("\xD6\xD0\xCE\xC4!") << false << 1 << "中文!";
        QTest::newRow("UTF-8") << QString("中文").toUtf8() << false << 0 << "中文";
        QTest::newRow("markup stays text") << QByteArray("<b>") << false << 1 << "<b>";
    }

    void chunksShowAsHexOrInTheTextCodec()
    {
        QFETCH(QByteArray, data);
        QFETCH(bool, hex);
        QFETCH(int, codec);
        MyApp::m_nTextCodecIndex = codec;
        QTEST(SerialRecvRule::displayText(data, hex), "text");
        MyApp::m_nTextCodecIndex = 1;
    }

    void logTagNamesTheTimeAndTheForm()
    {
        QCOMPARE(SerialRecvRule::logTag(QTime(9, 5, 7, 42), true), QString("[09:05:07.042] ASCII >"));
        QCOMPARE(SerialRecvRule::logTag(QTime(23, 59, 59, 999), false), QString("[23:59:59.999] HEX >"));
    }
};

LARK_TEST_GUILESS_MAIN(TstSerialRecvRule)
#include "tst_serialrecvrule.moc"
