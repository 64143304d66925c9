#include "SimCommandLine.h"

#include <QCommandLineParser>

namespace {
struct Command {
    const char *name;
    const char *summary;
    const char *usage;
    const char *about;
};

// the boards first: they take an endpoint option, record and replay an endpoint word
const Command s_commands[] = {
    {"camera", "a camera board (test pattern, registers)", "ENDPOINT [options]",
     "A camera board: announces its format, streams a moving test pattern and\n"
     "answers register reads and writes.\n"},
    {"pid", "a five-channel motor board under PID control", "ENDPOINT [options]",
     "A five-channel motor board under PID control: takes P, I, D, target and\n"
     "period, answers start, stop and reset, reports speed every period.\n"},
    {"text", "lines, counters, GB18030 and UTF-8 text, binary bursts, echo", "ENDPOINT [options]",
     "A board that prints lines, counters or binary bursts.\n"},
    {"record", "record the bytes of an endpoint into a file", "ENDPOINT FILE",
     "Records the bytes received on ENDPOINT with their times until Ctrl+C.\n"},
    {"replay", "play a recording into an endpoint", "FILE ENDPOINT [options]",
     "Plays a recording into ENDPOINT once a peer is there, at its own pace\n"
     "(times X) or as fast as possible.\n"},
};
const char *const s_endpointWords =
    "ENDPOINT: pty[:PATH] | tcp-server:PORT | tcp-client:HOST:PORT | udp:HOST:PORT\n";

const Command *findCommand(const QString &name)
{
    for (const Command &c : s_commands)
        if (name == c.name)
            return &c;
    return nullptr;
}

bool isBoard(const QString &command)
{
    return command == "camera" || command == "pid" || command == "text";
}

QString commandNames()
{
    QStringList names;
    for (const Command &c : s_commands)
        names << c.name;
    return names.join(", ");
}
}

QVector<SimCommandLine::Option> SimCommandLine::endpointOptions()
{
    return {
        {"pty", "[PATH]",
         "make a pseudo-terminal pair and print its name; with PATH\n"
         "also a symbolic link there (e.g. /tmp/ttyLARK0)",
         [](SimCommandLine &l, const QString &, const QString &v) {
             l.endpoint.path = v;
             return l.setEndpoint(SimEndpoint::Pty);
         }},
        {"tcp-server", "PORT", "listen for the page's TCP client (0: any free port)",
         [](SimCommandLine &l, const QString &o, const QString &v) {
             return l.setEndpoint(SimEndpoint::TcpServer) && l.number(o, v, l.endpoint.port, 0, 65535);
         }},
        {"tcp-client", "HOST:PORT", "connect to the page's TCP server, retrying until it listens",
         [](SimCommandLine &l, const QString &o, const QString &v) { return l.setHostPort(SimEndpoint::TcpClient, o, v); }},
        {"udp", "HOST:PORT", "send datagrams to the page's UDP port",
         [](SimCommandLine &l, const QString &o, const QString &v) { return l.setHostPort(SimEndpoint::Udp, o, v); }},
    };
}

QVector<SimCommandLine::Option> SimCommandLine::commandOptions(const QString &command)
{
    if (command == "camera")
        return {
            {"fps", "N", "frames a second (default 10)",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.camera.fps, 0, 1000); }},
            {"size", "WxH", "image size (default 320x240)",
             [](SimCommandLine &l, const QString &, const QString &v) {
                 const QStringList wh = v.split('x');
                 bool okW = false, okH = false;
                 l.camera.width = wh.size() == 2 ? wh.at(0).toInt(&okW) : 0;
                 l.camera.height = wh.size() == 2 ? wh.at(1).toInt(&okH) : 0;
                 if (!okW || !okH || l.camera.width < 8 || l.camera.height < 8 || l.camera.width > 4096
                     || l.camera.height > 4096)
                     return l.fail("--size needs WIDTHxHEIGHT, 8 to 4096 each");
                 return true;
             }},
            {"raw", "", "RGB888 frames drawn over the whole packet",
             [](SimCommandLine &l, const QString &, const QString &) { l.camera.format = CameraBoard::Raw; return true; }},
            {"jpeg", "", "a bare JPEG stream (the page's JPEG mode)",
             [](SimCommandLine &l, const QString &, const QString &) { l.camera.format = CameraBoard::Jpeg; return true; }},
            {"device", "0|1", "device address of the board's frames",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.camera.device, 0, 1); }},
            {"regs", "FILE", "register table (the page's CSV export)",
             [](SimCommandLine &l, const QString &, const QString &v) {
                 l.camera.regsFile = v;
                 return v.isNull() ? l.fail("--regs needs a FILE") : true;
             }},
            {"addr-len", "N", "register address bytes, 1..4 (default 1)",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.camera.addrLen, 1, 4); }},
            {"value-len", "N", "register value bytes, 1..4 (default 1)",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.camera.valueLen, 1, 4); }},
            {"verbose", "", "one line per reply",
             [](SimCommandLine &l, const QString &, const QString &) { l.camera.verbose = true; return true; }},
        };
    if (command == "pid")
        return {
            {"noise", "AMPLITUDE", "spread of the random noise on the measured speeds (default 0)",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.noise, 0, 1e6); }},
        };
    if (command == "text")
        return {
            {"kind", "lines|counter|binary|csv|named|frame",
             "what is sent (default lines); csv and named are lines of\nnumbers to plot, frame the binary frame of\nplot-examples/larksim_sensor.json",
             [](SimCommandLine &l, const QString &, const QString &v) {
                 const QStringList names = TextSource::kindNames();
                 const int kind = names.indexOf(v);
                 if (kind < 0)
                     return l.fail("--kind needs " + names.mid(0, names.size() - 1).join(", ") + " or " + names.last());
                 l.text.kind = TextSource::Kind(kind);
                 return true;
             }},
            {"encoding", "gb18030|utf8", "text encoding of lines (default gb18030)",
             [](SimCommandLine &l, const QString &, const QString &v) {
                 const QString e = v.toLower();
                 if (e != "gb18030" && e != "utf8" && e != "utf-8")
                     return l.fail("--encoding needs gb18030 or utf8");
                 l.text.encoding = e == "gb18030" ? "GB18030" : "UTF-8";
                 return true;
             }},
            {"lines-per-s", "N", "lines or bursts a second (default 10; 0: none)",
             [](SimCommandLine &l, const QString &o, const QString &v) {
                 return l.number(o, v, l.text.linesPerSecond, 0, 1e6);
             }},
            {"rate", "BYTES_PER_S", "pace by bytes instead",
             [](SimCommandLine &l, const QString &o, const QString &v) {
                 return l.number(o, v, l.text.bytesPerSecond, 1, 1e9);
             }},
            {"burst", "N", "bytes of a binary burst (default 256)",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.text.burst, 4, 1 << 20); }},
            {"count", "N", "stop after N lines or bursts",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.text.count, 0, 1e12); }},
            {"echo", "", "send back what is received",
             [](SimCommandLine &l, const QString &, const QString &) { l.text.echo = true; return true; }},
        };
    if (command == "replay")
        return {
            {"speed", "X", "play X times as fast as recorded (default 1)",
             [](SimCommandLine &l, const QString &o, const QString &v) { return l.number(o, v, l.speed, 0.001, 1000); }},
            {"asap", "", "play as fast as possible",
             [](SimCommandLine &l, const QString &, const QString &) { l.speed = 0; return true; }},
        };
    return {};
}

bool SimCommandLine::setEndpoint(SimEndpoint::Kind kind)
{
    if (++m_endpoints > 1)
        return fail("give one endpoint only");
    endpoint.kind = kind;
    return true;
}

bool SimCommandLine::setHostPort(SimEndpoint::Kind kind, const QString &option, const QString &value)
{
    if (!setEndpoint(kind))
        return false;
    if (value.isNull())
        return fail(QString("%1 needs HOST:PORT").arg(option));
    return SimEndpoint::parseHostPort(value, endpoint, &error);
}

QString SimCommandLine::helpText(const QString &command)
{
    const Command *c = findCommand(command);
    if (!c) {
        QString text = "usage: larksim COMMAND ...\n"
                       "Plays the boards that larkTools talks to.\n\n"
                       "Commands:\n";
        for (const Command &each : s_commands)
            text += QString("  %1 %2\n").arg(QString(each.name).leftJustified(8), each.summary);
        return text + "\nlarksim COMMAND --help tells more. Ctrl+C ends.\n";
    }
    const QVector<Option> endpoints = isBoard(command) ? endpointOptions() : QVector<Option>();
    const QVector<Option> own = commandOptions(command);
    auto label = [](const Option &o) { return ("--" + o.name + ' ' + o.valueName).trimmed(); };
    int width = 22;
    for (const Option &o : endpoints + own)
        width = qMax(width, label(o).size());
    auto list = [&](const char *heading, const QVector<Option> &options) {
        if (options.isEmpty())
            return QString();
        QString text = heading;
        for (const Option &o : options) {
            QString description = o.description;
            description.replace('\n', '\n' + QString(width + 3, ' '));
            text += QString("  %1 %2\n").arg(label(o).leftJustified(width), description);
        }
        return text;
    };
    return QString("usage: larksim %1 %2\n%3").arg(c->name, c->usage, c->about)
           + (isBoard(command) ? "\n" + list("Endpoints:\n", endpoints) : QString(s_endpointWords))
           + list("Options:\n", own);
}

bool SimCommandLine::parse(const QStringList &args)
{
    if (args.isEmpty())
        return fail(QString("no command given (%1; --help)").arg(commandNames()));
    command = args.first();
    if (command == "--help" || command == "-h") {
        command.clear();
        help = true;
        return true;
    }
    if (!findCommand(command))
        return fail(QString("unknown command '%1' (%2)").arg(command, commandNames()));

    const QVector<Option> options = (isBoard(command) ? endpointOptions() : QVector<Option>()) + commandOptions(command);
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption helpOption(QStringList{"h", "help"});
    parser.addOption(helpOption);
    for (const Option &o : options)
        parser.addOption(o.valueName.isEmpty() ? QCommandLineOption(o.name) : QCommandLineOption(o.name, QString(), o.valueName));

    // The parser knows no optional values: "--pty" takes the next word as its PATH
    // unless that is an option, and an empty PATH otherwise.
    QStringList words;
    for (int i = 0; i < args.size(); ++i) {
        if (args.at(i) != "--pty") {
            words << args.at(i);
            continue;
        }
        const bool path = i + 1 < args.size() && !args.at(i + 1).startsWith("--");
        words << "--pty=" + (path ? args.at(++i) : QString());
    }
    // the first word is the command, where the parser expects the program's name
    const bool parsed = parser.parse(words);
    if (parser.isSet(helpOption)) {
        help = true;
        return true;
    }
    if (!parsed && !parser.unknownOptionNames().isEmpty()) {
        const QString name = parser.unknownOptionNames().first();
        return fail(QString("unknown option %1%2 for %3").arg(name.size() == 1 ? "-" : "--", name, command));
    }
    const QStringList positional = parser.positionalArguments();
    if (isBoard(command) && !positional.isEmpty())
        return fail(QString("unknown option %1 for %2").arg(positional.first(), command));

    // in the order given, so that the first mistake is the one told and the last of
    // a repeated option wins; a value missing at the end is a null one
    QHash<QString, int> seen;
    for (const QString &name : parser.optionNames()) {
        for (const Option &o : options) {
            if (o.name != name)
                continue;
            const QStringList values = parser.values(name);
            const int n = seen[name]++;
            const QString value = o.valueName.isEmpty() ? QString("") : n < values.size() ? values.at(n) : QString();
            if (!o.apply(*this, "--" + name, value))
                return false;
        }
    }

    if (!isBoard(command)) {
        if (positional.size() != 2)
            return fail(QString("%1 needs %2").arg(command, command == "record" ? "ENDPOINT FILE" : "FILE ENDPOINT"));
        const QString token = positional.at(command == "record" ? 0 : 1);
        file = positional.at(command == "record" ? 1 : 0);
        return SimEndpoint::parse(token, endpoint, &error);
    }
    if (m_endpoints == 0) {
        QStringList forms;
        for (const Option &o : endpointOptions())
            forms << ("--" + o.name + ' ' + o.valueName);
        const QString last = forms.takeLast();
        return fail(QString("%1 needs an endpoint: %2 or %3").arg(command, forms.join(", "), last));
    }
    return true;
}
