#include "LarkTestCore.h"
#include "NumberTool.h"
#include "SleepTool.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTimer>
#include <QtTest>

static QByteArray hex(const char *s)
{
    return QByteArray::fromHex(s);
}

class TstNumberTool : public QObject
{
    Q_OBJECT
private slots:
    void crcMatchesPublishedCheckValues_data();
    void crcMatchesPublishedCheckValues();
    void crcOfAFrameAppendedToItChecksToZero();

    void numbersBecomeBytesInTheWireOrder_data();
    void numbersBecomeBytesInTheWireOrder();
    void bytesBecomeNumbersOnlyAtTheRightSize();
    void partialUint32AddsBytesModuloThirtyTwoBits_data();
    void partialUint32AddsBytesModuloThirtyTwoBits();
    void floatsRoundTripThroughBothReaders();

    void sizeAndSpeedClimbTheLadder_data();
    void sizeAndSpeedClimbTheLadder();
    void timeFormatDropsZeroParts_data();
    void timeFormatDropsZeroParts();

    void hexTextParsesLeniently_data();
    void hexTextParsesLeniently();
    void hexFormattingAndParsingAreInverseOnRandomBytes();
    void convertHexCharAcceptsOnlyHexDigits();

    void ipAddressesAreRecognised_data();
    void ipAddressesAreRecognised();
    void hostAddressesNeverComeBackEmpty();
    void sleepKeepsTheEventLoopRunning();
};

void TstNumberTool::crcMatchesPublishedCheckValues_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("crc");
    QTest::addColumn<QByteArray>("wire");
    QTest::newRow("check string") << QByteArray("123456789") << 0x4B37 << hex("374B");
    QTest::newRow("modbus read request") << hex("01030000000A") << 0xCDC5 << hex("C5CD");
    QTest::newRow("empty") << QByteArray() << -1 << hex("FFFF");
    QTest::newRow("single zero byte") << hex("00") << 0x40BF << hex("BF40");
}

void TstNumberTool::crcMatchesPublishedCheckValues()
{
    QFETCH(QByteArray, input);
    QFETCH(int, crc);
    QFETCH(QByteArray, wire);
    QCOMPARE(NumberTool::getCrcData(input), crc);
    QCOMPARE(NumberTool::getCRCData(input), wire);
}

void TstNumberTool::crcOfAFrameAppendedToItChecksToZero()
{
    // property of a reflected CRC without final XOR: the low-byte-first CRC appended
    // to the data gives a residue of zero; checks the nibble table over many inputs
    QRandomGenerator rng(1234);
    for (int len = 1; len < 300; len += 7) {
        QByteArray data(len, 0);
        for (char &c : data)
            c = char(rng.bounded(256));
        QCOMPARE(NumberTool::getCrcData(data + NumberTool::getCRCData(data)), 0);
    }
}

void TstNumberTool::numbersBecomeBytesInTheWireOrder_data()
{
    QTest::addColumn<QByteArray>("actual");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("float 'big endian' writes memory order") << NumberTool::baFromFloatBigEndian(0.5f) << hex("0000003F");
    QTest::newRow("float 'small endian' of 1.0") << NumberTool::baFromFloatSmallEndian(1.0f) << hex("3F800000");
    QTest::newRow("float 'small endian' special-cases 0.5") << NumberTool::baFromFloatSmallEndian(0.5f) << hex("0000003F");
    QTest::newRow("float 'small endian' of 0.25") << NumberTool::baFromFloatSmallEndian(0.25f) << hex("3E800000");
    QTest::newRow("int32 small endian") << NumberTool::baFromInt32SmallEndian(0x12345678) << hex("78563412");
    QTest::newRow("int32 small endian negative") << NumberTool::baFromInt32SmallEndian(-2) << hex("FEFFFFFF");
    QTest::newRow("int32 big endian") << NumberTool::baFromInt32BigEndian(0x12345678) << hex("12345678");
    QTest::newRow("uint32 big endian") << NumberTool::baFromUint32BigEndian(0xA1B2C3D4u) << hex("A1B2C3D4");
    QTest::newRow("uint16 big endian") << NumberTool::baFromUint16BigEndian(0xBEEF) << hex("BEEF");
    QTest::newRow("changeEndian ignores the rest") << NumberTool::changeEndian(hex("0102030405")) << hex("04030201");
}

void TstNumberTool::numbersBecomeBytesInTheWireOrder()
{
    QFETCH(QByteArray, actual);
    QFETCH(QByteArray, expected);
    QCOMPARE(actual.toHex(' '), expected.toHex(' '));
}

void TstNumberTool::bytesBecomeNumbersOnlyAtTheRightSize()
{
    QCOMPARE(NumberTool::floatFromByteArray(hex("3F800000")), 1.0f);
    QCOMPARE(NumberTool::floatFromSmallEndian(hex("0000803F")), 1.0f);
    QCOMPARE(NumberTool::int32FromByteArray(hex("FEFFFFFF")), -2);
    QCOMPARE(NumberTool::uint32FromByteArray(hex("78563412")), 0x12345678u);
    QCOMPARE(NumberTool::uint64FromByteArray(hex("0102030405060708")), 0x0102030405060708ull);
    QCOMPARE(NumberTool::uint16FromByteArray(hex("3412")), quint16(0x1234));
    QCOMPARE(NumberTool::floatFromHL(0x3F80, 0x0000), 1.0f);

    // a wrong size gives 0, never a read past the end
    QCOMPARE(NumberTool::floatFromByteArray(hex("3F8000")), 0.0f);
    QCOMPARE(NumberTool::floatFromSmallEndian(hex("0000803F00")), 0.0f);
    QCOMPARE(NumberTool::int32FromByteArray(QByteArray()), 0);
    QCOMPARE(NumberTool::uint32FromByteArray(hex("785634")), 0u);
    QCOMPARE(NumberTool::uint64FromByteArray(hex("01020304")), 0ull);
    QCOMPARE(NumberTool::uint16FromByteArray(hex("341200")), quint16(0));
}

void TstNumberTool::partialUint32AddsBytesModuloThirtyTwoBits_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("n");
    QTest::addColumn<uint>("value");
    QTest::newRow("two bytes") << hex("3412") << 2 << 0x1234u;
    QTest::newRow("n below one") << hex("3412") << 0 << 0u;
    QTest::newRow("fifth byte adds at shift 0 again") << hex("0100000002") << 5 << 3u;
    QTest::newRow("n beyond the array") << hex("01") << 3 << 1u;
}

void TstNumberTool::partialUint32AddsBytesModuloThirtyTwoBits()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, n);
    QFETCH(uint, value);
    QCOMPARE(NumberTool::uint32FromByteArray(bytes, n), value);
}

void TstNumberTool::floatsRoundTripThroughBothReaders()
{
    for (float f : {0.0f, -1.5f, 3.14159f, 1e-20f, 123456.75f, 0.25f}) {
        QCOMPARE(NumberTool::floatFromSmallEndian(NumberTool::baFromFloatBigEndian(f)), f);
        QCOMPARE(NumberTool::floatFromByteArray(NumberTool::changeEndian(NumberTool::baFromFloatBigEndian(f))), f);
    }
}

void TstNumberTool::sizeAndSpeedClimbTheLadder_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("size");
    QTest::addColumn<QString>("speed");
    QTest::newRow("negative") << -5.0 << "0.00 Bytes" << "0.00 Bytes/S";
    QTest::newRow("zero") << 0.0 << "0.00 Bytes" << "0.00 Bytes/S";
    QTest::newRow("1023") << 1023.0 << "1023.00 Bytes" << "1023.00 Bytes/S";
    QTest::newRow("1024") << 1024.0 << "1.00 KB" << "1.00 KB/S";
    QTest::newRow("1536") << 1536.0 << "1.50 KB" << "1.50 KB/S";
    QTest::newRow("one MB") << 1048576.0 << "1.00 MB" << "1.00 MB/S";
    QTest::newRow("one GB") << 1073741824.0 << "1.00 GB" << "1.00 GB/S";
    QTest::newRow("no unit past GB") << 5.0 * 1099511627776.0 << "5120.00 GB" << "5120.00 GB/S";
}

void TstNumberTool::sizeAndSpeedClimbTheLadder()
{
    QFETCH(double, value);
    QFETCH(QString, size);
    QFETCH(QString, speed);
    QCOMPARE(NumberTool::size(static_cast<long long>(value)), size);
    QCOMPARE(NumberTool::speed(value), speed);
}

void TstNumberTool::timeFormatDropsZeroParts_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("negative") << -3 << "0s";
    QTest::newRow("zero") << 0 << "0s";
    QTest::newRow("59") << 59 << "59s";
    QTest::newRow("60") << 60 << "1m";
    QTest::newRow("61") << 61 << "1m 1s";
    QTest::newRow("3600") << 3600 << "1h";
    QTest::newRow("3601") << 3601 << "1h 1s";
    QTest::newRow("3660") << 3660 << "1h 1m";
    QTest::newRow("86400") << 86400 << "1d";
    QTest::newRow("90061") << 90061 << "1d 1h 1m 1s";
    QTest::newRow("86401") << 86401 << "1d 1s";
}

void TstNumberTool::timeFormatDropsZeroParts()
{
    QFETCH(int, seconds);
    QFETCH(QString, text);
    QCOMPARE(NumberTool::timeFormat(seconds), text);
}

void TstNumberTool::hexTextParsesLeniently_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("pairs with blanks") << "0a 1B" << hex("0A1B");
    QTest::newRow("no blanks") << "0a1b" << hex("0A1B");
    QTest::newRow("lone digit dropped") << "ABC" << hex("AB");
    QTest::newRow("blank inside a pair is a bad digit") << "1 2" << hex("0F");
    QTest::newRow("bad high digit") << "G1" << hex("F1");
    QTest::newRow("bad low digit") << "1G" << hex("0F");
    QTest::newRow("both bad") << "GG" << hex("EF");
    QTest::newRow("empty") << "" << QByteArray();
    QTest::newRow("blanks only") << "   " << QByteArray();
    QTest::newRow("leading and trailing blanks") << "  ff  00 " << hex("FF00");
    QTest::newRow("full-width digits count as zero") << QString::fromUtf8("１２３４") << hex("EFEF");
    QTest::newRow("line feed is a bad digit") << "0A\n" << hex("0A");
}

void TstNumberTool::hexTextParsesLeniently()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(NumberTool::hexStrToByteArray(text).toHex(' '), bytes.toHex(' '));
}

void TstNumberTool::hexFormattingAndParsingAreInverseOnRandomBytes()
{
    QCOMPARE(NumberTool::byteToHex(hex("0AFF")), QString("0A FF "));
    QCOMPARE(NumberTool::byteToHex(QByteArray()), QString());

    QByteArray all(256, 0);
    for (int i = 0; i < 256; ++i)
        all[i] = char(i);
    QCOMPARE(NumberTool::hexStrToByteArray(NumberTool::byteToHex(all)), all);

    QRandomGenerator rng(42);
    for (int round = 0; round < 50; ++round) {
        QByteArray data(int(rng.bounded(2000)), 0);
        for (char &c : data)
            c = char(rng.bounded(256));
        const QString text = NumberTool::byteToHex(data);
        QCOMPARE(text.size(), data.size() * 3);
        QCOMPARE(NumberTool::hexStrToByteArray(text), data);
    }
}

void TstNumberTool::convertHexCharAcceptsOnlyHexDigits()
{
    for (int c = 0; c < 256; ++c) {
        const char ch = char(c);
        int expected = -1;
        if (ch >= '0' && ch <= '9')
            expected = c - '0';
        else if (ch >= 'a' && ch <= 'f')
            expected = c - 'a' + 10;
        else if (ch >= 'A' && ch <= 'F')
            expected = c - 'A' + 10;
        QCOMPARE(int(NumberTool::convertHexChar(ch)), expected);
    }
}

void TstNumberTool::ipAddressesAreRecognised_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::newRow("loopback") << "127.0.0.1" << true;
    QTest::newRow("leading zeros") << "001.002.003.004" << true;
    QTest::newRow("255") << "255.255.255.255" << true;
    QTest::newRow("256") << "256.1.1.1" << false;
    QTest::newRow("three parts") << "1.2.3" << false;
    QTest::newRow("trailing text") << "1.2.3.4x" << false;
    QTest::newRow("blank") << " 1.2.3.4" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("host name") << "localhost" << false;
}

void TstNumberTool::ipAddressesAreRecognised()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QCOMPARE(NumberTool::IsIpAddr(text), ok);
}

void TstNumberTool::hostAddressesNeverComeBackEmpty()
{
    const QStringList list = NumberTool::GetHostIpAddress();
    QVERIFY(!list.isEmpty());
    for (const QString &a : list) {
        QVERIFY2(NumberTool::IsIpAddr(a), qPrintable(a));
        if (list.size() > 1)
            QVERIFY(a != "127.0.0.1");
    }
}

void TstNumberTool::sleepKeepsTheEventLoopRunning()
{
    bool fired = false;
    QTimer::singleShot(10, [&fired] { fired = true; });
    QElapsedTimer t;
    t.start();
    SleepTool::myMSleep(60);
    QVERIFY(t.elapsed() >= 60);
    QVERIFY(fired);
}

LARK_TEST_GUILESS_MAIN(TstNumberTool)
#include "tst_numbertool.moc"
