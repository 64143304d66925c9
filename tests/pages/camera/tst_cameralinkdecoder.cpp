#include "CameraBoardFrame.h"
#include "CameraFrame.h"
#include "CameraImageDecoder.h"
#include "CameraLinkDecoder.h"
#include "LarkTestCore.h"

#include <QTest>

using Chunks = QList<QByteArray>;
using Events = std::vector<CameraLinkEvent>;

// what the page is told, a short word an event
static QString describe(const Events &events)
{
    QStringList out;
    for (const CameraLinkEvent &e : events) {
        const QString words[] = {"T", e.text, QString("raw%1:%2").arg(e.slot).arg(e.data.size()),
                                 QString("565/%1:%2+%3").arg(e.slot).arg(e.offset).arg(e.length),
                                 QString("jpeg:%1").arg(e.data.size()), "F", "C", QString("R%1").arg(e.value),
                                 QString("reg%1=%2").arg(e.regId).arg(e.value, 0, 16), e.text};
        out << words[e.kind];
    }
    return out.join(' ');
}

// chunks fed one by one: the events of each, separated by '/'
static QString feed(CameraLinkDecoder &d, const Chunks &chunks, const CameraLinkDecoder::Options &o, Events *all = nullptr)
{
    QStringList passes;
    for (const QByteArray &c : chunks) {
        Events events;
        d.receive(c, o, events);
        passes << describe(events);
        if (all)
            all->insert(all->end(), events.begin(), events.end());
    }
    return passes.join('/');
}

// the linear bytes the decoder writes, "rrggbb" a pixel, rows separated by '|'
static QString rows(const QImage &image)
{
    QStringList out;
    for (int y = 0; y < image.height(); ++y)
        out << QByteArray(reinterpret_cast<const char *>(image.constBits()) + 3 * y * image.width(), 3 * image.width()).toHex();
    return out.join('|');
}

static QString grey(int k) { return QByteArray(3, char(8 * (k + 1))).toHex(); }

class TstCameraLinkDecoder : public QObject
{
    Q_OBJECT

private slots:
    void chunksFollowTheLinkRules_data()
    {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<int>("valueLength");
        QTest::addColumn<bool>("crcCheck");
        QTest::addColumn<QString>("events");
        QTest::addColumn<QByteArray>("rest");
        QTest::addColumn<bool>("collecting");
        const QByteArray f = camFrame(2, greyPixels(4));    // 20 bytes
        const QByteArray g = camFrame(2, greyPixels(6), 1); // 24 bytes, slot 1
        const QByteArray bad = camFrame(2, greyPixels(4), 0, -1, 1);
        const QString drawn = "565/0:10+8 F C R0 C";
        const QByteArray fmt = formatFrame(1, 4, 640, 480);
        const QString fmtText = "设备[2]修改图像格式[RGB565]成功: 宽度: 640像素,高度：480像素. R0";
        QTest::newRow("whole frame in one chunk waits") << Chunks{f} << 1 << false << "T" << f << true;
        QTest::newRow("a later chunk draws it") << Chunks{f, "xy"} << 1 << false << "T/" + drawn << QByteArray("xy") << false;
        QTest::newRow("split after the head") << Chunks{f.left(12), f.mid(12)} << 1 << false << "T/" + drawn << QByteArray() << false;
        QTest::newRow("head chunk under 12 bytes") << Chunks{f.left(5), f.mid(5), "z"} << 1 << false << "/T/" + drawn << QByteArray("z") << false;
        QTest::newRow("a head chunk drops what was collected") << Chunks{f.left(12), g} << 1 << false << "T/T" << g << true;
        QTest::newRow("short head chunk dropped by the next head") << Chunks{f.left(5), g.left(12), g.mid(12)} << 1 << false
                                                                  << "/T/565/1:10+12 F C R0 C" << QByteArray() << false;
        QTest::newRow("garbage first loses all") << Chunks{"garbage" + f} << 1 << false << "" << QByteArray() << false;
        QTest::newRow("two frames: the second is collected") << Chunks{f.left(12), f.mid(12) + g} << 1 << false
                                                            << "T/" + drawn + " T" << g << true;
        QTest::newRow("other commands skipped") << Chunks{camFrame(0x10, "ab") + camFrame(0, "c")} << 1 << false << "" << camFrame(0, "c") << false;
        QTest::newRow("format") << Chunks{fmt} << 1 << false << fmtText << QByteArray() << false;
        QTest::newRow("format, first chunk under 12") << Chunks{fmt.left(8), fmt.mid(8)} << 1 << false << "/" + fmtText << QByteArray() << false;
        QTest::newRow("format cut after 12 is lost") << Chunks{fmt.left(12), fmt.mid(12)} << 1 << false << "/" << fmt.mid(12) << false;
        // what each format code draws: the raw path takes the whole packet
        const QStringList codes{"", "*.jpg raw0:20", "*.bmp 565/0:10+8", "*.png raw0:20", "", "RGB888", "", "自定义", "", "*.jpg"};
        for (int code : {1, 2, 3, 5, 7, 9}) {
            const QString note = QString("设备[1]修改图像格式[%1]成功: 宽度: 8像素,高度：2像素. R0").arg(codes[code].section(' ', 0, 0));
            const QString draw = codes[code].section(' ', 1);
            QTest::newRow(qPrintable(QString("format code %1").arg(code))) << Chunks{formatFrame(0, code, 8, 2), f.left(12), f.mid(12)}
                << 1 << false << note + "/T/" + (draw.isEmpty() ? "" : draw + " ") + "F C R0 C" << QByteArray() << false;
        }
        QTest::newRow("read answer") << Chunks{readAnswer(0, 3, 0xAB, 1)} << 1 << false << "reg3=ab" << QByteArray() << false;
        QTest::newRow("read answer, 4 bytes") << Chunks{readAnswer(0, 0x102, 0xCAFEF00D, 4)} << 4 << false << "reg258=cafef00d" << QByteArray() << false;
        QTest::newRow("read status 1") << Chunks{readAnswer(1, 3, 0, 2)} << 2 << false << "数据包接收错误!" << QByteArray() << false;
        QTest::newRow("read status 2") << Chunks{readAnswer(2, 3, 0, 2)} << 2 << false << "没有这个寄存器!" << QByteArray() << false;
        QTest::newRow("read status 200") << Chunks{readAnswer(200, 3, 0, 2)} << 2 << false << "寄存器读取错误，错误代码[200]!" << QByteArray() << false;
        const QString mismatch = "当前数据长度与配置不符合！";
        QTest::newRow("read length mismatch repeats") << Chunks{readAnswer(2, 3, 0, 1), "zz", "LARK"} << 2 << false
                                                     << mismatch + "/" + mismatch + "/" << QByteArray("LARK") << false;
        QTest::newRow("crc fail, checked: dropped") << Chunks{bad.left(12), bad.mid(12) + "LARKtail....."} << 1 << true
                                                   << "T/R1" << QByteArray("LARKtail.....") << false;
        QTest::newRow("crc fail, unchecked: drawn too") << Chunks{bad.left(12), bad.mid(12)} << 1 << false << "T/R1 " + drawn << QByteArray() << false;
        // length fields that name no real frame: nothing loops; 11 takes 11 bytes and
        // leaves too few to look at again, the others take nothing
        for (qint64 len : {0LL, 11LL, 0x80000000LL, 0xFFFFFFFFLL}) {
            const QByteArray h = camFrame(2, greyPixels(4), 0, len);
            const int took = len == 11 ? 11 : 0;
            QTest::newRow(qPrintable(QString("image length %1").arg(len))) << Chunks{h, "+"} << 1 << false
                << QString("T/R1 565/0:%1+0 F C R0 C%2").arg(took ? 10 : 0).arg(took ? "" : " T") << (h + "+").mid(took) << !took;
        }
        QTest::newRow("format length 0 stays") << Chunks{camFrame(1, fmt.mid(10, 5), 0, 0)} << 1 << false
                                               << "设备[1]" + fmtText.mid(5) << camFrame(1, fmt.mid(10, 5), 0, 0) << false;
        // a frame longer than any image is refused at its head, and what follows goes
        // until the next head; the longest allowed one is collected
        const qint64 most = CameraLinkDecoder::MaximumImageFrame;
        const QByteArray over = camFrame(2, greyPixels(4), 0, most + 1), at = camFrame(2, greyPixels(4), 0, most);
        QTest::newRow("one byte too long") << Chunks{over, "trickle", f.left(12), f.mid(12)} << 1 << false
                                           << "R1//T/565/0:10+8 F C R0 C" << QByteArray() << false;
        QTest::newRow("the longest") << Chunks{at, "trickle"} << 1 << false << "T/" << at + "trickle" << true;
    }

    void chunksFollowTheLinkRules()
    {
        QFETCH(Chunks, chunks);
        QFETCH(int, valueLength);
        QFETCH(bool, crcCheck);
        QFETCH(QString, events);
        CameraLinkDecoder d;
        CameraLinkDecoder::Options o;
        o.valueLength = valueLength;
        o.crcCheck = crcCheck;
        QCOMPARE(feed(d, chunks, o), events);
        QTEST(d.recvBuffer(), "rest");
        QTEST(d.recvImage(), "collecting");
    }

    void rgb565PixelsAsTheBoardsExpect_data()
    {
        QTest::addColumn<int>("w");
        QTest::addColumn<int>("h");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<bool>("bigEndian");
        QTest::addColumn<QString>("expected");
        const QString k = "000000";
        // mirrored, one row up, the last row and (0, h - 2) black
        QTest::newRow("4x3 exact payload") << 4 << 3 << greyPixels(12) << false
            << grey(8) + grey(7) + grey(6) + grey(5) + "|" + k + grey(11) + grey(10) + grey(9) + "|" + k + k + k + k;
        // rows 9 bytes apart in 12-byte lines: sheared
        QTest::newRow("3x3 sheared") << 3 << 3 << greyPixels(9) << false << grey(6) + grey(5) + grey(4) + "|" + k + grey(8) + grey(7) + "|" + k + k + k;
        // an odd byte count: the half pixel takes its low byte only
        QTest::newRow("odd payload") << 4 << 1 << greyPixels(7).left(13) << false << k + k + "001838" + grey(5);
        QTest::newRow("red little endian") << 1 << 1 << QByteArray::fromHex("00000000 00f8") << false << "f80000";
        QTest::newRow("red big endian") << 1 << 1 << QByteArray::fromHex("00000000 f800") << true << "f80000";
        QTest::newRow("white keeps low bits 0") << 1 << 1 << QByteArray::fromHex("00000000 ffff") << false << "f8fcf8";
        QTest::newRow("empty payload black") << 2 << 1 << QByteArray() << false << k + k;
    }

    void rgb565PixelsAsTheBoardsExpect()
    {
        QFETCH(int, w);
        QFETCH(int, h);
        QFETCH(QByteArray, payload);
        QFETCH(bool, bigEndian);
        const QImage image = CameraImageDecoder::rgb565(w, h, payload.constData(), payload.size(), bigEndian);
        QTEST(rows(image), "expected");
        // the image's own rows start every bytesPerLine; the unwritten tail is black
        const QByteArray linear = rows(image).remove('|').toLatin1();
        if (h > 1)
            QCOMPARE(QColor(image.pixel(0, 1)).name().mid(1), QString(linear.mid(2 * image.bytesPerLine(), 6)));
        const QByteArray tail(reinterpret_cast<const char *>(image.constBits()) + 3 * w * h, int(image.sizeInBytes()) - 3 * w * h);
        QCOMPARE(tail, QByteArray(tail.size(), 0));
    }

    void rawAndUndrawableImages()
    {
        // the raw path lays the whole packet, head first, over 32-bit aligned rows
        const QByteArray packet = camFrame(2, QByteArray(30, '\x11'));
        const QImage raw = CameraImageDecoder::rawRgb888(3, 5, packet);
        QVERIFY(raw.pixel(0, 0) == qRgb('L', 'A', 'R') && raw.pixel(0, 1) == qRgb(uchar(packet[12]), uchar(packet[13]), uchar(packet[14])));
        QCOMPARE(raw.pixel(2, 4), qRgb(0, 0, 0)); // past the packet

        // 65535 by 65535 is announced and counted, but never allocated
        CameraLinkDecoder d;
        const QByteArray f = camFrame(2, greyPixels(4));
        QCOMPARE(feed(d, {formatFrame(0, 4, 65535, 65535), f.left(12), f.mid(12)}, {}),
                 "设备[1]修改图像格式[RGB565]成功: 宽度: 65535像素,高度：65535像素. R0/T/565/0:10+8 F C R0 C");
        QVERIFY(CameraImageDecoder::rgb565(65535, 65535, f.constData(), f.size(), false).isNull());
        QVERIFY(CameraImageDecoder::rawRgb888(65535, 65535, f).isNull() && CameraImageDecoder::drawable(4096, 4096));
    }

    void jpegStreamsAreCutAtTheFirstEoi_data()
    {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<QString>("events");
        QTest::addColumn<QByteArray>("rest");
        const QByteArray a = jpegOf(Qt::red, 16, 16);
        const QByteArray b = jpegOf(Qt::blue, 24, 24);
        const QString cutA = QString("jpeg:%1 F C").arg(a.size());
        QTest::newRow("junk before the SOI goes") << Chunks{"junk" + a} << "T " + cutA << QByteArray();
        QTest::newRow("junk waits for its SOI") << Chunks{"junk", a.left(3), a.mid(3)} << "/T/" + cutA << QByteArray();
        QTest::newRow("SOI split over chunks") << Chunks{"junk\xFF", a.mid(1)} << "/T " + cutA << QByteArray();
        QTest::newRow("EOI split over chunks") << Chunks{a.chopped(1), a.right(1) + "xy"} << "T/" + cutA << QByteArray("xy");
        QTest::newRow("one image a chunk") << Chunks{a + b, "", ""} << QString("T %1/T jpeg:%2 F C/").arg(cutA).arg(b.size()) << QByteArray();
        QTest::newRow("lone EOI is a frame") << Chunks{"abc\xFF\xD9rest"} << "jpeg:5 F C" << QByteArray("rest");
        // a thumbnail in an APP1 segment: the cut comes at the thumbnail's EOI
        const int app1 = b.size() + 2;
        const QByteArray withThumb = a.left(2) + "\xFF\xE1" + char(app1 >> 8) + char(app1 & 0xFF) + b + a.mid(2);
        QTest::newRow("thumbnail EOI first") << Chunks{withThumb} << QString("T jpeg:%1 F C").arg(6 + b.size()) << a.mid(2);
        // an image that never ends is let go at the bound; the next SOI starts afresh
        const QByteArray endless(CameraLinkDecoder::MaximumJpegImage - 2, '\x5A');
        const QString dropped = "JPEG数据超过64MB仍无结束标记，已丢弃";
        QTest::newRow("past the bound: dropped") << Chunks{a.left(2), endless, "zzz", a} << QString("T//%1/T %2").arg(dropped, cutA) << QByteArray();
        QTest::newRow("past the bound: a later SOI kept") << Chunks{a.left(2), endless, a.left(5), a.mid(5)} << QString("T//%1 T/%2").arg(dropped, cutA) << QByteArray();
        QTest::newRow("past the bound without SOI") << Chunks{endless, "zzz", a} << QString("/%1/T %2").arg(dropped, cutA) << QByteArray();
    }

    void jpegStreamsAreCutAtTheFirstEoi()
    {
        QFETCH(Chunks, chunks);
        CameraLinkDecoder d;
        CameraLinkDecoder::Options o;
        o.jpegMode = true;
        Events all;
        QTEST(feed(d, chunks, o, &all), "events");
        QTEST(d.recvBuffer(), "rest");
        // whole JPEGs decode; a cut at a thumbnail's EOI does not
        for (const CameraLinkEvent &e : all) {
            if (e.kind == CameraLinkEvent::DrawJpeg && e.data.startsWith("\xFF\xD8"))
                QCOMPARE(QImage::fromData(e.data).isNull(), QByteArray(QTest::currentDataTag()).startsWith("thumbnail"));
        }
    }

    void fiftyMegabytesWithoutAMarker()
    {
        for (const QByteArray &start : {QByteArray("\xFF\xD8"), QByteArray()}) {
            CameraLinkDecoder d;
            const CameraLinkDecoder::Options o{true, false, 1};
            const QByteArray chunk(64 * 1024, '\x5A');
            Events events;
            d.receive(start, o, events);
            for (int i = 0; i < 800; ++i)
                d.receive(chunk, o, events);
            d.receive("\xFF\xD9", o, events);
            QCOMPARE(describe(events), QString("%1jpeg:%2 F C").arg(start.isEmpty() ? "" : "T ").arg(start.size() + 800 * 65536 + 2));
        }
    }
};

LARK_TEST_GUILESS_MAIN(TstCameraLinkDecoder)
#include "tst_cameralinkdecoder.moc"
