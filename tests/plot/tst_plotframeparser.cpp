#include "LarkTestCore.h"
#include "PlotFrameParser.h"

#include <QDir>

// a shipped example by file name, or a definition written out
static PlotFrameDefinition example(const QString &name)
{
    PlotFrameDefinition def;
    QString error;
    if (name.startsWith('{') ? !PlotFrameDefinition::fromJson(name.toUtf8(), &def, &error)
                             : !PlotFrameDefinition::load(QDir::cleanPath(LARK_PLOT_EXAMPLES "/" + name), &def, &error))
        qWarning() << error;
    return def;
}

// the first channel of every record, and the counts, as one line: the stream fed in two
// reads cut at `cut`, or one byte a read when the cut lies beyond it
static QString run(PlotFrameParser &&parser, const QByteArray &stream, int cut)
{
    PlotBatch batch;
    if (cut > stream.size()) {
        for (int i = 0; i < stream.size(); ++i)
            parser.feed(stream.mid(i, 1), batch);
    } else {
        parser.feed(stream.left(cut), batch);
        parser.feed(stream.mid(cut), batch);
    }
    QStringList firsts;
    int pair = 0;
    for (const int end : batch.recordEnds) {
        firsts << (pair < end && batch.channels.at(pair) == 0 ? QString::number(batch.values.at(pair)) : "-");
        pair = end;
    }
    const PlotFrameParser::Counts &n = parser.counts();
    return QString("%1 good %2 bad %3 dropped %4").arg(firsts.join(',')).arg(n.good).arg(n.badChecksum).arg(n.dropped);
}

class tst_PlotFrameParser : public QObject
{
    Q_OBJECT
private slots:
    void streamsAreCutAndCountedWhereverTheReadsSplitThem_data()
    {
        QTest::addColumn<QString>("example");
        QTest::addColumn<QByteArray>("stream");
        QTest::addColumn<QString>("expected");
        const PlotFrameDefinition s = example("larksim_sensor.json");
        auto sf = [&](double n) { return s.buildFrame({n, 0.5, 0.25, 25}); };
        QByteArray corrupt = sf(7);
        corrupt[5] = char(corrupt[5] ^ 1);
        QTest::newRow("two frames") << "larksim_sensor.json" << sf(1) + sf(2) << "1,2 good 2 bad 0 dropped 0";
        QTest::newRow("garbage before and between")
            << "larksim_sensor.json" << QByteArray::fromHex("0102AA") + sf(1) + QByteArray::fromHex("AA55") + sf(2)
            << "1,2 good 2 bad 0 dropped 1";
        QTest::newRow("bad check then good") << "larksim_sensor.json" << corrupt + sf(8) << "8 good 1 bad 1 dropped 0";
        QTest::newRow("false marker hides a frame")
            << "larksim_sensor.json" << QByteArray::fromHex("AA550A") + sf(3) << "3 good 1 bad 1 dropped 0";
        QTest::newRow("payload too large") << "larksim_sensor.json" << QByteArray::fromHex("AA55FF") + sf(4)
                                           << "4 good 1 bad 0 dropped 1";
        const PlotFrameDefinition p = example("larksim_pid.json");
        const QByteArray pidFrame = p.buildFrame({2, 2, -1234});
        QTest::newRow("pid frame") << "larksim_pid.json" << pidFrame << "2 good 1 bad 0 dropped 0";
        QTest::newRow("pid length 0") << "larksim_pid.json" << QByteArray::fromHex("4C41524B01000000000200") + pidFrame
                                      << "2 good 1 bad 0 dropped 1";
        QTest::newRow("pid length too large") << "larksim_pid.json" << QByteArray::fromHex("4C41524B0100100000") + pidFrame
                                              << "2 good 1 bad 0 dropped 1";
        QTest::newRow("end marker not yet come") << R"({"start":"24","end":"0D0A","length":{"mode":"end"},"channels":[{"offset":1}]})"
                                                 << QByteArray("$\x05\r\n$\x07\r\n") << "5,7 good 2 bad 0 dropped 0";
        QTest::newRow("unchecked length 0") << R"({"start":"AA","length":{"mode":"field","offset":1,"size":1},"channels":[{"offset":2}]})"
                                            << QByteArray::fromHex("AA00AA0309") << "9 good 1 bad 0 dropped 1";
        QTest::newRow("frame not yet whole") << "larksim_pid.json" << pidFrame.left(14) << " good 0 bad 0 dropped 0";
    }
    void streamsAreCutAndCountedWhereverTheReadsSplitThem()
    {
        QFETCH(QString, example);
        QFETCH(QByteArray, stream);
        const PlotFrameDefinition def = ::example(example);
        for (int cut = 0; cut <= stream.size() + 1; ++cut)
            QTEST(run(PlotFrameParser(def), stream, cut), "expected");
    }

    // definition -> frame bytes -> values, for each way of sizing and checking a frame
    void builtFramesParseBackToTheirValues_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("field"); // the length field's value, -1 for none
        const QByteArray ch = R"("channels":[{"offset":4,"type":"f64","endian":"big"},{"offset":12,"type":"i16","scale":0.5,"add":-3},)"
                              R"({"offset":14,"type":"u32","endian":"big"},{"offset":18,"type":"i8"},{"offset":19,"type":"f32"}])";
        QTest::newRow("fixed, crc32 be inside") << R"({"start":"A5","length":{"bytes":28},"checksum":{"type":"crc32","from":1,"at":24,"endian":"big"},)" + ch + "}" << -1;
        QTest::newRow("end marker, xor8") << R"({"start":"24","end":"0D0A","length":{"mode":"end"},"checksum":{"type":"xor8"},)" + ch + "}" << -1;
        QTest::newRow("after field u16 be, crc8") << R"({"start":"7E","length":{"mode":"field","offset":1,"size":2,"endian":"big","counts":"after-field"},"checksum":{"type":"crc8"},)" + ch + "}" << 21;
        QTest::newRow("payload u16, ccitt be, end") << R"({"start":"55AA","end":"FF","length":{"mode":"field","offset":2,"size":2,"counts":"payload"},"checksum":{"type":"crc16-ccitt","endian":"big"},)" + ch + "}" << 19;
        QTest::newRow("frame u8, modbus") << R"({"start":"AB","length":{"mode":"field","offset":1,"size":1},"checksum":{"type":"crc16-modbus"},)" + ch + "}" << 25;
    }
    void builtFramesParseBackToTheirValues()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, field);
        PlotFrameDefinition def;
        QString error;
        QVERIFY2(PlotFrameDefinition::fromJson(json, &def, &error), qPrintable(error));
        const QVector<double> values{-1.25e300, 77.5, 4000000000.0, -128, 0.125};
        const QByteArray frame = def.buildFrame(values);
        if (field >= 0)
            QCOMPARE(int(PlotFrameDefinition::readUnsigned(def.lengthSize, def.lengthBigEndian,
                                                           reinterpret_cast<const uchar *>(frame.constData()) + def.lengthOffset)), field);
        PlotFrameParser parser(def);
        PlotBatch batch;
        parser.feed(frame + frame, batch);
        QCOMPARE(parser.counts().good, qint64(2));
        QCOMPARE(batch.values.mid(0, 5), values);
        QCOMPARE(batch.channels.mid(0, 5), QVector<int>({0, 1, 2, 3, 4}));
        // every single wrong byte is caught by the check, the marker or the length
        for (int i = 0; i < frame.size(); ++i) {
            QByteArray bad = frame;
            bad[i] = char(bad[i] ^ 0x40);
            PlotFrameParser again(def);
            batch.clear();
            again.feed(bad, batch);
            if (i < def.checkFrom)
                continue; // outside the check's span: a changed marker byte only hides the frame
            QVERIFY2(again.counts().good == 0, qPrintable(QString("byte %1").arg(i)));
        }
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotFrameParser)
#include "tst_plotframeparser.moc"
