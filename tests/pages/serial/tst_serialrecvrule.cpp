#include "LarkTestCore.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QtRecvSaveFormat.h"
#include "RecvViewText.h"
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

    // What a run of reads leaves for "保存到文件": each read a paragraph, as the view's
    // plain text reads, and the bytes of a .bin file, the lenient hex reading's quirks
    // kept (a paragraph break and the digit after it make a byte of their own)
    void readsAreSavedAsTheyShow_data()
    {
        QTest::addColumn<bool>("hex");
        QTest::addColumn<QByteArrayList>("reads");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<QByteArray>("bin");
        QByteArray all(256, 0), bin;
        for (int i = 0; i < 256; ++i)
            all[i] = char(i);
        bin = QByteArray(all).replace(213, 1, "\xFD\x4F").replace(13, 1, "\xF0\xCF");
        QTest::newRow("hex of every byte") << true << QByteArrayList{all.left(13), all.mid(13, 200), all.mid(213)}
                                           << NumberTool::byteToHex(all.left(13)) + '\n' + NumberTool::byteToHex(all.mid(13, 200))
                                                  + '\n' + NumberTool::byteToHex(all.mid(213))
                                           << bin;
        QTest::newRow("GB18030 lines, a character split over reads, controls")
            << false << QByteArrayList{"\xD7\xB4\xCC\xAC\r\nok\r", "\n\xD6", "\xD0!\r\r\n", QByteArray("\x00\x01\x1B[m\x7F", 6)}
            << QString::fromUtf8("状态\nok\n\n\n\n\xEF\xBF\xBD!\n\n\n\0\x01\x1B[m\x7F", 26) << QByteArray(10, char(0xEF));
    }

    void readsAreSavedAsTheyShow()
    {
        QFETCH(bool, hex);
        QFETCH(QByteArrayList, reads);
        QFETCH(QString, saved);
        QFETCH(QByteArray, bin);
        QString text = SerialRecvRule::displayText(reads.takeFirst(), hex);
        for (const QByteArray &read : reads)
            text += QChar(QChar::ParagraphSeparator) + SerialRecvRule::displayText(read, hex);
        const QString plain = RecvViewText::plainTextOf(text);
        QCOMPARE(plain, saved);
        QCOMPARE(QtRecvSaveFormat::saveBytes("x.bin", plain), bin);
    }
};

LARK_TEST_GUILESS_MAIN(TstSerialRecvRule)
#include "tst_serialrecvrule.moc"
