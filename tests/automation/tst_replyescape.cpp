#include "LarkTestCore.h"
#include "ReplyEscape.h"

#include <QTextCodec>

// The two byte notations of reply rules, as one table: what a user types, what leaves.
class TstReplyEscape : public QObject
{
    Q_OBJECT

private slots:
    void typedNotationsGiveTheirBytes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("codec"); // none: strict hex pairs
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");
        QTest::newRow("plain") << "AT" << QByteArray("UTF-8") << QByteArray("AT") << "";
        QTest::newRow("every escape") << "a\\r\\n\\t\\\\b" << QByteArray("UTF-8") << QByteArray("a\r\n\t\\b") << "";
        QTest::newRow("raw bytes either case") << "\\x00\\xfF\\x7e" << QByteArray("UTF-8") << QByteArray("\x00\xff\x7e", 3) << "";
        QTest::newRow("codec encodes the rest") << "好\\n" << QByteArray("GB18030") << QByteArray("\xba\xc3\n") << "";
        QTest::newRow("utf-8 beside a raw byte") << "好\\x80" << QByteArray("UTF-8") << QByteArray("\xe5\xa5\xbd\x80") << "";
        QTest::newRow("trailing backslash") << "OK\\" << QByteArray("UTF-8") << QByteArray() << "第 3 个字符";
        QTest::newRow("unknown escape") << "a\\q" << QByteArray("UTF-8") << QByteArray() << "\\q";
        QTest::newRow("one hex digit") << "\\x4" << QByteArray("UTF-8") << QByteArray() << "两位十六进制";
        QTest::newRow("bad hex digit") << "\\x4g" << QByteArray("UTF-8") << QByteArray() << "两位十六进制";
        QTest::newRow("hex packed, tabs and newlines") << "aa55\t0D\n01" << QByteArray() << QByteArray("\xaa\x55\x0d\x01") << "";
        QTest::newRow("hex empty") << "  " << QByteArray() << QByteArray() << "";
        QTest::newRow("hex odd digit count") << "AA5" << QByteArray() << QByteArray() << "第 3 个字符";
        QTest::newRow("hex byte split by a space") << "A A" << QByteArray() << QByteArray() << "两位";
        QTest::newRow("hex not hex") << "AG" << QByteArray() << QByteArray() << "\"G\"";
    }
    void typedNotationsGiveTheirBytes()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, codec);
        QFETCH(QString, error);
        QString why;
        QTEST(codec.isEmpty() ? ReplyEscape::fromHex(text, &why)
                              : ReplyEscape::fromText(text, QTextCodec::codecForName(codec), &why), "bytes");
        QVERIFY2(error.isEmpty() ? why.isEmpty() : why.contains(error), qPrintable(why));
    }
};

LARK_TEST_GUILESS_MAIN(TstReplyEscape)
#include "tst_replyescape.moc"
