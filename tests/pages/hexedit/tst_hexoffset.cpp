#include "HexOffset.h"
#include "LarkTestCore.h"

#include <QtTest>

// Offsets typed into the go-to field, with the cursor at 100 in a file of 4096 bytes.
class TstHexOffset : public QObject
{
    Q_OBJECT
private slots:
    void parse_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("offset");
        QTest::newRow("decimal") << "4000" << qint64(4000);
        QTest::newRow("hex, spaces round it") << " 0xFF0 " << qint64(0xff0);
        QTest::newRow("hex in capitals") << "0XABC" << qint64(0xabc);
        QTest::newRow("forwards from the cursor") << "+16" << qint64(116);
        QTest::newRow("backwards in hex") << "-0x10" << qint64(84);
        QTest::newRow("last byte") << "4095" << qint64(4095);
        QTest::newRow("one past the end") << "4096" << qint64(-1);
        QTest::newRow("before the start") << "-101" << qint64(-1);
        QTest::newRow("two signs") << "+-5" << qint64(-1);
        QTest::newRow("hex digits without 0x") << "ff" << qint64(-1);
        QTest::newRow("empty") << "" << qint64(-1);
        QTest::newRow("beyond 64 bits") << "0xFFFFFFFFFFFFFFFFF" << qint64(-1);
    }
    void parse()
    {
        QFETCH(QString, text);
        QFETCH(qint64, offset);
        QCOMPARE(HexOffset::parse(text, 100, 4096), offset);
    }

    void anEmptyFileHasOnlyOffsetZero()
    {
        QCOMPARE(HexOffset::parse("0", 0, 0), qint64(0));
        QCOMPARE(HexOffset::parse("1", 0, 0), qint64(-1));
    }
};

LARK_TEST_GUILESS_MAIN(TstHexOffset)
#include "tst_hexoffset.moc"
