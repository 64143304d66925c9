#include "CameraFrame.h"
#include "CameraRegisterRequest.h"
#include "LarkTestCore.h"

#include <QtTest>

class TstCameraRegisterRequest : public QObject
{
    Q_OBJECT
private slots:
    // payload in hex, or the refusal; fields little-endian and cut to the width set
    void requestsFollowTheRowAndTheWidths_data()
    {
        QTest::addColumn<QString>("addr");
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("regId");
        QTest::addColumn<int>("addrLen");
        QTest::addColumn<int>("valueLen");
        QTest::addColumn<QString>("expected");
        QTest::newRow("read: row id, then address") << "1F" << "" << 2 << 1 << 1 << "read 02001f";
        QTest::newRow("write: address, then value") << "1F2" << "AB" << 0 << 2 << 1 << "write f201ab";
        QTest::newRow("four-byte fields") << "12345678" << "9ABCDEF0" << 0 << 4 << 4 << "write 78563412f0debc9a";
        QTest::newRow("cut to the width") << "1234" << "5678" << 0 << 1 << 1 << "write 3478";
        QTest::newRow("not hex reads 0") << "zz" << "" << 7 << 2 << 0 << "read 07000000";
        QTest::newRow("address width 0") << "1" << "2" << 0 << 0 << 1 << "寄存器地址长度设置错误[1~4]";
        QTest::newRow("address width 5") << "1" << "" << 0 << 5 << 1 << "寄存器地址长度设置错误[1~4]";
        QTest::newRow("value width 5 on a write") << "1" << "2" << 0 << 1 << 5 << "寄存器值长度设置错误[1~4]";
        QTest::newRow("value width is not a read's concern") << "1" << "" << 1 << 1 << 9 << "read 010001";
    }

    void requestsFollowTheRowAndTheWidths()
    {
        QFETCH(QString, addr);
        QFETCH(QString, value);
        QFETCH(int, regId);
        QFETCH(int, addrLen);
        QFETCH(int, valueLen);
        QFETCH(QString, expected);
        const CameraRegisterRequest request(addr, value, regId, addrLen, valueLen);
        if (!request.error().isEmpty()) {
            QCOMPARE(request.error(), expected);
            return;
        }
        QCOMPARE(int(request.command()), int(request.isWrite() ? CameraFrame::CMD_WRITE_REG : CameraFrame::CMD_READ_REG));
        QCOMPARE(QString(request.isWrite() ? "write " : "read ") + request.payload().toHex(), expected);
    }
};

LARK_TEST_GUILESS_MAIN(TstCameraRegisterRequest)
#include "tst_cameraregisterrequest.moc"
