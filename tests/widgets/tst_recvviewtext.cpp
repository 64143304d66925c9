#include "LarkTestCore.h"
#include "RecvViewText.h"

#include <QtTest>

class TstRecvViewText : public QObject
{
    Q_OBJECT
private slots:
    void viewFormJoinsLinesAndBreaksLongParagraphs_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("maxLine");
        QTest::addColumn<QPoint>("runBefore"); // of the paragraph and of its line
        QTest::addColumn<QString>("view"); // '|' marks a paragraph break, '/' a line break
        QTest::addColumn<QPoint>("runAfter");
        QTest::newRow("line ends inside the bound join") << "ab\ncd\r\nef\rg" << 20 << QPoint() << "ab/cd/ef/g" << QPoint(10, 1);
        QTest::newRow("the first line end past the bound ends it") << "ab\ncd\r\nef" << 4 << QPoint() << "ab/cd|ef" << QPoint(2, 2);
        QTest::newRow("cr then lf apart are two") << "a\r\r\nb" << 20 << QPoint() << "a//b" << QPoint(4, 1);
        QTest::newRow("paragraph separators stay") << QString("0102") + QChar(0x2029) + "03\n04" << 5 << QPoint()
                                                   << "0102|03/04" << QPoint(5, 2);
        // lines joined past the bound are not broken inside: only a line that long is
        QTest::newRow("joined lines are not broken") << "ab cd\nef gh" << 6 << QPoint(4, 0) << "ab cd|ef gh" << QPoint(5, 5);
        QTest::newRow("hex broken after the blank past the bound") << "01 02 03 04 05 " << 6 << QPoint()
                                                                   << "01 02 |03 04 |05 " << QPoint(3, 3);
        QTest::newRow("the run goes on from the last slice") << "03 04 05 " << 6 << QPoint(3, 3) << "03 |04 05 |"
                                                             << QPoint();
        QTest::newRow("no blank: cut 64 past the bound") << QString(70, 'x') << 4 << QPoint() << QString(68, 'x') + "|xx"
                                                         << QPoint(2, 2);
        // a break right before a line end would leave an empty line in the view
        QTest::newRow("no break before a line end") << "01 02 \n03 " << 6 << QPoint() << "01 02 |03 " << QPoint(3, 3);
        QTest::newRow("no break before a cr lf") << "01 02 \r\n03 " << 6 << QPoint() << "01 02 |03 " << QPoint(3, 3);
    }

    void viewFormJoinsLinesAndBreaksLongParagraphs()
    {
        QFETCH(QString, text);
        QFETCH(int, maxLine);
        QFETCH(QPoint, runBefore);

        RecvViewText::ViewRun run{runBefore.x(), runBefore.y()};
        QString got = RecvViewText::viewForm(text, maxLine, run);
        got.replace(QChar(QChar::ParagraphSeparator), QLatin1Char('|'));
        got.replace(QChar(QChar::LineSeparator), QLatin1Char('/'));
        QTEST(got, "view");
        QTEST(QPoint(run.paragraph, run.line), "runAfter");
    }

    void plainTextOfIsWhatTheDocumentGivesBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("plain");
        QTest::newRow("line ends") << "a\r\nb\rc\n\rd\r" << "a\nb\nc\n\nd\n";
        QTest::newRow("characters the document treats apart")
            << QString("a") + QChar(0x2028) + "b" + QChar(0x2029) + "c" + QChar(0xFDD0) + "d" + QChar(0xFDD1) + "e"
                   + QChar(0x00A0) + "f\tg" + QChar(0) + "h"
            << QString("a\nb\nc\nd\ne f\tg") + QChar(0) + "h";
        QTest::newRow("breaks side by side, controls kept") << QString("\r\r\n\x01\x1b[0m\x7f") + QChar(0x2029) + QChar(0x2028) + "\n\r"
                                                            << "\n\n\x01\x1b[0m\x7f\n\n\n\n";
    }

    void plainTextOfIsWhatTheDocumentGivesBack()
    {
        QFETCH(QString, text);
        QTEST(RecvViewText::plainTextOf(text), "plain");
    }

    void tailStartKeepsLinesAndBytesWhole_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("maxChars");
        QTest::addColumn<QString>("tail");
        QTest::newRow("cut falls on a line start") << "aaaa\nbbbb" << 4 << "bbbb";
        QTest::newRow("next line start close by") << "aaaaaaaa\nbbbbbbbb" << 10 << "bbbbbbbb";
        QTest::newRow("cr lf stays whole") << "aaaaaaa\r\nbbbbbbbb" << 9 << "bbbbbbbb";
        QTest::newRow("hex bytes") << "01 02 03 04 " << 7 << "03 04 ";
        QTest::newRow("hex bytes, cut on a blank") << "01 02 03 04 " << 6 << "03 04 ";
        QTest::newRow("no place to cut") << "abcdefghijklmnopqrstuvwxyz" << 5 << "vwxyz";
        QTest::newRow("short enough") << "abc" << 3 << "abc";
        QTest::newRow("nothing allowed") << "abc" << 0 << "";
    }

    void tailStartKeepsLinesAndBytesWhole()
    {
        QFETCH(QString, text);
        QFETCH(int, maxChars);
        QTEST(text.mid(RecvViewText::tailStart(text, maxChars)), "tail");
    }

    void slicesEndAfterALine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("budget");
        QTest::addColumn<int>("length");
        QTest::newRow("fits") << "abc\ndef" << 20 << 7;
        QTest::newRow("last line end within the budget") << "ab\ncd\nefgh" << 7 << 6;
        QTest::newRow("cr lf not split") << "ab\r\ncd" << 3 << 4;
        QTest::newRow("a longer line goes in alone") << "abcdefgh\nij" << 4 << 9;
        QTest::newRow("no line end at all") << "abcdefgh" << 4 << 8;
    }

    void slicesEndAfterALine()
    {
        QFETCH(QString, text);
        QFETCH(int, budget);
        QTEST(RecvViewText::sliceLength(text, budget), "length");
    }

    void terminalFormHonoursCarriageReturns_data()
    {
        QTest::addColumn<QString>("fed");
        QTest::addColumn<QString>("shown");
        QTest::newRow("return wipes the old line") << "abc\rde" << "de\n";
        QTest::newRow("trailing return keeps the line") << "abc\r" << "abc\n";
        QTest::newRow("empty lines vanish") << "a\r\n\r\n\r\nb" << "a\nb\n";
        QTest::newRow("lone line feed is no line end") << "a\nb\r\n" << "a\nb\n";
        // only one trailing return is forgiven: a second one leaves an empty, vanishing line
        QTest::newRow("two trailing returns") << "abc\r\r" << "";
        QTest::newRow("a lone return") << "\r" << "";
        QTest::newRow("two returns then text") << "ab\r\rc\r\nd\r\r\r\n" << "c\n";
        QTest::newRow("returns over feeds") << "50%\r\rok" << "ok\n";
    }
    void terminalFormHonoursCarriageReturns()
    {
        QFETCH(QString, fed);
        QTEST(RecvViewText::terminalForm(fed), "shown");
    }

    void saveBytesFollowTheSuffix_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QString>("view");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("txt in GB18030") << "/tmp/a.txt" << QByteArray("GB18030") << "温度\n2" << QByteArray("\xCE\xC2\xB6\xC8\n2");
        QTest::newRow("txt in UTF-8") << "/tmp/a.txt" << QByteArray("UTF-8") << "温度" << QString("温度").toUtf8();
        QTest::newRow("bin from hex") << "/tmp/a.bin" << QByteArray("GB18030") << "01 AB 0D 0A " << QByteArray("\x01\xAB\r\n", 4);
        QTest::newRow("suffix is case-sensitive") << "/tmp/a.TXT" << QByteArray("GB18030") << "41 42" << QByteArray("AB");
        QTest::newRow("no suffix is binary") << "/tmp/a" << QByteArray("GB18030") << "00 FF" << QByteArray("\x00\xFF", 2);
    }
    void saveBytesFollowTheSuffix()
    {
        QFETCH(QString, fileName);
        QFETCH(QByteArray, codec);
        QFETCH(QString, view);
        QTEST(RecvViewText::saveBytes(fileName, view, codec), "bytes");
    }
};

LARK_TEST_GUILESS_MAIN(TstRecvViewText)
#include "tst_recvviewtext.moc"
