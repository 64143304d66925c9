#include "SimCommandLine.h"

#include <QtTest>

// What larksim makes of its arguments: every option's effect and every error text,
// as users and the scripts that start larksim see them.
class TstSimCommandLine : public QObject
{
    Q_OBJECT

    static QString summary(const SimCommandLine &c)
    {
        const auto &e = c.endpoint;
        const auto &k = c.camera;
        const auto &t = c.text;
        return QString("%1 ep=%2:%3:%4:%5 cam=%6:%7x%8@%9:d%10:a%11:v%12:%13:%14 "
                       "text=%15:%16:%17:%18:%19:%20:%21 noise=%22 file=%23 speed=%24")
            .arg(c.command).arg(e.kind).arg(e.path, e.host).arg(e.port)
            .arg(k.format).arg(k.width).arg(k.height).arg(k.fps).arg(k.device).arg(k.addrLen)
            .arg(k.valueLen).arg(k.regsFile).arg(k.verbose)
            .arg(t.kind).arg(QString(t.encoding)).arg(t.linesPerSecond).arg(t.bytesPerSecond)
            .arg(t.burst).arg(t.echo).arg(t.count).arg(c.noise).arg(c.file).arg(c.speed);
    }

private slots:
    void argumentsSetTheBoardOrSayWhatIsWrong_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<QString>("expected"); // "!" and the error, or the summary
        const QString d = " cam=0:320x240@10:d0:a1:v1::0 text=0:GB18030:10:0:256:0:-1 noise=0 file= speed=1";
        QTest::newRow("readme serial") << "text --pty /tmp/ttyLARK0 --lines-per-s 5"
            << "text ep=0:/tmp/ttyLARK0::0 cam=0:320x240@10:d0:a1:v1::0 text=0:GB18030:5:0:256:0:-1 noise=0 file= speed=1";
        QTest::newRow("readme camera") << "camera --tcp-client 127.0.0.1:6000 --fps 25"
            << "camera ep=2::127.0.0.1:6000 cam=0:320x240@25:d0:a1:v1::0 text=0:GB18030:10:0:256:0:-1 noise=0 file= speed=1";
        QTest::newRow("readme network") << "text --tcp-client 127.0.0.1:6001 --echo"
            << "text ep=2::127.0.0.1:6001 cam=0:320x240@10:d0:a1:v1::0 text=0:GB18030:10:0:256:1:-1 noise=0 file= speed=1";
        QTest::newRow("readme pid") << "pid --pty /tmp/ttyLARK1 --noise 2"
            << "pid ep=0:/tmp/ttyLARK1::0" + QString(d).replace("noise=0", "noise=2");
        QTest::newRow("readme record") << "record tcp-client:h:7 s.rec" << "record ep=2::h:7" + QString(d).replace("file=", "file=s.rec");
        QTest::newRow("readme replay") << "replay s.rec pty --speed 2"
            << "replay ep=0:::0" + QString(d).replace("file=", "file=s.rec").replace("speed=1", "speed=2");
        QTest::newRow("asap") << "replay s.rec udp:h:9 --asap" << "replay ep=3::h:9" + QString(d).replace("file=", "file=s.rec").replace("speed=1", "speed=0");
        QTest::newRow("pty without path") << "pid --pty --noise 1" << "pid ep=0:::0" + QString(d).replace("noise=0", "noise=1");
        QTest::newRow("every camera option") << "camera --udp h:5 --size 640x480 --jpeg --device 1 --regs r.csv --addr-len 2 --value-len 4 --verbose"
            << "camera ep=3::h:5 cam=2:640x480@10:d1:a2:v4:r.csv:1 text=0:GB18030:10:0:256:0:-1 noise=0 file= speed=1";
        QTest::newRow("every text option") << "text --tcp-server 0 --kind binary --encoding UTF-8 --rate 100 --burst 8 --count 3"
            << "text ep=1:::0 cam=0:320x240@10:d0:a1:v1::0 text=2:UTF-8:10:100:8:0:3 noise=0 file= speed=1";
        QTest::newRow("help") << "--help" << " ep=0:::0" + d;
        QTest::newRow("command help") << "camera -h" << "camera ep=0:::0" + d;
        QTest::newRow("no command") << "" << "!no command given (camera, pid, text, record, replay; --help)";
        QTest::newRow("unknown command") << "toaster" << "!unknown command 'toaster' (camera, pid, text, record, replay)";
        QTest::newRow("no endpoint") << "camera --fps 5"
            << "!camera needs an endpoint: --pty [PATH], --tcp-server PORT, --tcp-client HOST:PORT or --udp HOST:PORT";
        QTest::newRow("two endpoints") << "text --pty --tcp-server 0" << "!give one endpoint only";
        QTest::newRow("one endpoint twice") << "text --udp h:1 --udp h:2" << "!give one endpoint only";
        QTest::newRow("bad number") << "camera --pty --fps fast" << "!--fps needs a number from 0 to 1000";
        QTest::newRow("number missing") << "text --pty --burst" << "!--burst needs a number from 4 to 1.04858e+06";
        QTest::newRow("port out of range") << "pid --tcp-server 65536" << "!--tcp-server needs a number from 0 to 65535";
        QTest::newRow("replay speed") << "replay f pty --speed 0" << "!--speed needs a number from 0.001 to 1000";
        QTest::newRow("host missing") << "text --udp" << "!--udp needs HOST:PORT";
        QTest::newRow("bad host") << "text --udp localhost" << "!expected HOST:PORT, got 'localhost'";
        QTest::newRow("bad size") << "camera --pty --size 640" << "!--size needs WIDTHxHEIGHT, 8 to 4096 each";
        QTest::newRow("bad kind") << "text --pty --kind words" << "!--kind needs lines, counter or binary";
        QTest::newRow("bad encoding") << "text --pty --encoding latin1" << "!--encoding needs gb18030 or utf8";
        QTest::newRow("regs missing") << "camera --pty --regs" << "!--regs needs a FILE";
        QTest::newRow("option of another command") << "pid --pty --jpeg" << "!unknown option --jpeg for pid";
        QTest::newRow("stray word") << "camera --pty p extra" << "!unknown option extra for camera";
        QTest::newRow("endpoint option on record") << "record --pty f" << "!unknown option --pty for record";
        QTest::newRow("speed on record") << "record pty f --speed 2" << "!unknown option --speed for record";
        QTest::newRow("record one word") << "record pty" << "!record needs ENDPOINT FILE";
        QTest::newRow("replay three words") << "replay f pty x" << "!replay needs FILE ENDPOINT";
        QTest::newRow("bad endpoint") << "record serial:/dev/x f"
            << "!unknown endpoint 'serial:/dev/x' (pty[:PATH], tcp-server:PORT, tcp-client:HOST:PORT, udp:HOST:PORT)";
    }
    void argumentsSetTheBoardOrSayWhatIsWrong()
    {
        QFETCH(QString, args);
        QFETCH(QString, expected);
        SimCommandLine c;
        const bool ok = c.parse(args.split(' ', Qt::SkipEmptyParts));
        QCOMPARE(ok ? summary(c) : "!" + c.error, expected);
        QCOMPARE(c.help, args.contains("-h"));
    }

    // the help of each command names every option the command takes
    void helpListsEveryOption_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("options");
        const QString ep = "--pty --tcp-server --tcp-client --udp ";
        QTest::newRow("camera") << "camera" << ep + "--fps --size --raw --jpeg --device --regs --addr-len --value-len --verbose";
        QTest::newRow("pid") << "pid" << ep + "--noise";
        QTest::newRow("text") << "text" << ep + "--kind --encoding --lines-per-s --rate --burst --count --echo";
        QTest::newRow("replay") << "replay" << "--speed --asap";
        QTest::newRow("larksim") << "" << "camera pid text record replay";
    }
    void helpListsEveryOption()
    {
        QFETCH(QString, command);
        QFETCH(QString, options);
        const QString help = SimCommandLine::helpText(command);
        for (const QString &o : options.split(' '))
            QVERIFY2(help.contains("  " + o + ' '), qPrintable(o));
    }
};

QTEST_GUILESS_MAIN(TstSimCommandLine)
#include "tst_simcommandline.moc"
