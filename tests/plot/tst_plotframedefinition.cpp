#include "LarkTestCore.h"
#include "PlotFrameDefinition.h"

#include <QtTest>

#include <cmath>

class tst_PlotFrameDefinition : public QObject
{
    Q_OBJECT
private slots:
    void everyTypeAndByteOrderReadsAndWritesKnownBytes_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("big");
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<double>("value");
        QTest::newRow("u8") << "u8" << false << QByteArray("FE") << 254.0;
        QTest::newRow("i8") << "i8" << false << QByteArray("FE") << -2.0;
        QTest::newRow("u16 le") << "u16" << false << QByteArray("3412") << double(0x1234);
        QTest::newRow("u16 be") << "u16" << true << QByteArray("1234") << double(0x1234);
        QTest::newRow("i16 le") << "i16" << false << QByteArray("FEFF") << -2.0;
        QTest::newRow("i16 be") << "i16" << true << QByteArray("8000") << -32768.0;
        QTest::newRow("u32 le") << "u32" << false << QByteArray("78563412") << double(0x12345678);
        QTest::newRow("u32 be") << "u32" << true << QByteArray("FFFFFFFF") << 4294967295.0;
        QTest::newRow("i32 le") << "i32" << false << QByteArray("FEFFFFFF") << -2.0;
        QTest::newRow("i32 be") << "i32" << true << QByteArray("80000000") << -2147483648.0;
        QTest::newRow("f32 le") << "f32" << false << QByteArray("0000C03F") << 1.5;
        QTest::newRow("f32 be") << "f32" << true << QByteArray("C0490FDB") << double(float(-M_PI));
        QTest::newRow("f64 le") << "f64" << false << QByteArray("000000000000F03F") << 1.0;
        QTest::newRow("f64 be") << "f64" << true << QByteArray("400921FB54442D18") << M_PI;
    }
    void everyTypeAndByteOrderReadsAndWritesKnownBytes()
    {
        QFETCH(QString, type);
        QFETCH(bool, big);
        QFETCH(QByteArray, hex);
        QFETCH(double, value);
        const auto t = PlotFrameDefinition::ValueType(PlotFrameDefinition::typeNames().indexOf(type));
        const QByteArray bytes = QByteArray::fromHex(hex);
        QCOMPARE(PlotFrameDefinition::typeSize(t), bytes.size());
        QCOMPARE(PlotFrameDefinition::readValue(t, big, reinterpret_cast<const uchar *>(bytes.constData())), value);
        QByteArray written(bytes.size(), 0);
        PlotFrameDefinition::writeValue(t, big, value, reinterpret_cast<uchar *>(written.data()));
        QCOMPARE(written.toHex().toUpper(), hex);
    }

    void badDefinitionFilesAreRefusedWithAReason_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("reason");
        const QByteArray ch = R"("channels":[{"name":"a","offset":2,"type":"u8"}])";
        const QByteArray fixed = R"("length":{"mode":"fixed","bytes":4})";
        auto def = [&](const QByteArray &body) { return "{" + body + "}"; };
        QTest::newRow("not json") << QByteArray("{\"start\":") << "不是有效的 JSON";
        QTest::newRow("key twice") << def(R"("start":"AA","length":{"bytes":4},"l\u0065ngth":{"bytes":5},)" + ch) << "“length”出现了两次";
        QTest::newRow("not an object") << QByteArray("[1]") << "JSON 对象";
        QTest::newRow("no channels") << def(R"("start":"AA",)" + fixed) << "channels";
        QTest::newRow("start not hex") << def(R"("start":"GG",)" + fixed + "," + ch) << "start";
        QTest::newRow("start missing") << def(fixed + "," + ch) << "起始标志";
        QTest::newRow("unknown type") << def(R"("start":"AA",)" + fixed + R"(,"channels":[{"offset":1,"type":"u64"}])") << "u64";
        QTest::newRow("offset missing") << def(R"("start":"AA",)" + fixed + R"(,"channels":[{"type":"u8"}])") << "offset";
        QTest::newRow("channel past the frame") << def(R"("start":"AA",)" + fixed + R"(,"channels":[{"offset":3,"type":"u16"}])") << "超出了帧长";
        QTest::newRow("fixed too short") << def(R"("start":"AABB","length":{"bytes":2},"checksum":{"type":"crc8"},)" + ch) << "至少 3";
        QTest::newRow("check past the frame") << def(R"("start":"AA","checksum":{"type":"crc8","at":4},)" + fixed + "," + ch) << "校验值的位置";
        QTest::newRow("length size 3") << def(R"("start":"AA","length":{"mode":"field","offset":1,"size":3},)" + ch) << "1、2 或 4";
        QTest::newRow("unknown check") << def(R"("start":"AA","checksum":{"type":"md5"},)" + fixed + "," + ch) << "md5";
        QTest::newRow("end mode without end") << def(R"("start":"AA","length":{"mode":"end"},)" + ch) << "结束标志";
        QTest::newRow("zero scale") << def(R"("start":"AA",)" + fixed + R"(,"channels":[{"offset":1,"scale":0}])") << "比例";
        QTest::newRow("offset not a number") << def(R"("start":"AA",)" + fixed + R"(,"channels":[{"offset":"1"}])") << "整数";
        QTest::newRow("bad endian") << def(R"("start":"AA",)" + fixed + R"(,"channels":[{"offset":1,"endian":"middle"}])") << "middle";
        QByteArray many = R"("start":"AA","length":{"mode":"fixed","bytes":40},"channels":[)";
        for (int i = 0; i < 17; ++i)
            many += QByteArray(i ? "," : "") + "{\"offset\":" + QByteArray::number(i + 1) + "}";
        QTest::newRow("17 channels") << def(many + "]") << "通道数";
    }
    void badDefinitionFilesAreRefusedWithAReason()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, reason);
        PlotFrameDefinition def;
        QString error;
        QVERIFY(!PlotFrameDefinition::fromJson(json, &def, &error));
        QVERIFY2(error.contains(reason), qPrintable(error));
    }

    void savedDefinitionsLoadBackUnchanged_data()
    {
        QTest::addColumn<QString>("example");
        QTest::newRow("sensor") << "larksim_sensor.json";
        QTest::newRow("pid") << "larksim_pid.json";
    }
    void savedDefinitionsLoadBackUnchanged()
    {
        QFETCH(QString, example);
        PlotFrameDefinition def, again;
        QString error;
        QVERIFY2(PlotFrameDefinition::load(QDir::cleanPath(LARK_PLOT_EXAMPLES "/" + example), &def, &error),
                 qPrintable(error));
        QTemporaryDir dir;
        QVERIFY(def.save(dir.filePath("copy.json"), &error));
        QVERIFY2(PlotFrameDefinition::load(dir.filePath("copy.json"), &again, &error), qPrintable(error));
        QCOMPARE(again.toJson(), def.toJson());
        QVERIFY(!PlotFrameDefinition::load(dir.filePath("missing.json"), &again, &error) && error.contains("missing.json"));
        QVERIFY(!def.save(dir.filePath("no/such/folder.json"), &error));
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotFrameDefinition)
#include "tst_plotframedefinition.moc"
