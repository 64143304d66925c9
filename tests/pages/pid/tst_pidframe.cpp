#include "LarkTestCore.h"
#include "PidBoardFrame.h"
#include "PidFrame.h"
#include "PidFrameDecoder.h"

#include <QTest>

// What the page sends and what the board sends back, built by PidFrame: the same bytes
// as the board's own builder, and for the board's commands the same values once decoded.
class TstPidFrame : public QObject
{
    Q_OBJECT
private slots:
    void eachKindOfCommandRoundTripsOnEveryChannel_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QByteArray>("wire"); // the board's own encoding of the payload
        QTest::addColumn<QString>("decoded"); // value or "p,i,d"; empty: not a board command
        const QByteArray pid = PidFrame::pidPayload(1.25f, 0.5f, -3.75f);
        const QByteArray pidWire = le(1.25f) + le(0.5f) + le(-3.75f);
        QTest::newRow("target received") << 1 << PidFrame::valuePayload(-77) << le(qint32(-77)) << "-77";
        QTest::newRow("actual received") << 2 << PidFrame::valuePayload(123456) << le(qint32(123456)) << "123456";
        QTest::newRow("pid received") << 3 << pid << pidWire << "1.25,0.5,-3.75";
        QTest::newRow("started") << 4 << QByteArray() << QByteArray() << "0";
        QTest::newRow("period received") << 6 << PidFrame::valuePayload(20) << le(qint32(20)) << "20";
        QTest::newRow("send pid") << int(PidFrame::SendPidValues) << pid << pidWire << "";
        QTest::newRow("send target") << int(PidFrame::SendTargetValue) << PidFrame::valuePayload(INT_MIN) << le(qint32(INT_MIN)) << "";
        QTest::newRow("send start") << int(PidFrame::SendStart) << QByteArray() << QByteArray() << "";
        QTest::newRow("send period") << int(PidFrame::SendPeriod) << PidFrame::valuePayload(1000) << le(qint32(1000)) << "";
    }

    void eachKindOfCommandRoundTripsOnEveryChannel()
    {
        QFETCH(int, command);
        QFETCH(QByteArray, payload);
        QFETCH(QByteArray, wire);
        QFETCH(QString, decoded);
        for (int index = 0; index < 5; ++index) {
            const QByteArray frame = PidFrame::build(uchar(command), PidFrame::channelByte(index), payload);
            QCOMPARE(frame, boardFrame(index + 1, command, wire));
            PidReceivedFrame f;
            const PidFrameDecoder::Verdict verdict = PidFrameDecoder::decode(frame, false, f);
            if (decoded.isEmpty()) { // a host command coming back ends the pass
                QCOMPARE(verdict, PidFrameDecoder::EndPass);
                continue;
            }
            QCOMPARE(verdict, PidFrameDecoder::Apply);
            QCOMPARE(int(f.command), command);
            QCOMPARE(f.channel, index);
            const QString got = command == PidFrame::RecvPidValues
                ? QString("%1,%2,%3").arg(double(f.p)).arg(double(f.i)).arg(double(f.d))
                : QString::number(f.value);
            QCOMPARE(got, decoded);
        }
    }

    // first, fifth, no selection, wrapped: the byte for each channel index
    void channelByteWraps()
    {
        for (const QPair<int, int> &b : QList<QPair<int, int>>{{0, 1}, {4, 5}, {-1, 0}, {255, 0}})
            QCOMPARE(int(PidFrame::channelByte(b.first)), b.second);
    }
};

LARK_TEST_GUILESS_MAIN(TstPidFrame)
#include "tst_pidframe.moc"
