// lark_pid_host: the whole program, started as larkTools starts, showing the PID page
// open on the port named on the command line, with every channel asked to report each
// millisecond. scripts/pid_cpu.py measures this process against larksim's PID board.
//   lark_pid_host PORT [--all]     PORT as the port box takes it ("pts/3"); --all
//                                  shows all ten curves instead of the default two
#include "../LarkHost.h"
#include "MainWindow.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "PidDebugWidget.h"
#include "PidFrame.h"
#include "QtSerialPort.h"
#include "UiSkin.h"

#include <QApplication>
#include <QFont>
#include <QTimer>
#include <QTranslator>
#include <qcustomplot.h>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: lark_pid_host PORT [--all]\n");
        return 2;
    }
    QTranslator translator;
    LarkHost::startLikeTheProgram(translator);

    MainWindow window;
    window.show();
    window.SltTabBarClicked(3);
    auto *page = window.findChild<PidDebugWidget *>();
    if (!page) {
        std::fprintf(stderr, "no PID page\n");
        return 1;
    }
    // the port watcher's first tick may close a port opened before it
    QTimer::singleShot(1500, page, [page, args] {
        page->SltSerialportChanged({args.at(1)});
        QMetaObject::invokeMethod(page, "SltOpenSerialport");
        if (!page->serialPort()->isOpen()) {
            std::fprintf(stderr, "could not open /dev/%s\n", qPrintable(args.at(1)));
            QCoreApplication::exit(1);
            return;
        }
        if (args.contains("--all")) {
            for (int g = 0; g < 10; ++g)
                page->customPlot()->graph(g)->setVisible(true);
        }
        for (uchar c = 1; c <= 5; ++c) {
            page->SendCmdToSeriaport(PidFrame::SendPeriod, c, NumberTool::baFromInt32SmallEndian(1));
            page->SendCmdToSeriaport(PidFrame::SendStart, c, QByteArray());
        }
        std::printf("open\n");
        std::fflush(stdout);
    });
    return app.exec();
}
