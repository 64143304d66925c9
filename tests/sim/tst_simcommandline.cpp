#include "SimCommandLine.h"

#include <QtTest>

// What larksim makes of its arguments: every option's effect and each kind of error text,
// as users and the scripts that start larksim see them.
class TstSimCommandLine : public QObject
{
    Q_OBJECT

    // the fields that differ from a fresh command line's, as "name=value" words
    static QString changes(const SimCommandLine &c)
    {
        auto fields = [](const SimCommandLine &l) {
            const auto &e = l.endpoint;
            const auto &k = l.camera;
            const auto &t = l.text;
            return QStringList{"command=" + l.command, QString("kind=%1").arg(e.kind), "path=" + e.path,
                               "host=" + e.host, QString("port=%1").arg(e.port), QString("format=%1").arg(k.format),
                               QString("size=%1x%2").arg(k.width).arg(k.height), QString("fps=%1").arg(k.fps),
                               QString("device=%1").arg(k.device), QString("addrLen=%1").arg(k.addrLen),
                               QString("valueLen=%1").arg(k.valueLen), "regs=" + k.regsFile,
                               QString("verbose=%1").arg(k.verbose), QString("text=%1").arg(t.kind),
                               "encoding=" + t.encoding, QString("lines/s=%1").arg(t.linesPerSecond),
                               QString("bytes/s=%1").arg(t.bytesPerSecond), QString("burst=%1").arg(t.burst),
                               QString("echo=%1").arg(t.echo), QString("count=%1").arg(t.count),
                               QString("noise=%1").arg(l.noise), "file=" + l.file, QString("speed=%1").arg(l.speed)};
        };
        const QStringList before = fields(SimCommandLine());
        QStringList changed;
        for (const QString &f : fields(c))
            if (!before.contains(f))
                changed << f;
        return changed.join(' ');
    }

private slots:
    void argumentsSetTheBoardOrSayWhatIsWrong_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<QString>("expected"); // "!" and the error, or the changes
        QTest::newRow("readme serial") << "text --pty /tmp/ttyLARK0 --lines-per-s 5" << "command=text path=/tmp/ttyLARK0 lines/s=5";
        QTest::newRow("readme camera") << "camera --tcp-client 127.0.0.1:6000 --fps 25"
                                       << "command=camera kind=2 host=127.0.0.1 port=6000 fps=25";
        QTest::newRow("readme network") << "text --tcp-client 127.0.0.1:6001 --echo" << "command=text kind=2 host=127.0.0.1 port=6001 echo=1";
        QTest::newRow("readme pid") << "pid --pty /tmp/ttyLARK1 --noise 2" << "command=pid path=/tmp/ttyLARK1 noise=2";
        QTest::newRow("readme record") << "record tcp-client:h:7 s.rec" << "command=record kind=2 host=h port=7 file=s.rec";
        QTest::newRow("readme replay") << "replay s.rec pty --speed 2" << "command=replay file=s.rec speed=2";
        QTest::newRow("asap") << "replay s.rec udp:h:9 --asap" << "command=replay kind=3 host=h port=9 file=s.rec speed=0";
        QTest::newRow("pty without path") << "pid --pty --noise 1" << "command=pid noise=1";
        QTest::newRow("every camera option") << "camera --udp h:5 --size 640x480 --jpeg --device 1 --regs r.csv --addr-len 2 --value-len 4 --verbose"
            << "command=camera kind=3 host=h port=5 format=2 size=640x480 device=1 addrLen=2 valueLen=4 regs=r.csv verbose=1";
        QTest::newRow("every text option") << "text --tcp-server 0 --kind binary --encoding UTF-8 --rate 100 --burst 8 --count 3"
            << "command=text kind=1 text=2 encoding=UTF-8 bytes/s=100 burst=8 count=3";
        QTest::newRow("help") << "--help" << "";
        QTest::newRow("command help") << "camera -h" << "command=camera";
        QTest::newRow("no command") << "" << "!no command given (camera, pid, text, record, replay; --help)";
        QTest::newRow("unknown command") << "toaster" << "!unknown command 'toaster' (camera, pid, text, record, replay)";
        QTest::newRow("no endpoint") << "camera --fps 5"
            << "!camera needs an endpoint: --pty [PATH], --tcp-server PORT, --tcp-client HOST:PORT or --udp HOST:PORT";
        QTest::newRow("two endpoints") << "text --pty --tcp-server 0" << "!give one endpoint only";
        QTest::newRow("bad number") << "camera --pty --fps fast" << "!--fps needs a number from 0 to 1000";
        QTest::newRow("number missing") << "text --pty --burst" << "!--burst needs a number from 4 to 1.04858e+06";
        QTest::newRow("host missing") << "text --udp" << "!--udp needs HOST:PORT";
        QTest::newRow("bad host") << "text --udp localhost" << "!expected HOST:PORT, got 'localhost'";
        QTest::newRow("bad size") << "camera --pty --size 640" << "!--size needs WIDTHxHEIGHT, 8 to 4096 each";
        QTest::newRow("bad kind") << "text --pty --kind words" << "!--kind needs lines, counter, binary, csv, named or frame";
        QTest::newRow("bad encoding") << "text --pty --encoding latin1" << "!--encoding needs gb18030 or utf8";
        QTest::newRow("regs missing") << "camera --pty --regs" << "!--regs needs a FILE";
        QTest::newRow("option of another command") << "pid --pty --jpeg" << "!unknown option --jpeg for pid";
        QTest::newRow("stray word") << "camera --pty p extra" << "!unknown option extra for camera";
        QTest::newRow("endpoint option on record") << "record --pty f" << "!unknown option --pty for record";
        QTest::newRow("record one word") << "record pty" << "!record needs ENDPOINT FILE";
        QTest::newRow("replay three words") << "replay f pty x" << "!replay needs FILE ENDPOINT";
        QTest::newRow("bad endpoint") << "record serial:/dev/x f"
            << "!unknown endpoint 'serial:/dev/x' (pty[:PATH], tcp-server:PORT, tcp-client:HOST:PORT, udp:HOST:PORT)";
    }
    void argumentsSetTheBoardOrSayWhatIsWrong()
    {
        QFETCH(QString, args);
        SimCommandLine c;
        const bool ok = c.parse(args.split(' ', Qt::SkipEmptyParts));
        QTEST(ok ? changes(c) : "!" + c.error, "expected");
        QCOMPARE(c.help, args.contains("-h"));
    }
};

QTEST_GUILESS_MAIN(TstSimCommandLine)
#include "tst_simcommandline.moc"
