// lark_plot_host: the stream plot window, started as larkTools starts, reading the pty
// named on the command line as a serial page would hand it its link, with the
// event-loop stall meter running. scripts/plot_stall.py plays 16 channels of 10 kHz
// into it with larksim and reads the stalls and the CPU it uses.
//   lark_plot_host /dev/pts/N
#include "../LarkHost.h"
#include "LinkTap.h"
#include "PlotWindow.h"

#include <QApplication>
#include <QSerialPort>
#include <QTranslator>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: lark_plot_host /dev/pts/N\n");
        return 2;
    }
    QTranslator translator;
    LarkHost::startLikeTheProgram(translator);

    LinkTap tap;
    QSerialPort port(args.at(1));
    QObject::connect(&port, &QSerialPort::readyRead, [&] { tap.reportReceived(port.readAll()); });
    if (!port.open(QIODevice::ReadWrite)) {
        std::fprintf(stderr, "could not open %s: %s\n", qPrintable(args.at(1)), qPrintable(port.errorString()));
        return 1;
    }
    PlotWindow window(&tap, "lark_plot_host");
    window.resize(1280, 760);
    window.show();
    LarkHost::StallMeter meter;
    meter.start();
    std::printf("open\n");
    std::fflush(stdout);
    return app.exec();
}
