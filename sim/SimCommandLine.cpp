#include "SimCommandLine.h"

namespace {
const char *const s_endpointHelp =
    "  --pty [PATH]           make a pseudo-terminal pair and print its name; with PATH\n"
    "                         also a symbolic link there (e.g. /tmp/ttyLARK0)\n"
    "  --tcp-server PORT      listen for the page's TCP client (0: any free port)\n"
    "  --tcp-client HOST:PORT connect to the page's TCP server, retrying until it listens\n"
    "  --udp HOST:PORT        send datagrams to the page's UDP port\n";
}

QString SimCommandLine::helpText(const QString &command)
{
    if (command == "camera")
        return QString("usage: larksim camera ENDPOINT [options]\n"
                       "A camera board: announces its format, streams a moving test pattern and\n"
                       "answers register reads and writes.\n\nEndpoints:\n")
               + s_endpointHelp
               + "Options:\n"
                 "  --fps N                frames a second (default 10)\n"
                 "  --size WxH             image size (default 320x240)\n"
                 "  --raw                  RGB888 frames drawn over the whole packet\n"
                 "  --jpeg                 a bare JPEG stream (the page's JPEG mode)\n"
                 "  --device 0|1           device address of the board's frames\n"
                 "  --regs FILE            register table (the page's CSV export)\n"
                 "  --addr-len N           register address bytes, 1..4 (default 1)\n"
                 "  --value-len N          register value bytes, 1..4 (default 1)\n"
                 "  --verbose              one line per reply\n";
    if (command == "pid")
        return QString("usage: larksim pid ENDPOINT [--noise AMPLITUDE]\n"
                       "A five-channel motor board under PID control: takes P, I, D, target and\n"
                       "period, answers start, stop and reset, reports speed every period.\n\nEndpoints:\n")
               + s_endpointHelp;
    if (command == "text")
        return QString("usage: larksim text ENDPOINT [options]\n"
                       "A board that prints lines, counters or binary bursts.\n\nEndpoints:\n")
               + s_endpointHelp
               + "Options:\n"
                 "  --kind lines|counter|binary|csv|named|frame   what is sent (default lines);\n"
                 "                         csv and named are lines of numbers to plot, frame the\n"
                 "                         binary frame of plot-examples/larksim_sensor.json\n"
                 "  --encoding gb18030|utf8       text encoding of lines (default gb18030)\n"
                 "  --lines-per-s N        lines or bursts a second (default 10; 0: none)\n"
                 "  --rate BYTES_PER_S     pace by bytes instead\n"
                 "  --burst N              bytes of a binary burst (default 256)\n"
                 "  --count N              stop after N lines or bursts\n"
                 "  --echo                 send back what is received\n";
    if (command == "record")
        return "usage: larksim record ENDPOINT FILE\n"
               "Records the bytes received on ENDPOINT with their times until Ctrl+C.\n"
               "ENDPOINT: pty[:PATH] | tcp-server:PORT | tcp-client:HOST:PORT | udp:HOST:PORT\n";
    if (command == "replay")
        return "usage: larksim replay FILE ENDPOINT [--speed X | --asap]\n"
               "Plays a recording into ENDPOINT once a peer is there, at its own pace\n"
               "(times X) or as fast as possible.\n"
               "ENDPOINT: pty[:PATH] | tcp-server:PORT | tcp-client:HOST:PORT | udp:HOST:PORT\n";
    return "usage: larksim COMMAND ...\n"
           "Plays the boards that larkTools talks to.\n\n"
           "Commands:\n"
           "  camera   a camera board (test pattern, registers)\n"
           "  pid      a five-channel motor board under PID control\n"
           "  text     lines, counters, GB18030 and UTF-8 text, binary bursts, echo\n"
           "  record   record the bytes of an endpoint into a file\n"
           "  replay   play a recording into an endpoint\n\n"
           "larksim COMMAND --help tells more. Ctrl+C ends.\n";
}

bool SimCommandLine::number(const QStringList &args, int &i, double &out, double min, double max)
{
    const QString name = args.at(i);
    bool ok = false;
    if (i + 1 < args.size())
        out = args.at(++i).toDouble(&ok);
    if (!ok || out < min || out > max)
        return fail(QString("%1 needs a number from %2 to %3").arg(name).arg(min).arg(max));
    return true;
}

bool SimCommandLine::parse(const QStringList &args)
{
    if (args.isEmpty())
        return fail("no command given (camera, pid, text, record, replay; --help)");
    command = args.first();
    if (command == "--help" || command == "-h") {
        command.clear();
        help = true;
        return true;
    }
    if (!QStringList{"camera", "pid", "text", "record", "replay"}.contains(command))
        return fail(QString("unknown command '%1' (camera, pid, text, record, replay)").arg(command));

    bool haveEndpoint = false;
    QStringList positional;
    auto setEndpoint = [&](SimEndpoint::Kind kind) {
        if (haveEndpoint)
            return fail("give one endpoint only");
        haveEndpoint = true;
        endpoint.kind = kind;
        return true;
    };
    for (int i = 1; i < args.size(); ++i) {
        const QString a = args.at(i);
        const bool hasValue = i + 1 < args.size();
        double v = 0;
        if (a == "--help" || a == "-h") {
            help = true;
            return true;
        }
        if (command == "record" || command == "replay") {
            if (a == "--speed" && command == "replay") {
                if (!number(args, i, speed, 0.001, 1000))
                    return false;
            } else if (a == "--asap" && command == "replay") {
                speed = 0;
            } else if (a.startsWith("--")) {
                return fail(QString("unknown option %1 for %2").arg(a, command));
            } else {
                positional << a;
            }
            continue;
        }
        if (a == "--pty") {
            if (!setEndpoint(SimEndpoint::Pty))
                return false;
            if (hasValue && !args.at(i + 1).startsWith("--"))
                endpoint.path = args.at(++i);
        } else if (a == "--tcp-server") {
            if (!setEndpoint(SimEndpoint::TcpServer) || !number(args, i, v, 0, 65535))
                return false;
            endpoint.port = quint16(v);
        } else if (a == "--tcp-client" || a == "--udp") {
            if (!setEndpoint(a == "--udp" ? SimEndpoint::Udp : SimEndpoint::TcpClient))
                return false;
            if (!hasValue)
                return fail(QString("%1 needs HOST:PORT").arg(a));
            if (!SimEndpoint::parseHostPort(args.at(++i), endpoint, &error))
                return false;
        } else if (command == "pid" && a == "--noise") {
            if (!number(args, i, noise, 0, 1e6))
                return false;
        } else if (command == "camera" && a == "--fps") {
            if (!number(args, i, camera.fps, 0, 1000))
                return false;
        } else if (command == "camera" && a == "--size") {
            const QStringList wh = hasValue ? args.at(++i).split('x') : QStringList();
            bool okW = false, okH = false;
            camera.width = wh.size() == 2 ? wh.at(0).toInt(&okW) : 0;
            camera.height = wh.size() == 2 ? wh.at(1).toInt(&okH) : 0;
            if (!okW || !okH || camera.width < 8 || camera.height < 8 || camera.width > 4096 || camera.height > 4096)
                return fail("--size needs WIDTHxHEIGHT, 8 to 4096 each");
        } else if (command == "camera" && (a == "--raw" || a == "--jpeg")) {
            camera.format = a == "--raw" ? CameraBoard::Raw : CameraBoard::Jpeg;
        } else if (command == "camera" && a == "--device") {
            if (!number(args, i, v, 0, 1))
                return false;
            camera.device = int(v);
        } else if (command == "camera" && (a == "--addr-len" || a == "--value-len")) {
            if (!number(args, i, v, 1, 4))
                return false;
            (a == "--addr-len" ? camera.addrLen : camera.valueLen) = int(v);
        } else if (command == "camera" && a == "--regs") {
            if (!hasValue)
                return fail("--regs needs a FILE");
            camera.regsFile = args.at(++i);
        } else if (command == "camera" && a == "--verbose") {
            camera.verbose = true;
        } else if (command == "text" && a == "--kind") {
            const QString k = hasValue ? args.at(++i) : QString();
            const int kind = TextSource::kindNames().indexOf(k);
            if (kind < 0)
                return fail("--kind needs " + TextSource::kindNames().join(", "));
            text.kind = TextSource::Kind(kind);
        } else if (command == "text" && a == "--encoding") {
            const QString e = hasValue ? args.at(++i).toLower() : QString();
            if (e != "gb18030" && e != "utf8" && e != "utf-8")
                return fail("--encoding needs gb18030 or utf8");
            text.encoding = e == "gb18030" ? "GB18030" : "UTF-8";
        } else if (command == "text" && a == "--lines-per-s") {
            if (!number(args, i, text.linesPerSecond, 0, 1e6))
                return false;
        } else if (command == "text" && a == "--rate") {
            if (!number(args, i, text.bytesPerSecond, 1, 1e9))
                return false;
        } else if (command == "text" && a == "--burst") {
            if (!number(args, i, v, 4, 1 << 20))
                return false;
            text.burst = int(v);
        } else if (command == "text" && a == "--count") {
            if (!number(args, i, v, 0, 1e12))
                return false;
            text.count = qint64(v);
        } else if (command == "text" && a == "--echo") {
            text.echo = true;
        } else {
            return fail(QString("unknown option %1 for %2").arg(a, command));
        }
    }
    if (command == "record" || command == "replay") {
        if (positional.size() != 2)
            return fail(command == "record" ? "record needs ENDPOINT FILE" : "replay needs FILE ENDPOINT");
        const QString token = positional.at(command == "record" ? 0 : 1);
        file = positional.at(command == "record" ? 1 : 0);
        return SimEndpoint::parse(token, endpoint, &error);
    }
    if (!haveEndpoint)
        return fail(QString("%1 needs an endpoint: --pty [PATH], --tcp-server PORT, --tcp-client HOST:PORT or --udp HOST:PORT").arg(command));
    return true;
}
