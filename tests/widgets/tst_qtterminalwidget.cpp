#include "LarkTest.h"
#include "MyApp.h"
#include "QtTerminalWidget.h"

#include <QtWidgets>
#include <QtTest>

class TstQtTerminalWidget : public QObject
{
    Q_OBJECT
private slots:
    void init() { MyApp::m_nTextCodecIndex = 1; }

    // each feed: a mode letter, then its bytes. t text, = set the text, ! return handling
    // off; a/A ASCII, h/H hex, capital with time tags, d with the default arguments
    void feedsRenderAsATerminalWould_data()
    {
        QTest::addColumn<QList<QByteArray>>("feeds");
        QTest::addColumn<QString>("shown");
        // the carriage-return rule itself is a table of its own: here the feeds reach it
        QTest::newRow("line finished later") << QList<QByteArray>{"the", "tllo\r\nwor", "tld"} << "hello\nworld\n";
        QTest::newRow("set text goes on") << QList<QByteArray>{"=boot", "ting\r\nok"} << "booting\nok\n";
        QTest::newRow("return handling off appends") << QList<QByteArray>{"!", "t10%\r", "t20%"} << "10%\n20%";
        QTest::newRow("ASCII tags only fresh lines") << QList<QByteArray>{"Aab", "Ac\n", "Ad"}
                                                     << "\n[T] ASCII >\nabc\n\n[T] ASCII >\nd";
        QTest::newRow("hex tags each call") << QList<QByteArray>{QByteArray("d\x0a\xff", 3), QByteArray("H\0", 2)}
                                            << "\n[T] Hex >\n0A FF \n[T] Hex >\n00 ";
        QTest::newRow("ASCII call wipes hex text") << QList<QByteArray>{"aone", "h\x01", "atwo"} << "onetwo";
        // GB18030 "温度" split inside its second character
        QTest::newRow("split character joins") << QList<QByteArray>{"a\xCE\xC2\xB6", "a\xC8"} << "温度";
    }

    void feedsRenderAsATerminalWould()
    {
        QFETCH(QList<QByteArray>, feeds);
        QtTerminalWidget w;
        for (const QByteArray &f : feeds) {
            const char m = f.at(0);
            m == '!' ? w.setEnableCR(false) : m == '=' ? w.setTerminalText(f.mid(1)) : m == 't' ? w.insertTerminalText(f.mid(1))
                : m == 'd' ? w.insertRecvData(f.mid(1)) : w.insertRecvData(f.mid(1), QChar(m).toLower() == 'h', QChar(m).isUpper());
        }
        QTEST(w.toPlainText().replace(QRegularExpression("\\[\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\]"), "[T]"), "shown");
        QCOMPARE(w.getLastCRText("ab\rc\r"), QString("c"));
    }

    void asciiHistoryKeepsTheLastBytes()
    {
        QtTerminalWidget w;
        QByteArray data(30000, 'x');
        for (int i = 0; i < data.size(); i += 100)
            data[i] = '\n';
        data.append("END");
        w.insertRecvData(data, false, true);
        QCOMPARE(w.recvHistory(), data.right(20480));
        QVERIFY(!w.toPlainText().contains("ASCII >")); // the header has been cut away
        w.insertRecvData("more", false, false);
        QCOMPARE(w.recvHistory(), (data + "more").right(20480));
    }
};

LARK_TEST_MAIN(TstQtTerminalWidget)
#include "tst_qtterminalwidget.moc"
