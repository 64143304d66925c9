// lark_serial_host: the whole program, started as larkTools starts, with the serial page
// already open on the port named on the command line. The comparison with other
// terminals (scripts/serial_vs_putty.py) measures this process while a board writes.
//   lark_serial_host PORT [--hex] [--log]      PORT as the port box takes it: "pts/3"
#include "MainWindow.h"
#include "MyApp.h"
#include "QextSerialPort.h"
#include "SerialportWidget.h"
#include "UiSkin.h"

#include <QApplication>
#include <QCheckBox>
#include <QFont>
#include <QRadioButton>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: lark_serial_host PORT [--hex] [--log]\n");
        return 2;
    }
    QApplication::setFont(QFont(UiSkin::m_strAppFontNormal, 9));
    QTranslator translator;
    translator.load(":/resources/qm/qt_zh_CN.qm");
    QApplication::installTranslator(&translator);
    MyApp::InitApp();

    MainWindow window;
    window.show();
    auto *page = window.findChild<SerialportWidget *>();
    if (!page) {
        std::fprintf(stderr, "no serial page\n");
        return 1;
    }
    // The port watcher's first tick reports the machine's ports, and any change of their
    // number closes an open port: open after it.
    QTimer::singleShot(1500, page, [page, args] {
        page->SltSerialportChanged({args.at(1)});
        if (args.contains("--hex"))
            page->findChild<QRadioButton *>("rbtnRecvHex")->click();
        if (args.contains("--log"))
            page->findChild<QCheckBox *>("chkLogMode")->setChecked(true);
        page->SltOpenSerialport();
        if (!page->serialport()->isOpen()) {
            std::fprintf(stderr, "could not open /dev/%s\n", qPrintable(args.at(1)));
            QCoreApplication::exit(1);
            return;
        }
        std::printf("open\n");
        std::fflush(stdout);
    });
    return app.exec();
}
