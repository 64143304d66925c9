#include "CameraBoard.h"
#include "PidBoard.h"
#include "Recorder.h"
#include "SimCommandLine.h"
#include "SimEndpoint.h"
#include "SimLog.h"
#include "TextSource.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <unistd.h>

namespace {
int s_signalPipe[2] = {-1, -1};
void onSignal(int)
{
    const char c = 1;
    (void)!::write(s_signalPipe[1], &c, 1);
}
}

// larksim COMMAND ...: plays one board on one endpoint until Ctrl+C
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    SimCommandLine cmd;
    if (!cmd.parse(app.arguments().mid(1))) {
        SimLog::error(cmd.error);
        return 2;
    }
    if (cmd.help) {
        SimLog::line(SimCommandLine::helpText(cmd.command).trimmed());
        return 0;
    }

    // Ctrl+C and kill end the event loop, so that destructors remove the links made
    if (::pipe(s_signalPipe) != 0)
        return 1;
    QSocketNotifier quitter(s_signalPipe[0], QSocketNotifier::Read);
    QObject::connect(&quitter, SIGNAL(activated(int)), &app, SLOT(quit()));
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    std::signal(SIGHUP, onSignal);
    std::signal(SIGPIPE, SIG_IGN);

    SimEndpoint endpoint(cmd.endpoint);
    QString error;
    if (!endpoint.open(&error)) {
        SimLog::error(error);
        return 1;
    }
    SimLog::line("larksim: " + endpoint.description());

    std::unique_ptr<QObject> board;
    if (cmd.command == "camera") {
        auto *camera = new CameraBoard(&endpoint, cmd.camera);
        board.reset(camera);
        if (!cmd.camera.regsFile.isEmpty() && !camera->loadRegisters(cmd.camera.regsFile, &error)) {
            SimLog::error(error);
            return 2;
        }
        camera->start();
    } else if (cmd.command == "pid") {
        auto *pid = new PidBoard(&endpoint, cmd.noise);
        board.reset(pid);
        pid->start();
    } else if (cmd.command == "text") {
        auto *text = new TextSource(&endpoint, cmd.text);
        board.reset(text);
        text->start();
    } else {
        auto *recorder = new Recorder(&endpoint);
        board.reset(recorder);
        const bool ok = cmd.command == "record" ? recorder->record(cmd.file, &error) : recorder->replay(cmd.file, cmd.speed, &error);
        if (!ok) {
            SimLog::error(error);
            return 2;
        }
    }
    const int rc = app.exec();
    board.reset();
    endpoint.close();
    return rc;
}
