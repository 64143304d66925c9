#include "LarkTestCore.h"
#include "PlotDefinitionForm.h"

Q_DECLARE_METATYPE(PlotDefinitionForm)

namespace {
using Row = PlotDefinitionForm::ChannelRow;
using D = PlotFrameDefinition;

PlotDefinitionForm form(const QString &start, D::LengthMode mode, PlotChecksum::Type check, const QVector<Row> &channels)
{
    PlotDefinitionForm f;
    f.name = "表单";
    f.start = start;
    f.lengthMode = mode;
    f.checksum = check;
    f.channels = channels;
    return f;
}
}

class tst_PlotDefinitionForm : public QObject
{
    Q_OBJECT
private slots:
    // form -> definition -> JSON file text -> definition -> form
    void aFilledFormComesBackFromItsJsonUnchanged_data()
    {
        QTest::addColumn<PlotDefinitionForm>("filled");
        QTest::addColumn<int>("frameBytes");
        PlotDefinitionForm fixed = form("AA 55", D::FixedLength, PlotChecksum::Sum8,
                                        {{"计数", "2", D::U8, false, "1", "0"},
                                         {"温度", "3", D::I16, true, "0.01", "0"},
                                         {"CH3", "5", D::F32, false, "1", "-273.15"}});
        fixed.fixedLength = 12;
        QTest::newRow("fixed length, sum8 before the end") << fixed << 12;
        PlotDefinitionForm field = form("4C 41 52 4B", D::LengthField, PlotChecksum::Crc16Ccitt,
                                        {{"a", "6", D::F64, false, "1", "0"},
                                         {"b", "14", D::U32, true, "0.123456789", "1"},
                                         {"c", "18", D::I8, false, "-1", "0"}});
        field.lengthOffset = 4, field.lengthSize = 2, field.lengthBigEndian = true;
        field.lengthCounts = D::CountsAfterField, field.maxLength = 200;
        field.checkFrom = 2, field.checkAt = 20, field.checkBigEndian = true;
        QTest::newRow("big-endian length field, CRC-16/CCITT at a fixed place") << field << 22;
        PlotDefinitionForm end = form("A5", D::UntilEndMarker, PlotChecksum::Crc32,
                                      {{"x", "1", D::I32, false, "1e-07", "0"}, {"y", "5", D::U16, true, "1", "0.5"}});
        end.end = "0D 0A";
        QTest::newRow("up to an end marker, CRC-32") << end << 13;
    }
    void aFilledFormComesBackFromItsJsonUnchanged()
    {
        QFETCH(PlotDefinitionForm, filled);
        QFETCH(int, frameBytes);
        PlotFrameDefinition def, loaded;
        QString error;
        QVERIFY2(filled.toDefinition(&def, &error), qPrintable(error));
        QVERIFY2(PlotFrameDefinition::fromJson(def.toJson(), &loaded, &error), qPrintable(error));
        const PlotDefinitionForm back = PlotDefinitionForm::fromDefinition(loaded);
        QVERIFY(back == filled); // scales and offsets as the text typed, too
        const QString preview = PlotDefinitionForm::preview(loaded);
        QVERIFY2(preview.contains(QString("示例帧 %1 字节").arg(frameBytes)) && preview.contains("：" + filled.start), qPrintable(preview));
    }

    void badValuesAreRefusedWithTheDefinitionsReason_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("reason");
        QTest::newRow("start not hex") << "start" << "GG" << "起始标志“GG”不是十六进制字节";
        QTest::newRow("no start") << "start" << "" << "起始标志应为 1 到 16 个字节";
        QTest::newRow("end of an odd length") << "end" << "0D 0" << "结束标志“0D 0”";
        QTest::newRow("offset not a number") << "offset" << "3x" << "第1个通道：位置“3x”应为整数";
        QTest::newRow("scale not a number") << "scale" << "1,5" << "第1个通道：比例“1,5”应为数字";
        QTest::newRow("zero scale") << "scale" << "0" << "比例不能为 0";
        QTest::newRow("channel past the frame") << "offset" << "9" << "超出了帧长";
    }
    void badValuesAreRefusedWithTheDefinitionsReason()
    {
        QFETCH(QString, field);
        QFETCH(QString, value);
        QFETCH(QString, reason);
        PlotDefinitionForm f = form("AA", D::FixedLength, PlotChecksum::None, {{"a", "1", D::U16, false, "1", "0"}});
        f.fixedLength = 4;
        QString *fields[] = {&f.start, &f.end, &f.channels[0].offset, &f.channels[0].scale};
        *fields[QStringList({"start", "end", "offset", "scale"}).indexOf(field)] = value;
        PlotFrameDefinition def;
        QString error;
        QVERIFY(!f.toDefinition(&def, &error));
        QVERIFY2(error.contains(reason), qPrintable(error));
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotDefinitionForm)
#include "tst_plotdefinitionform.moc"
