#include "CameraBoardFrame.h"
#include "CameraFrame.h"
#include "LarkTestCore.h"

#include <QtTest>

class TstCameraFrame : public QObject
{
    Q_OBJECT
private slots:
    // the program's frames are the board's: same head, length, command and CRC
    void builtFramesAreTheBoardsFrames_data()
    {
        QTest::addColumn<int>("cmd");
        QTest::addColumn<int>("addr");
        QTest::addColumn<QByteArray>("payload");
        QTest::newRow("reply") << 0x00 << 0 << QByteArray(1, 0);
        QTest::newRow("read register") << 0x11 << 255 << QByteArray::fromHex("02001f");
        QTest::newRow("empty payload") << 0x02 << 1 << QByteArray();
        QTest::newRow("large payload") << 0x02 << 1 << QByteArray(70000, '\xA5');
    }

    void builtFramesAreTheBoardsFrames()
    {
        QFETCH(int, cmd);
        QFETCH(int, addr);
        QFETCH(QByteArray, payload);
        const QByteArray frame = CameraFrame::build(uchar(cmd), uchar(addr), payload);
        QCOMPARE(frame, camFrame(cmd, payload, addr));
        QCOMPARE(modbusCrc("123456789"), quint16(0x4B37)); // the board's CRC is the published one
    }

    void fieldsAreLittleEndianAndReadZeroPastTheEnd_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<int>("pos");
        QTest::addColumn<int>("n");
        QTest::addColumn<uint>("value");
        QTest::newRow("two bytes") << QByteArray::fromHex("3412") << 0 << 2 << 0x1234u;
        QTest::newRow("four bytes") << QByteArray::fromHex("00efbeadde") << 1 << 4 << 0xDEADBEEFu;
        QTest::newRow("past the end") << QByteArray::fromHex("ab") << 0 << 3 << 0xABu;
        QTest::newRow("before the start") << QByteArray::fromHex("ab") << -1 << 2 << 0xAB00u;
        QTest::newRow("at most four") << QByteArray::fromHex("0102030405") << 0 << 5 << 0x04030201u;
    }

    void fieldsAreLittleEndianAndReadZeroPastTheEnd()
    {
        QFETCH(QByteArray, data);
        QFETCH(int, pos);
        QFETCH(int, n);
        QFETCH(uint, value);
        QCOMPARE(CameraFrame::readLe(data, pos, n), value);
        if (pos == 0 && n <= 4 && data.size() >= n) // and back
            QCOMPARE(CameraFrame::le(value, n), data.left(n));
    }
};

LARK_TEST_GUILESS_MAIN(TstCameraFrame)
#include "tst_cameraframe.moc"
