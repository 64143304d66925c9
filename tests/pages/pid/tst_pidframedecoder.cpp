#include "LarkTestCore.h"
#include "PidBoardFrame.h"
#include "PidFrame.h"
#include "PidFrameDecoder.h"

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

private slots:
    // Receptions fed in chunks as the port might deliver them, each decoded in one pass
    // as the page does (append, decode, drop what the pass consumed): the frames the page
    // is told to apply, passes separated by '/', and what stays in the buffer.
    void receptionsDecodeAsTheLinkRequires_data()
    {
        QTest::addColumn<QList<QByteArray>>("chunks");
        QTest::addColumn<bool>("displayStopped");
        QTest::addColumn<QString>("decoded");
        QTest::addColumn<QByteArray>("rest");
        using L = QList<QByteArray>;
        const QByteArray t77 = boardFrame(1, 1, le(77));
        const QByteArray p20 = boardFrame(1, 6, le(20));
        const QByteArray s10 = boardFrame(1, 2, le(10));
        const QByteArray pid = boardFrame(4, 3, le(1.25f) + le(0.5f) + le(-3.75f));
        QTest::newRow("pid values CH4") << L{pid} << false << "3:3:1.25,0.5,-3.75" << QByteArray();
        QTest::newRow("started, stopped CH3") << L{boardFrame(1, 4) + boardFrame(3, 5)} << false << "4:0:0 5:2:0" << QByteArray();
        QTest::newRow("three frames one read") << L{t77 + p20 + s10} << false << "1:0:77 6:0:20 2:0:10" << QByteArray();
        QTest::newRow("garbage before header") << L{QByteArray("\x00\x01\xffLA", 5) + t77} << false << "1:0:77" << QByteArray();
        QTest::newRow("no header keeps last three") << L{"xyzLAR"} << false << "" << QByteArray("LAR");
        QTest::newRow("header split after LAR") << L{QByteArray::fromHex("004c4152"), t77.mid(3)} << false << "/1:0:77" << QByteArray();
        // ten bytes wait; past the length the parser does not wait for the whole frame:
        // the short payload reads 0 and the tail falls to the hunt
        QTest::newRow("split 10, 1 and 4") << L{t77.left(10), t77.mid(10, 1), t77.mid(11)} << false << "/1:0:0/" << t77.right(3);
        QTest::newRow("false checksum acts") << L{boardFrame(1, 1, le(77), 9)} << false << "1:0:77" << QByteArray();
        // a bad channel or command ends the pass; the rest waits for the next reception
        QTest::newRow("channel 6 ends the pass") << L{boardFrame(6, 1, le(5)) + t77, {}} << false << "/1:0:77" << QByteArray();
        QTest::newRow("channel 0 ends the pass") << L{boardFrame(0, 1, le(5)) + t77} << false << "" << t77;
        QTest::newRow("command 7 ends the pass") << L{boardFrame(1, 7, le(5)) + t77} << false << "" << t77;
        QTest::newRow("command 0 skipped") << L{boardFrame(1, 0, le(5)) + t77} << false << "1:0:77" << QByteArray();
        QTest::newRow("7-byte frame skipped") << L{withLength(t77, 7) + t77} << false << "1:0:77" << QByteArray();
        QTest::newRow("length 3 eats LAR") << L{withLength(t77, 3)} << false << "" << withLength(t77, 3).mid(3);
        QTest::newRow("length 0 stalls") << L{withLength(t77, 0), t77} << false << "/" << withLength(t77, 0) + t77;
        QTest::newRow("negative length stalls") << L{withLength(t77, -15), p20} << false << "/" << withLength(t77, -15) + p20;
        QTest::newRow("length too big takes all") << L{withLength(t77, 1000) + p20} << false << "1:0:77" << QByteArray();
        // display stopped: a sample is dropped and ends the pass, the rest waits
        QTest::newRow("display stopped") << L{s10 + t77 + s10, {}} << true << "/1:0:77" << QByteArray();
    }

    void receptionsDecodeAsTheLinkRequires()
    {
        QFETCH(QList<QByteArray>, chunks);
        QFETCH(bool, displayStopped);
        QByteArray buffer;
        QStringList passes;
        for (const QByteArray &chunk : chunks) {
            buffer += chunk;
            PidFrameDecoder decoder(buffer, "LARK", displayStopped);
            QStringList got;
            for (PidReceivedFrame f; decoder.next(f);)
                got << describe(f);
            passes << got.join(' ');
            buffer.remove(0, decoder.consumed());
        }
        QTEST(passes.join('/'), "decoded");
        QTEST(buffer, "rest");
    }
};

LARK_TEST_GUILESS_MAIN(TstPidFrameDecoder)
#include "tst_pidframedecoder.moc"
