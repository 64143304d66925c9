#include "CameraBoardFrame.h"
#include "CameraFrame.h"
#include "CameraImageDecoder.h"
#include "CameraLinkDecoder.h"
#include "LarkTestCore.h"

#include <QBuffer>
#include <QImage>
#include <QRandomGenerator>
#include <QTest>

using Chunks = QList<QByteArray>;
using Events = std::vector<CameraLinkEvent>;

// what the page is told, one short word an event
static QString describe(const Events &events)
{
    QStringList out;
    for (const CameraLinkEvent &e : events) {
        switch (e.kind) {
        case CameraLinkEvent::RestartFrameTimer: out << "T"; break;
        case CameraLinkEvent::Notify: out << e.text; break;
        case CameraLinkEvent::DrawRaw: out << QString("raw%1:%2").arg(e.slot).arg(e.data.size()); break;
        case CameraLinkEvent::DrawRgb565: out << QString("565/%1:%2+%3").arg(e.slot).arg(e.offset).arg(e.length); break;
        case CameraLinkEvent::DrawJpeg: out << QString("jpeg:%1").arg(e.data.size()); break;
        case CameraLinkEvent::FrameDone: out << "F"; break;
        case CameraLinkEvent::RefreshCounts: out << "C"; break;
        case CameraLinkEvent::Reply: out << QString("R%1").arg(e.value); break;
        case CameraLinkEvent::RegisterValue: out << QString("reg%1=%2").arg(e.regId).arg(e.value, 0, 16); break;
        case CameraLinkEvent::Toast: out << e.text; break;
        }
    }
    return out.join(' ');
}

// chunks fed one by one; the events of each chunk, chunks separated by '/'
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

static QByteArray jpeg(QColor colour, int size)
{
    QImage image(size, size, QImage::Format_RGB888);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return bytes;
}

// rows of a decoded image as the linear bytes the decoder writes, "rrggbb" a pixel
static QString rows(const QImage &image)
{
    QStringList out;
    const uchar *bits = image.constBits();
    for (int y = 0; y < image.height(); ++y) {
        QStringList row;
        for (int x = 0; x < image.width(); ++x)
            row << QByteArray(reinterpret_cast<const char *>(bits + 3 * (y * image.width() + x)), 3).toHex();
        out << row.join(' ');
    }
    return out.join('|');
}

static QString grey(int k) { return QByteArray(3, char(8 * (k + 1))).toHex(); }

class TstCameraLinkDecoder : public QObject
{
    Q_OBJECT

private slots:
    void framesAreBuiltWithTheirCrc()
    {
        QCOMPARE(modbusCrc("123456789"), quint16(0x4B37));
        QCOMPARE(CameraFrame::build(0, 0, QByteArray(1, 0)), camFrame(0, QByteArray(1, 0)));
        const QByteArray read = CameraFrame::build(0x11, 1, QByteArray::fromHex("0500aa"));
        QCOMPARE(read.left(10), QByteArray::fromHex("4c41524b010f00000011"));
        QCOMPARE(read, camFrame(0x11, QByteArray::fromHex("0500aa"), 1));
    }

    void chunksFollowTheLinkRules_data()
    {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<int>("valueLength");
        QTest::addColumn<bool>("crcCheck");
        QTest::addColumn<QString>("events");
        QTest::addColumn<QByteArray>("rest");
        QTest::addColumn<bool>("collecting");
        const QByteArray f = camFrame(2, greyPixels(4));         // 20 bytes
        const QByteArray g = camFrame(2, greyPixels(6), 1);      // 24 bytes, slot 1
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
        // length fields that name no real frame: nothing loops, the head stays in place
        for (qint64 len : {0LL, 11LL, 0x80000000LL, 0xFFFFFFFFLL}) {
            const QByteArray h = camFrame(2, greyPixels(4), 0, len);
            // 11 takes 11 bytes and leaves 10, too few to look at again
            const int took = len == 11 ? 11 : 0;
            QTest::newRow(qPrintable(QString("image length %1").arg(len)))
                << Chunks{h, "+"} << 1 << false
                << QString("T/R1 565/0:%1+0 F C R0 C%2").arg(took ? 10 : 0).arg(took ? "" : " T") << (h + "+").mid(took) << !took;
        }
        QTest::newRow("format length 0 stays") << Chunks{camFrame(1, fmt.mid(10, 5), 0, 0)} << 1 << false
                                               << "设备[1]修改图像格式[RGB565]成功: 宽度: 640像素,高度：480像素. R0"
                                               << camFrame(1, fmt.mid(10, 5), 0, 0) << false;
    }

    void chunksFollowTheLinkRules()
    {
        QFETCH(Chunks, chunks);
        QFETCH(int, valueLength);
        QFETCH(bool, crcCheck);
        QFETCH(QString, events);
        QFETCH(QByteArray, rest);
        QFETCH(bool, collecting);
        CameraLinkDecoder d;
        CameraLinkDecoder::Options o;
        o.valueLength = valueLength;
        o.crcCheck = crcCheck;
        QCOMPARE(feed(d, chunks, o), events);
        QCOMPARE(d.recvBuffer(), rest);
        QCOMPARE(d.recvImage(), collecting);
    }

    void formatCodesChooseTheDrawing_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("events");
        QTest::addColumn<QString>("suffix");
        QTest::newRow("1 jpg raw") << 1 << "raw0:20 F C R0 C" << "*.jpg";
        QTest::newRow("2 bmp 565") << 2 << "565/0:10+8 F C R0 C" << "*.bmp";
        QTest::newRow("3 png raw") << 3 << "raw0:20 F C R0 C" << "*.png";
        QTest::newRow("5 RGB888 not drawn") << 5 << "F C R0 C" << "RGB888";
        QTest::newRow("7 custom not drawn") << 7 << "F C R0 C" << "自定义";
        QTest::newRow("9 not drawn") << 9 << "F C R0 C" << "*.jpg";
    }

    void formatCodesChooseTheDrawing()
    {
        QFETCH(int, code);
        QFETCH(QString, events);
        QFETCH(QString, suffix);
        CameraLinkDecoder d;
        const QByteArray f = camFrame(2, greyPixels(4));
        const QString note = QString("设备[1]修改图像格式[%1]成功: 宽度: 8像素,高度：2像素. R0").arg(suffix);
        QCOMPARE(feed(d, {formatFrame(0, code, 8, 2), f.left(12), f.mid(12)}, {}), note + "/T/" + events);
        QCOMPARE(d.imageFormats()[0].format, uchar(code));
        QCOMPARE(d.imageFormats()[1].format, uchar(4)); // the other slot keeps its default
    }

    void rgb565PixelsAsTheBoardsExpect_data()
    {
        QTest::addColumn<int>("w");
        QTest::addColumn<int>("h");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<bool>("bigEndian");
        QTest::addColumn<QString>("expected");
        const QString k = "000000";
        auto row = [](QStringList px) { return px.join(' '); };
        // mirrored, one row up, the last row and (0, h - 2) black
        QTest::newRow("4x3 exact payload") << 4 << 3 << greyPixels(12) << false
            << row({grey(8), grey(7), grey(6), grey(5)}) + "|" + row({k, grey(11), grey(10), grey(9)}) + "|" + row({k, k, k, k});
        // rows 9 bytes apart in 12-byte lines: sheared
        QTest::newRow("3x3 sheared") << 3 << 3 << greyPixels(9) << false
            << row({grey(6), grey(5), grey(4)}) + "|" + row({k, grey(8), grey(7)}) + "|" + row({k, k, k});
        // an odd byte count: the half pixel takes its low byte only
        QTest::newRow("odd payload") << 4 << 1 << greyPixels(7).left(13) << false << row({k, k, "001838", grey(5)});
        QTest::newRow("red little endian") << 1 << 1 << QByteArray::fromHex("00000000 00f8") << false << "f80000";
        QTest::newRow("red big endian") << 1 << 1 << QByteArray::fromHex("00000000 f800") << true << "f80000";
        QTest::newRow("white keeps low bits 0") << 1 << 1 << QByteArray::fromHex("00000000 ffff") << false << "f8fcf8";
        QTest::newRow("empty payload black") << 2 << 1 << QByteArray() << false << row({k, k});
    }

    void rgb565PixelsAsTheBoardsExpect()
    {
        QFETCH(int, w);
        QFETCH(int, h);
        QFETCH(QByteArray, payload);
        QFETCH(bool, bigEndian);
        QFETCH(QString, expected);
        const QImage image = CameraImageDecoder::rgb565(w, h, payload.constData(), payload.size(), bigEndian);
        QCOMPARE(rows(image), expected);
        // what the image shows: its rows start every bytesPerLine; the unwritten tail is black
        const int linear = image.bytesPerLine() / 3;
        if (h > 1)
            QCOMPARE(QColor(image.pixel(0, 1)).name().mid(1), rows(image).split(QRegExp("[ |]")).value(linear));
        const QByteArray tail(reinterpret_cast<const char *>(image.constBits()) + 3 * w * h, int(image.sizeInBytes()) - 3 * w * h);
        QCOMPARE(tail, QByteArray(tail.size(), 0));
    }

    void fullSizeImagesAndSizesNotDrawn()
    {
        QByteArray payload;
        for (int p = 0; p < 320 * 240; ++p)
            payload += le16(quint16(p * 7));
        const QImage image = CameraImageDecoder::rgb565(320, 240, payload.constData(), payload.size(), false);
        auto expect = [](int p) { const unsigned v = quint16(p * 7); return qRgb(int((v >> 11) << 3), int((v >> 3) & 0xFC), int((v & 0x1F) << 3)); };
        QCOMPARE(image.pixel(5, 0), expect(320 + 320 - 5));
        QCOMPARE(image.pixel(319, 237), expect(238 * 320 + 1));
        QCOMPARE(image.pixel(0, 238), qRgb(0, 0, 0));
        QCOMPARE(image.pixel(1, 238), expect(239 * 320 + 319));
        QCOMPARE(image.pixel(160, 239), qRgb(0, 0, 0));

        // the raw path lays the whole packet, head first, over padded rows
        const QByteArray packet = camFrame(2, QByteArray(30, '\x11'));
        const QImage raw = CameraImageDecoder::rawRgb888(3, 5, packet);
        QCOMPARE(raw.pixel(0, 0), qRgb('L', 'A', 'R'));
        QCOMPARE(raw.pixel(0, 1), qRgb(uchar(packet[12]), uchar(packet[13]), uchar(packet[14])));
        QCOMPARE(raw.pixel(2, 4), qRgb(0, 0, 0)); // past the packet

        // 65535 by 65535 is announced and counted, but never allocated
        CameraLinkDecoder d;
        const QByteArray f = camFrame(2, greyPixels(4));
        QCOMPARE(feed(d, {formatFrame(0, 4, 65535, 65535), f.left(12), f.mid(12)}, {}),
                 "设备[1]修改图像格式[RGB565]成功: 宽度: 65535像素,高度：65535像素. R0/T/565/0:10+8 F C R0 C");
        QVERIFY(CameraImageDecoder::rgb565(65535, 65535, f.constData(), f.size(), false).isNull());
        QVERIFY(CameraImageDecoder::rawRgb888(65535, 65535, f).isNull());
        QVERIFY(CameraImageDecoder::rgb565(320, 0, f.constData(), f.size(), false).isNull());
        QVERIFY(CameraImageDecoder::drawable(4096, 4096));
    }

    void jpegStreamsAreCutAtTheFirstEoi_data()
    {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<QString>("events");
        QTest::addColumn<QByteArray>("rest");
        const QByteArray a = jpeg(Qt::red, 16);
        const QByteArray b = jpeg(Qt::blue, 24);
        const QString cutA = QString("jpeg:%1 F C").arg(a.size());
        const QString cutB = QString("jpeg:%1 F C").arg(b.size());
        QTest::newRow("junk before the SOI goes") << Chunks{"junk" + a} << "T " + cutA << QByteArray();
        QTest::newRow("junk waits for its SOI") << Chunks{"junk", a.left(3), a.mid(3)} << "/T/" + cutA << QByteArray();
        QTest::newRow("EOI split over chunks") << Chunks{a.chopped(1), a.right(1) + "xy"} << "T/" + cutA << QByteArray("xy");
        QTest::newRow("one image a chunk") << Chunks{a + b, "", ""} << "T " + cutA + "/T " + cutB + "/" << QByteArray();
        QTest::newRow("lone EOI is a frame") << Chunks{"abc\xFF\xD9rest"} << "jpeg:5 F C" << QByteArray("rest");
        QTest::newRow("SOI split over chunks") << Chunks{"junk\xFF", a.mid(1)} << "/T " + cutA << QByteArray();
        // a thumbnail in an APP1 segment: the cut comes at the thumbnail's EOI
        const int app1 = b.size() + 2;
        const QByteArray withThumb = a.left(2) + "\xFF\xE1" + char(app1 >> 8) + char(app1 & 0xFF) + b + a.mid(2);
        QTest::newRow("thumbnail EOI first") << Chunks{withThumb} << QString("T jpeg:%1 F C").arg(6 + b.size()) << a.mid(2);
    }

    void jpegStreamsAreCutAtTheFirstEoi()
    {
        QFETCH(Chunks, chunks);
        QFETCH(QString, events);
        QFETCH(QByteArray, rest);
        CameraLinkDecoder d;
        CameraLinkDecoder::Options o;
        o.jpegMode = true;
        Events all;
        QCOMPARE(feed(d, chunks, o, &all), events);
        QCOMPARE(d.recvBuffer(), rest);
        // whole JPEGs decode; a cut at a thumbnail's EOI does not
        for (const CameraLinkEvent &e : all) {
            if (e.kind == CameraLinkEvent::DrawJpeg && e.data.startsWith("\xFF\xD8"))
                QCOMPARE(QImage::fromData(e.data).isNull(), QByteArray(QTest::currentDataTag()).startsWith("thumbnail"));
        }
    }

    void badInputNeverHangs()
    {
        QRandomGenerator rng(20261123);
        for (bool jpegMode : {false, true}) {
            CameraLinkDecoder d;
            CameraLinkDecoder::Options o;
            o.jpegMode = jpegMode;
            o.crcCheck = rng.bounded(2);
            for (int i = 0; i < 3000; ++i) {
                QByteArray chunk(int(rng.bounded(200)), 0);
                rng.fillRange(reinterpret_cast<quint32 *>(chunk.data()), chunk.size() / 4);
                if (rng.bounded(4) == 0) // a head with a random small length and command
                    chunk = camFrame(int(rng.bounded(4)) * (rng.bounded(2) ? 1 : 0x11), chunk.left(int(rng.bounded(40))), 0,
                                     rng.bounded(60)).left(int(rng.bounded(80)));
                Events events;
                d.receive(chunk, o, events);
                for (const CameraLinkEvent &e : events)
                    if (e.kind == CameraLinkEvent::DrawRgb565)
                        QVERIFY(e.offset + e.length <= e.data.size());
            }
        }
    }

    void fiftyMegabytesWithoutAMarkerStayLinear()
    {
        for (const QByteArray &start : {QByteArray("\xFF\xD8"), QByteArray()}) {
            CameraLinkDecoder d;
            CameraLinkDecoder::Options o;
            o.jpegMode = true;
            const QByteArray chunk(64 * 1024, '\x5A');
            Events events;
            d.receive(start, o, events);
            for (int i = 0; i < 800; ++i)
                d.receive(chunk, o, events);
            QCOMPARE(d.recvBuffer().size(), start.size() + 800 * chunk.size());
            d.receive("\xFF\xD9", o, events);
            QCOMPARE(describe(events), QString("%1jpeg:%2 F C").arg(start.isEmpty() ? "" : "T ").arg(start.size() + 800 * 65536 + 2));
        }
    }
};

LARK_TEST_GUILESS_MAIN(TstCameraLinkDecoder)
#include "tst_cameralinkdecoder.moc"
