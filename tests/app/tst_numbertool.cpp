#include "LarkTestCore.h"
#include "NumberTool.h"
#include "SleepTool.h"

#include <QtTest>

static QByteArray hex(const char *s) { return QByteArray::fromHex(s); }

class TstNumberTool : public QObject
{
    Q_OBJECT
private slots:
    void conversions_data()
    {
        QTest::addColumn<QVariant>("actual");
        QTest::addColumn<QVariant>("expected");
        auto row = [](const char *name, auto actual, decltype(actual) expected) {
            QTest::newRow(name) << QVariant::fromValue(actual) << QVariant::fromValue(expected);
        };
        // CRC-16/MODBUS: the check value, the wire order, and the zero residue of a
        // reflected CRC without final XOR over data plus its CRC
        row("crc check string", NumberTool::getCrcData("123456789"), 0x4B37);
        row("crc low byte first", NumberTool::getCRCData(hex("01030000000A")), hex("C5CD"));
        row("crc residue", NumberTool::getCrcData(QByteArray("123456789") + hex("374B")), 0);
        row("crc of nothing", NumberTool::getCrcData(QByteArray()), -1);
        row("crc bytes of nothing", NumberTool::getCRCData(QByteArray()), hex("FFFF"));
        // numbers to bytes in the wire orders of the board links, whatever the names say
        row("float 'big endian' writes memory order", NumberTool::baFromFloatBigEndian(0.5f), hex("0000003F"));
        row("float 'small endian' of 1.0", NumberTool::baFromFloatSmallEndian(1.0f), hex("3F800000"));
        row("float 'small endian' special-cases 0.5", NumberTool::baFromFloatSmallEndian(0.5f), hex("0000003F"));
        row("int32 small endian negative", NumberTool::baFromInt32SmallEndian(-2), hex("FEFFFFFF"));
        row("int32 big endian", NumberTool::baFromInt32BigEndian(int(0xA1B2C3D4u)), hex("A1B2C3D4"));
        row("uint16 big endian", NumberTool::baFromUint16BigEndian(0xBEEF), hex("BEEF"));
        row("changeEndian ignores the rest", NumberTool::changeEndian(hex("0102030405")), hex("04030201"));
        // bytes to numbers
        row("float most significant first", NumberTool::floatFromByteArray(hex("3F800000")), 1.0f);
        row("float least significant first", NumberTool::floatFromSmallEndian(hex("0000803F")), 1.0f);
        row("int32", NumberTool::int32FromByteArray(hex("FEFFFFFF")), -2);
        row("uint32", NumberTool::uint32FromByteArray(hex("78563412")), 0x12345678u);
        row("uint64 most significant first", NumberTool::uint64FromByteArray(hex("0102030405060708")), 0x0102030405060708ull);
        row("uint16", NumberTool::uint16FromByteArray(hex("3412")), quint16(0x1234));
        row("float from halves", NumberTool::floatFromHL(0x3F80, 0x0000), 1.0f);
        // a wrong size gives 0, never a read past the end
        row("float of three bytes", NumberTool::floatFromByteArray(hex("3F8000")), 0.0f);
        row("float of five bytes", NumberTool::floatFromSmallEndian(hex("0000803F00")), 0.0f);
        row("uint32 of three bytes", NumberTool::uint32FromByteArray(hex("785634")), 0u);
        row("uint64 of four bytes", NumberTool::uint64FromByteArray(hex("01020304")), 0ull);
        row("uint16 of three bytes", NumberTool::uint16FromByteArray(hex("341200")), quint16(0));
        // the n-byte form ignores the size and adds each byte at its shift modulo 32
        row("first two bytes", NumberTool::uint32FromByteArray(hex("3412"), 2), 0x1234u);
        row("n below one", NumberTool::uint32FromByteArray(hex("3412"), 0), 0u);
        row("fifth byte adds at shift 0 again", NumberTool::uint32FromByteArray(hex("0100000002"), 5), 3u);
        // texts
        row("negative size", NumberTool::size(-5), QString("0.00 Bytes"));
        row("1536", NumberTool::size(1536), QString("1.50 KB"));
        row("no unit past GB", NumberTool::size(5LL << 40), QString("5120.00 GB"));
        row("speed MB", NumberTool::speed(1048576.0), QString("1.00 MB/S"));
        row("zero seconds", NumberTool::timeFormat(0), QString("0s"));
        row("3601", NumberTool::timeFormat(3601), QString("1h 1s"));
        row("90061", NumberTool::timeFormat(90061), QString("1d 1h 1m 1s"));
        row("hex keeps a trailing blank", NumberTool::byteToHex(hex("0AFF")), QString("0A FF "));
        for (const char *ip : {"001.002.003.004", "255.255.255.255"})
            row(ip, NumberTool::IsIpAddr(ip), true);
        for (const char *ip : {"256.1.1.1", "1.2.3", "1.2.3.4x", "localhost"})
            row(ip, NumberTool::IsIpAddr(ip), false);
        // hex text is read leniently: a bad digit counts as -1, a lone digit is dropped
        row("hex blanks between pairs", NumberTool::hexStrToByteArray(" 0a  1B "), hex("0A1B"));
        row("hex lone digit dropped", NumberTool::hexStrToByteArray("ABC"), hex("AB"));
        row("hex blank inside a pair", NumberTool::hexStrToByteArray("1 2"), hex("0F"));
        row("hex bad high digit", NumberTool::hexStrToByteArray("G1"), hex("F1"));
        row("hex full-width digits", NumberTool::hexStrToByteArray(QString::fromUtf8("１２３４")), hex("EFEF"));
        QByteArray all;
        for (int i = 0; i < 256; ++i)
            all += char(i);
        row("hex inverse of byteToHex", NumberTool::hexStrToByteArray(NumberTool::byteToHex(all)), all);
    }

    void conversions()
    {
        QFETCH(QVariant, actual);
        QTEST(actual, "expected");
    }

    void theSleepKeepsTheEventLoopRunning()
    {
        bool fired = false;
        QTimer::singleShot(10, [&fired] { fired = true; });
        SleepTool::myMSleep(60);
        QVERIFY(fired);
    }
};

LARK_TEST_GUILESS_MAIN(TstNumberTool)
#include "tst_numbertool.moc"
