// lark_serial_host: the whole program, started as larkTools starts, with the serial page
// already open on the port named on the command line. The comparison with other
// terminals (scripts/serial_vs_putty.py) measures this process while a board writes.
//   lark_serial_host PORT [--hex] [--log] [--heartbeat] [--capture FILE]   PORT as the port box takes it: "pts/3"
// --capture records the page's link to FILE from the first open on, as "开始记录…" does,
// across every reopen; "captured BYTES" is printed with each heartbeat line.
// --heartbeat prints "stall MS" each second: the longest the event loop went without
// running a 10 ms timer in that second, less the 10 ms. Lines on stdin of the form
// "reopen PORT hex|text [log]" close the port and open PORT in that view, so that one
// session can take several streams (scripts/soak.py).
#include "../LarkHost.h"
#include "CaptureWriter.h"
#include "LinkTools.h"
#include "MainWindow.h"
#include "MyApp.h"
#include "QSerialPorCheck.h"
#include "QextSerialPort.h"
#include "SerialportWidget.h"
#include "UiSkin.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QFont>
#include <QRadioButton>
#include <QTimer>
#include <QTranslator>

#include <cstdio>
#include <unistd.h>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: lark_serial_host PORT [--hex] [--log]\n");
        return 2;
    }
    QTranslator translator;
    LarkHost::startLikeTheProgram(translator);

    MainWindow window;
    window.show();
    auto *page = window.findChild<SerialportWidget *>();
    if (!page) {
        std::fprintf(stderr, "no serial page\n");
        return 1;
    }
    // Any change in the number of ports closes an open port. Measurements run beside
    // programs that make and remove pty links in /dev, and a port closed half way left
    // the board's writer waiting for ever: this host keeps the port watcher away.
    if (auto *watcher = window.findChild<QSerialPorCheck *>())
        QObject::disconnect(watcher, SIGNAL(signalSerialChanged(QStringList)), page, SLOT(SltSerialportChanged(QStringList)));
    const auto open = [page](const QString &port, bool hex, bool log) {
        if (page->serialport()->isOpen())
            page->SltOpenSerialport(); // the open button closes an open port
        page->SltSerialportChanged({port});
        page->findChild<QRadioButton *>(hex ? "rbtnRecvHex" : "rbtnRecvAscii")->click();
        page->findChild<QCheckBox *>("chkLogMode")->setChecked(log);
        page->SltOpenSerialport();
    };
    QSocketNotifier commands(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&commands, &QSocketNotifier::activated, page, [open, &commands] {
        char line[512];
        const ssize_t n = ::read(STDIN_FILENO, line, sizeof line - 1);
        if (n <= 0) {
            commands.setEnabled(false);
            return;
        }
        const QStringList words = QString::fromLocal8Bit(line, int(n)).simplified().split(' ');
        if (words.size() >= 3 && words.at(0) == "reopen") {
            open(words.at(1), words.at(2) == "hex", words.contains("log"));
            std::printf("reopened\n");
            std::fflush(stdout);
        }
    });
    LarkHost::StallMeter stalls;
    if (args.contains("--heartbeat"))
        stalls.start();
    const int captureArg = args.indexOf("--capture");
    const QString capturePath = captureArg > 0 ? args.value(captureArg + 1) : QString();
    LinkTools *links = window.findChild<LinkTools *>();
    QTimer captureReport;
    QObject::connect(&captureReport, &QTimer::timeout, [links] {
        std::printf("captured %lld\n", static_cast<long long>(links->capture(0)->totalBytes()));
        std::fflush(stdout);
    });
    QTimer::singleShot(1500, page, [page, args, open, links, capturePath, &captureReport] {
        open(args.at(1), args.contains("--hex"), args.contains("--log"));
        if (!page->serialport()->isOpen()) {
            std::fprintf(stderr, "could not open /dev/%s\n", qPrintable(args.at(1)));
            QCoreApplication::exit(1);
            return;
        }
        if (!capturePath.isEmpty()) {
            if (!links->startCapture(0, capturePath, false)) {
                std::fprintf(stderr, "could not capture to %s\n", qPrintable(capturePath));
                QCoreApplication::exit(1);
                return;
            }
            captureReport.start(1000);
        }
        std::printf("open\n");
        std::fflush(stdout);
    });
    return app.exec();
}
