#include "LarkTestCore.h"
#include "PidBoardFrame.h"
#include "PidFrame.h"
#include "PidFrameDecoder.h"

#include <QRandomGenerator>
#include <QTest>

// "command:channel index:value" or "3:channel index:p,i,d"
static QString describe(const PidReceivedFrame &f)
{
    const QString head = QString("%1:%2:").arg(f.command).arg(f.channel);
    if (f.command == PidFrame::RecvPidValues)
        return head + QString("%1,%2,%3").arg(double(f.p)).arg(double(f.i)).arg(double(f.d));
    return head + QString::number(f.value);
}

class TstPidFrameDecoder : public QObject
{
    Q_OBJECT

private:
    // one reception after the other, as the page takes them: append, one pass, drop
    // what the pass consumed
    static QString receive(QByteArray &buffer, const QList<QByteArray> &chunks, bool displayStopped)
    {
        QStringList got;
        for (const QByteArray &chunk : chunks) {
            buffer += chunk;
            PidFrameDecoder decoder(buffer, "LARK", displayStopped);
            PidReceivedFrame f;
            while (decoder.next(f))
                got << describe(f);
            buffer.remove(0, decoder.consumed());
        }
        return got.join(' ');
    }

private slots:
    // Receptions fed in chunks as the port might deliver them: the frames the page is
    // told to apply, in order, and what stays in the buffer.
    void receptionsDecodeAsTheLinkRequires_data()
    {
        QTest::addColumn<QList<QByteArray>>("chunks");
        QTest::addColumn<bool>("displayStopped");
        QTest::addColumn<QString>("decoded");
        QTest::addColumn<QByteArray>("rest");

        const QByteArray t77 = boardFrame(1, 1, le(77));
        const QByteArray p20 = boardFrame(1, 6, le(20));
        const QByteArray s10 = boardFrame(1, 2, le(10));
        const QByteArray pid = boardFrame(4, 3, le(1.25f) + le(0.5f) + le(-3.75f));
        QTest::newRow("target") << QList<QByteArray>{t77} << false << "1:0:77" << QByteArray();
        QTest::newRow("pid values CH4") << QList<QByteArray>{pid} << false << "3:3:1.25,0.5,-3.75" << QByteArray();
        QTest::newRow("started, stopped CH3") << QList<QByteArray>{boardFrame(1, 4) + boardFrame(3, 5)} << false
                                              << "4:0:0 5:2:0" << QByteArray();
        QTest::newRow("two frames one read") << QList<QByteArray>{t77 + p20} << false << "1:0:77 6:0:20" << QByteArray();
        QTest::newRow("garbage before header") << QList<QByteArray>{QByteArray("\x00\x01\xffLA", 5) + t77} << false
                                               << "1:0:77" << QByteArray();
        QTest::newRow("no header keeps last three") << QList<QByteArray>{"xyzLAR"} << false << "" << QByteArray("LAR");
        QTest::newRow("three bytes stay") << QList<QByteArray>{"xyz"} << false << "" << QByteArray("xyz");
        QTest::newRow("header split after LAR") << QList<QByteArray>{QByteArray::fromHex("004c4152"), t77.mid(3)}
                                                << false << "1:0:77" << QByteArray();
        QTest::newRow("ten bytes wait") << QList<QByteArray>{t77.left(10)} << false << "" << t77.left(10);
        // the parser does not wait for the whole length: cut at 11 bytes, the short
        // payload reads 0 and the tail falls to the hunt
        QTest::newRow("split 11 and 4") << QList<QByteArray>{t77.left(11), t77.mid(11)} << false << "1:0:0" << t77.right(3);
        QTest::newRow("byte by byte") << [&] {
            QList<QByteArray> l;
            for (char ch : t77)
                l << QByteArray(1, ch);
            return l;
        }() << false << "1:0:0" << t77.right(3);
        QTest::newRow("false checksum acts") << QList<QByteArray>{boardFrame(1, 1, le(77), 9)} << false << "1:0:77" << QByteArray();
        QTest::newRow("channel 6 holds the rest") << QList<QByteArray>{boardFrame(6, 1, le(5)) + t77} << false << "" << t77;
        QTest::newRow("rest goes on next reception") << QList<QByteArray>{boardFrame(6, 1, le(5)) + t77, QByteArray()}
                                                     << false << "1:0:77" << QByteArray();
        QTest::newRow("channel 0 holds the rest") << QList<QByteArray>{boardFrame(0, 1, le(5)) + t77} << false << "" << t77;
        QTest::newRow("command 7 holds the rest") << QList<QByteArray>{boardFrame(1, 7, le(5)) + t77} << false << "" << t77;
        QTest::newRow("command 0 skipped") << QList<QByteArray>{boardFrame(1, 0, le(5)) + t77} << false << "1:0:77" << QByteArray();
        QTest::newRow("7-byte frame skipped") << QList<QByteArray>{withLength(t77, 7) + t77} << false << "1:0:77" << QByteArray();
        QTest::newRow("length 3 eats LAR") << QList<QByteArray>{withLength(t77, 3)} << false << "" << withLength(t77, 3).mid(3);
        QTest::newRow("length 0 stalls") << QList<QByteArray>{withLength(t77, 0), t77} << false << "" << withLength(t77, 0) + t77;
        QTest::newRow("negative length stalls") << QList<QByteArray>{withLength(t77, -15), p20} << false << ""
                                                << withLength(t77, -15) + p20;
        QTest::newRow("length too big takes all") << QList<QByteArray>{withLength(t77, 1000) + p20} << false << "1:0:77" << QByteArray();
        QTest::newRow("samples while shown") << QList<QByteArray>{s10 + s10} << false << "2:0:10 2:0:10" << QByteArray();
        // display stopped: one sample is dropped per reception and the rest waits
        QTest::newRow("display stopped") << QList<QByteArray>{s10 + t77 + s10} << true << "" << t77 + s10;
        QTest::newRow("display stopped, next") << QList<QByteArray>{s10 + t77 + s10, QByteArray()} << true << "1:0:77" << QByteArray();
    }

    void receptionsDecodeAsTheLinkRequires()
    {
        QFETCH(QList<QByteArray>, chunks);
        QFETCH(bool, displayStopped);
        QFETCH(QString, decoded);
        QFETCH(QByteArray, rest);
        QByteArray buffer;
        QCOMPARE(receive(buffer, chunks, displayStopped), decoded);
        QCOMPARE(buffer, rest);
    }

    // 1 MB in one reception is taken in one pass, without a call per frame
    void megabyteReceptionIsOnePass()
    {
        QByteArray big;
        int n = 0;
        for (; big.size() < (1 << 20); ++n)
            big += boardFrame(n % 5 + 1, 2, le(n));
        QByteArray buffer;
        QCOMPARE(receive(buffer, {big}, false).count(' ') + 1, n);
        QCOMPARE(buffer, QByteArray());
    }

    // whatever arrives, the page is only ever told about channels 0..4 and commands
    // 1..6, which it uses as indexes
    void randomBytesDecodeOnlyValidFrames()
    {
        QRandomGenerator rng(20261122);
        QByteArray buffer;
        int applied = 0;
        for (int round = 0; round < 40000; ++round) {
            QByteArray chunk(rng.bounded(0, 12), 0);
            for (char &ch : chunk)
                ch = char(rng.bounded(256));
            if (rng.bounded(3)) {
                QByteArray f = boardFrame(rng.bounded(0, 8), rng.bounded(0, 9), chunk);
                if (rng.bounded(4) == 0)
                    f = withLength(f, qint32(rng.bounded(-3, 40)));
                chunk = f.left(rng.bounded(1, f.size() + 1));
            }
            buffer += chunk;
            PidFrameDecoder decoder(buffer, "LARK", rng.bounded(5) == 0);
            PidReceivedFrame f;
            while (decoder.next(f)) {
                QVERIFY(f.channel >= 0 && f.channel <= 4);
                QVERIFY(f.command >= 1 && f.command <= 6);
                ++applied;
            }
            buffer.remove(0, decoder.consumed());
            if (buffer.size() > 256) // a stalled link never recovers
                buffer.clear();
        }
        QVERIFY(applied > 500);
    }
};

LARK_TEST_GUILESS_MAIN(TstPidFrameDecoder)
#include "tst_pidframedecoder.moc"
