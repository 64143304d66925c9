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
        QTest::newRow("decimal, the last byte") << "4095" << qint64(4095);
        QTest::newRow("hex in capitals, spaces round it") << " 0XFF0 " << qint64(0xff0);
        QTest::newRow("forwards from the cursor") << "+16" << qint64(116);
        QTest::newRow("backwards in hex") << "-0x10" << qint64(84);
        QTest::newRow("one past the end") << "4096" << qint64(-1);
        QTest::newRow("before the start") << "-101" << qint64(-1);
        QTest::newRow("two signs") << "+-5" << qint64(-1);
        QTest::newRow("hex digits without 0x") << "ff" << qint64(-1);
        QTest::newRow("beyond 64 bits") << "0xFFFFFFFFFFFFFFFFF" << qint64(-1);
    }
    void parse()
    {
        QFETCH(QString, text);
        QTEST(HexOffset::parse(text, 100, 4096), "offset");
    }
};

LARK_TEST_GUILESS_MAIN(TstHexOffset)
#include "tst_hexoffset.moc"
