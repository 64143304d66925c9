#include "LarkTestCore.h"
#include "PidFrame.h"
#include "PidFrameReader.h"

#include <QTest>

class TstPidFrame : public QObject
{
    Q_OBJECT

private slots:
    void checkSumIsTheLowByteOfThePlainSum_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("sum");
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("header") << QByteArray("LARK") << 0x2A;
        QTest::newRow("wraps to zero") << QByteArray(256, char(0xFF)) << 0;
        QTest::newRow("high bytes count unsigned") << QByteArray::fromHex("80817f") << 0x80;
    }

    void checkSumIsTheLowByteOfThePlainSum()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, sum);
        QCOMPARE(PidFrame::getCheckSum(bytes), sum);
    }

    // vectors written out by hand from the wire format: little-endian header, length
    // and integers, floats least significant byte first, trailing 8-bit sum
    void builtFramesMatchTheWireFormat_data()
    {
        QTest::addColumn<int>("cmd");
        QTest::addColumn<int>("channel");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QByteArray>("wire");
        QTest::newRow("start") << 0x12 << 1 << QByteArray() << QByteArray::fromHex("4c41524b010b0000001248");
        QTest::newRow("reset ch2") << 0x14 << 2 << QByteArray() << QByteArray::fromHex("4c41524b020b000000144b");
        QTest::newRow("target -200") << 0x11 << 2 << QByteArray::fromHex("38ffffff")
                                     << QByteArray::fromHex("4c41524b020f0000001138ffffff81");
        QTest::newRow("pid 1.5 0.25 2") << 0x10 << 1 << QByteArray::fromHex("0000c03f0000803e00000040")
                                        << QByteArray::fromHex("4c41524b0117000000100000c03f0000803e000000404f");
    }

    void builtFramesMatchTheWireFormat()
    {
        QFETCH(int, cmd);
        QFETCH(int, channel);
        QFETCH(QByteArray, payload);
        QFETCH(QByteArray, wire);
        QCOMPARE(PidFrame::build(uchar(cmd), uchar(channel), payload), wire);
    }

    // Each row: the buffer as it stands, the frames one reading pass yields before it
    // has to wait, and how many bytes it consumed.
    void readerCutsFramesAsTheLinkRequires_data()
    {
        QTest::addColumn<QByteArray>("buffer");
        QTest::addColumn<QList<QByteArray>>("frames");
        QTest::addColumn<int>("consumed");

        const QByteArray a = QByteArray::fromHex("4c41524b010f000000014d00000088");
        const QByteArray b = QByteArray::fromHex("4c41524b010b000000043a");
        QTest::newRow("one frame") << a << QList<QByteArray>{a} << a.size();
        QTest::newRow("two frames") << a + b << QList<QByteArray>{a, b} << a.size() + b.size();
        QTest::newRow("garbage first") << QByteArray("\x00\xffLA", 4) + a << QList<QByteArray>{a} << 4 + a.size();
        QTest::newRow("no header keeps last three") << QByteArray("xyzLAR") << QList<QByteArray>{} << 3;
        QTest::newRow("three bytes stay") << QByteArray("xyz") << QList<QByteArray>{} << 0;
        QTest::newRow("ten bytes wait") << a.left(10) << QList<QByteArray>{} << 0;
        QTest::newRow("short tail taken as is") << a.left(11) << QList<QByteArray>{a.left(11)} << 11;
        QByteArray zero = a;
        zero[5] = 0;
        QTest::newRow("length zero consumes nothing") << zero << QList<QByteArray>{QByteArray()} << 0;
        QByteArray three = a;
        three[5] = 3;
        QTest::newRow("length three") << three << QList<QByteArray>{QByteArray("LAR")} << 3;
    }

    void readerCutsFramesAsTheLinkRequires()
    {
        QFETCH(QByteArray, buffer);
        QFETCH(QList<QByteArray>, frames);
        QFETCH(int, consumed);

        const QByteArray header("LARK");
        PidFrameReader reader(buffer, header);
        QList<QByteArray> got;
        QByteArray frame;
        // the page stops reading at a frame of four bytes or fewer
        while (reader.next(frame)) {
            got << frame;
            if (frame.size() <= 4 || reader.atEnd())
                break;
        }
        QCOMPARE(got, frames);
        QCOMPARE(reader.consumed(), consumed);
    }
};

LARK_TEST_GUILESS_MAIN(TstPidFrame)
#include "tst_pidframe.moc"
