#include "LarkTestCore.h"
#include "PlotChecksum.h"

class tst_PlotChecksum : public QObject
{
    Q_OBJECT
private slots:
    // the published check values of "123456789", and the value of no bytes
    void checksMatchTheirPublishedValues_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<uint>("check");
        QTest::addColumn<uint>("empty");
        QTest::newRow("sum8") << "sum8" << 0xDDu << 0u;
        QTest::newRow("xor8") << "xor8" << 0x31u << 0u;
        QTest::newRow("crc8") << "crc8" << 0xF4u << 0u;
        QTest::newRow("modbus") << "crc16-modbus" << 0x4B37u << 0xFFFFu;
        QTest::newRow("ccitt") << "CRC16-CCITT" << 0x29B1u << 0xFFFFu;
        QTest::newRow("crc32") << "crc32" << 0xCBF43926u << 0u;
    }
    void checksMatchTheirPublishedValues()
    {
        QFETCH(QString, name);
        const int type = PlotChecksum::typeFromName(name);
        QTEST(PlotChecksum::compute(PlotChecksum::Type(type), reinterpret_cast<const uchar *>("123456789"), 9), "check");
        QTEST(PlotChecksum::compute(PlotChecksum::Type(type), nullptr, 0), "empty");
    }
};

LARK_TEST_GUILESS_MAIN(tst_PlotChecksum)
#include "tst_plotchecksum.moc"
