#include "LarkTestCore.h"
#include "PlotTextParser.h"

#include <QTextCodec>

// the records of a batch as "name=value ..." joined by "|"
static QString render(const PlotTextParser &parser, const PlotBatch &batch)
{
    QStringList records;
    int pair = 0;
    for (const int end : batch.recordEnds) {
        QStringList fields;
        for (; pair < end; ++pair)
            fields << parser.names().at(batch.channels.at(pair)) + "=" + QString::number(batch.values.at(pair));
        records << fields.join(' ');
    }
    return records.join('|');
}

class tst_PlotTextParser : public QObject
{
    Q_OBJECT
private slots:
    void linesGiveTheSameRecordsWhereverTheReadsSplitThem_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("separator");
        QTest::addColumn<QString>("records");
        QTest::addColumn<int>("bad");
        const int a = PlotTextParser::Auto;
        QTest::newRow("comma, LF") << QByteArray("1,2,3\n") << a << "CH1=1 CH2=2 CH3=3" << 0;
        QTest::newRow("semicolon, CR LF") << QByteArray("1;2\r\n3;-4\r\n") << a << "CH1=1 CH2=2|CH1=3 CH2=-4" << 0;
        QTest::newRow("tab, lone CR") << QByteArray("1\t-2.5e3\r+5\t6\n") << a << "CH1=1 CH2=-2500|CH1=5 CH2=6" << 0;
        QTest::newRow("blanks") << QByteArray("  1   2  3 \n") << a << "CH1=1 CH2=2 CH3=3" << 0;
        QTest::newRow("named pairs") << QByteArray("a:1, b = 2\nb=3\n") << a << "a=1 b=2|b=3" << 0;
        QTest::newRow("empty field keeps places") << QByteArray("1,,3\n") << a << "CH1=1 CH3=3" << 0;
        QTest::newRow("header counted") << QByteArray("x,y\n1,2\n") << a << "CH1=1 CH2=2" << 1;
        QTest::newRow("one bad field spoils the line") << QByteArray("temp=25.3 ok\n7\n") << a << "CH1=7" << 1;
        QTest::newRow("separators only") << QByteArray(",,,\n\n\r\n") << a << "" << 1;
        QTest::newRow("not finite") << QByteArray("1e999\nnan\n") << a << "" << 2;
        QTest::newRow("blank chosen, commas bad") << QByteArray("1,2 3\n4 5\n") << int(PlotTextParser::Blank) << "CH1=4 CH2=5" << 1;
        QTest::newRow("semicolon chosen") << QByteArray("a=1;2\n") << int(PlotTextParser::Semicolon) << "a=1 CH2=2" << 0;
        QTest::newRow("unended line waits") << QByteArray("1,2\n3,4") << a << "CH1=1 CH2=2" << 0;
    }
    void linesGiveTheSameRecordsWhereverTheReadsSplitThem()
    {
        QFETCH(QByteArray, input);
        QFETCH(int, separator);
        // every split into two reads, then one byte a read
        for (int cut = 0; cut <= input.size() + 1; ++cut) {
            PlotTextParser parser;
            parser.setSeparator(PlotTextParser::Separator(separator));
            PlotBatch batch;
            if (cut <= input.size()) {
                parser.feed(input.left(cut), batch);
                parser.feed(input.mid(cut), batch);
            } else {
                for (const char c : input)
                    parser.feed(QByteArray(1, c), batch);
            }
            QTEST(render(parser, batch), "records");
            QTEST(int(parser.badLines()), "bad");
        }
    }

    void channelNamesAreDecodedWithThePagesCodecUpToTheLimit()
    {
        PlotTextParser parser(QTextCodec::codecForName("GB18030"));
        PlotBatch batch;
        parser.feed(QTextCodec::codecForName("GB18030")->fromUnicode("温度:21.5 转速=1500\n温度:22\n"), batch);
        QCOMPARE(render(parser, batch), QString("温度=21.5 转速=1500|温度=22"));
        // names beyond the limit go to one unnamed channel
        for (int i = 2; i <= PlotTextParser::MaxNames; ++i)
            parser.feed("n" + QByteArray::number(i) + ":1\n", batch);
        QCOMPARE(parser.names().size(), int(PlotTextParser::MaxNames));
        QCOMPARE(batch.channels.last(), int(PlotTextParser::MaxNames));
    }

    void anOverlongLineIsCountedAndTheNextOneParses()
    {
        PlotTextParser parser;
        PlotBatch batch;
        for (int i = 0; i < 3; ++i)
            parser.feed(QByteArray(PlotTextParser::MaxLineLength / 2, '1'), batch);
        parser.feed("\n5\n", batch);
        QCOMPARE(render(parser, batch), QString("CH1=5"));
        QCOMPARE(parser.badLines(), qint64(1));
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotTextParser)
#include "tst_plottextparser.moc"
