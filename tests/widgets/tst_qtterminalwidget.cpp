#include "LarkTest.h"
#include "MyApp.h"
#include "QtTerminalWidget.h"

#include <QRegularExpression>
#include <QScrollBar>
#include <QTextCodec>
#include <QtTest>

class TstQtTerminalWidget : public QObject
{
    Q_OBJECT
private slots:
    void init() { MyApp::m_nTextCodecIndex = 1; }

    void carriageReturnLeavesTheLastPiece_data();
    void carriageReturnLeavesTheLastPiece();
    void textFeedRendersLinesAsATerminalWould_data();
    void textFeedRendersLinesAsATerminalWould();
    void textFeedWithoutCrHandlingAppendsAsItIs();
    void setTerminalTextSeedsTheRawText();

    void asciiFeedTagsOnlyFreshLines();
    void asciiFeedWithoutLogReadsNoTime();
    void asciiHistoryKeepsTheLastBytes();
    void splitMultiByteCharacterShowsWholeOnceItsTailArrives();
    void hexFeedTagsEachCallAndRunsOnWithoutTags();
    void asciiCallWipesHexTextFromTheView();
    void clearEmptiesEverythingButTheCrSetting();
    void viewFollowsTheNewestData();
};

void TstQtTerminalWidget::carriageReturnLeavesTheLastPiece_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << "" << "";
    QTest::newRow("plain") << "abc" << "abc";
    QTest::newRow("overwrite wipes the old line") << "abc\rde" << "de";
    QTest::newRow("trailing return keeps the line") << "abc\r" << "abc";
    QTest::newRow("two trailing returns") << "abc\r\r" << "";
    QTest::newRow("lone return") << "\r" << "";
}

void TstQtTerminalWidget::carriageReturnLeavesTheLastPiece()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    QtTerminalWidget w;
    QCOMPARE(w.getLastCRText(text), line);
}

void TstQtTerminalWidget::textFeedRendersLinesAsATerminalWould_data()
{
    QTest::addColumn<QStringList>("feeds");
    QTest::addColumn<QString>("shown");
    QTest::newRow("two lines") << QStringList{"a\r\nb\r\n"} << "a\nb\n";
    QTest::newRow("progress overwrites") << QStringList{"10%\r", "20%\r"} << "20%\n";
    QTest::newRow("line finished later") << QStringList{"he", "llo\r\nwor", "ld"} << "hello\nworld\n";
    QTest::newRow("empty lines vanish") << QStringList{"a\r\n\r\n\r\nb"} << "a\nb\n";
    QTest::newRow("lone line feed is no line end") << QStringList{"a\nb\r\n"} << "a\nb\n";
}

void TstQtTerminalWidget::textFeedRendersLinesAsATerminalWould()
{
    QFETCH(QStringList, feeds);
    QFETCH(QString, shown);
    QtTerminalWidget w;
    for (const QString &f : feeds)
        w.insertTerminalText(f);
    QCOMPARE(w.toPlainText(), shown);
}

void TstQtTerminalWidget::textFeedWithoutCrHandlingAppendsAsItIs()
{
    QtTerminalWidget w;
    QVERIFY(w.isEnableCR());
    w.setEnableCR(false);
    w.insertTerminalText("10%\r");
    w.insertTerminalText("20%");
    QCOMPARE(w.toPlainText(), QString("10%\n20%"));
    // the raw text was not touched: turning handling on renders only later feeds
    w.setEnableCR(true);
    w.insertTerminalText("x\r\n");
    QCOMPARE(w.toPlainText(), QString("x\n"));
}

void TstQtTerminalWidget::setTerminalTextSeedsTheRawText()
{
    QtTerminalWidget w;
    w.setTerminalText("boot");
    QCOMPARE(w.toPlainText(), QString("boot"));
    w.insertTerminalText("ing\r\nok");
    QCOMPARE(w.toPlainText(), QString("booting\nok\n"));
}

void TstQtTerminalWidget::asciiFeedTagsOnlyFreshLines()
{
    QtTerminalWidget w;
    w.insertRecvData("ab", false, true);
    w.insertRecvData("c\n", false, true);
    w.insertRecvData("d", false, true);
    const QString text = QString::fromLatin1(w.recvHistory());
    QRegularExpression re("^\\n\\[\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\] ASCII >\\nabc\\n"
                          "\\n\\[\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\] ASCII >\\nd$");
    QVERIFY2(re.match(text).hasMatch(), qPrintable(text));
    QCOMPARE(w.toPlainText(), text);
}

void TstQtTerminalWidget::asciiFeedWithoutLogReadsNoTime()
{
    QtTerminalWidget w;
    w.insertRecvData("ab\n", false, false);
    w.insertRecvData("cd", false, false);
    QCOMPARE(w.toPlainText(), QString("ab\ncd"));
    w.insertRecvData("\x01\x02", true, false);
    QCOMPARE(w.toPlainText(), QString("ab\ncd01 02 "));
}

void TstQtTerminalWidget::asciiHistoryKeepsTheLastBytes()
{
    QtTerminalWidget w;
    QByteArray data(30000, 'x');
    for (int i = 0; i < data.size(); i += 100)
        data[i] = '\n';
    data.append("END");
    w.insertRecvData(data, false, true);
    QCOMPARE(w.recvHistory().size(), QtTerminalWidget::MaxRecvHistory);
    QCOMPARE(w.recvHistory(), data.right(QtTerminalWidget::MaxRecvHistory));
    QVERIFY(!w.toPlainText().contains("ASCII >"));
    w.insertRecvData("more", false, false);
    QCOMPARE(w.recvHistory().size(), QtTerminalWidget::MaxRecvHistory);
    QVERIFY(w.recvHistory().endsWith("ENDmore"));
}

void TstQtTerminalWidget::splitMultiByteCharacterShowsWholeOnceItsTailArrives()
{
    const QString text = QString::fromUtf8("温度");
    const QByteArray gb = QTextCodec::codecForName("GB18030")->fromUnicode(text);
    QCOMPARE(gb.size(), 4);
    QtTerminalWidget w;
    w.insertRecvData(gb.left(3), false, false);
    w.insertRecvData(gb.mid(3), false, false);
    QCOMPARE(w.toPlainText(), text);

    MyApp::m_nTextCodecIndex = 0;
    QtTerminalWidget u;
    const QByteArray utf = text.toUtf8();
    u.insertRecvData(utf.left(1), false, false);
    u.insertRecvData(utf.mid(1), false, false);
    QCOMPARE(u.toPlainText(), text);
}

void TstQtTerminalWidget::hexFeedTagsEachCallAndRunsOnWithoutTags()
{
    QtTerminalWidget w;
    w.insertRecvData(QByteArray("\x0a\xff", 2)); // both defaults: hex with tag
    w.insertRecvData(QByteArray("\x00", 1));
    QRegularExpression re("^\\n\\[[\\d:.]{12}\\] Hex >\\n0A FF \\n\\[[\\d:.]{12}\\] Hex >\\n00 $");
    QVERIFY2(re.match(w.toPlainText()).hasMatch(), qPrintable(w.toPlainText()));
    QVERIFY(w.recvHistory().isEmpty());

    QtTerminalWidget plain;
    plain.insertRecvData("AB", true, false);
    plain.insertRecvData("C", true, false);
    QCOMPARE(plain.toPlainText(), QString("41 42 43 "));
}

void TstQtTerminalWidget::asciiCallWipesHexTextFromTheView()
{
    QtTerminalWidget w;
    w.insertRecvData("one", false, false);
    w.insertRecvData("\x01", true, false);
    QCOMPARE(w.toPlainText(), QString("one01 "));
    w.insertRecvData("two", false, false);
    QCOMPARE(w.toPlainText(), QString("onetwo"));
}

void TstQtTerminalWidget::clearEmptiesEverythingButTheCrSetting()
{
    QtTerminalWidget w;
    w.setEnableCR(false);
    w.insertRecvData("abc", false, false);
    w.insertTerminalText("x");
    w.clearTerminal();
    QVERIFY(w.toPlainText().isEmpty());
    QVERIFY(w.recvHistory().isEmpty());
    QVERIFY(!w.isEnableCR());
    w.setEnableCR(true);
    w.insertTerminalText("y");
    QCOMPARE(w.toPlainText(), QString("y\n"));
}

void TstQtTerminalWidget::viewFollowsTheNewestData()
{
    QtTerminalWidget w;
    w.resize(200, 100);
    w.show();
    for (int i = 0; i < 200; ++i)
        w.insertRecvData(QByteArray::number(i) + "\n", false, false);
    QCOMPARE(w.textCursor().position(), w.document()->characterCount() - 1);
    QTRY_VERIFY(w.viewport()->rect().contains(w.cursorRect()));
    QVERIFY(w.verticalScrollBar()->value() > 0);
}

LARK_TEST_MAIN(TstQtTerminalWidget)
#include "tst_qtterminalwidget.moc"
