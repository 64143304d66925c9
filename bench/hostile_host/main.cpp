// lark_hostile_host: the whole program, started as larkTools starts, with one page's
// link open for a hostile peer (scripts/hostile.py plays the peers):
//   lark_hostile_host tcp-server PORT     network page, "TCP Server" on 127.0.0.1:PORT
//   lark_hostile_host udp PORT            network page, "UDP" bound to 127.0.0.1:PORT
//   lark_hostile_host camera PORT         camera page, "Tcp Server" on PORT
//   lark_hostile_host pid PORT            PID page open on PORT ("pts/3")
// It prints "ready" once the link is open, "stall MS" each second (the longest the
// event loop went without running a 10 ms timer in that second, less the 10 ms) and
// "notify TEXT" for each notice a page gives.
#include "CameraDebugWidget.h"
#include "../LarkHost.h"
#include "MainWindow.h"
#include "MyApp.h"
#include "NetworkToolWidget.h"
#include "PidDebugWidget.h"
#include "QtSerialPort.h"
#include "UiSkin.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFont>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

namespace {

void say(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

template <class T>
T *child(QWidget *page, const char *name)
{
    return page->findChild<T *>(QString::fromLatin1(name));
}

// the link box's entry, the port in the port edit, then the page's open button
void openNetLink(QWidget *page, const char *linkBox, int link, const QString &port)
{
    child<QComboBox>(page, linkBox)->setCurrentIndex(link);
    if (QComboBox *address = child<QComboBox>(page, "cbxAddress"))
        address->setCurrentText("127.0.0.1");
    child<QLineEdit>(page, "edtPort")->setText(port);
    child<QPushButton>(page, "btnOpen")->click();
}

// Pages that declare the notice signal again hide the base class's: connect by name.
class NoticePrinter : public QObject
{
    Q_OBJECT
public slots:
    void print(const QString &text, int) { say("notify " + text); }
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 3) {
        std::fprintf(stderr, "usage: lark_hostile_host tcp-server|udp|camera|pid PORT\n");
        return 2;
    }
    QTranslator translator;
    LarkHost::startLikeTheProgram(translator);
    MainWindow window;
    window.show();

    const QString mode = args.at(1), port = args.at(2);
    QWidget *page = nullptr;
    if (mode == "camera")
        page = window.findChild<CameraDebugWidget *>();
    else if (mode == "pid")
        page = window.findChild<PidDebugWidget *>();
    else
        page = window.findChild<NetworkToolWidget *>();
    NoticePrinter notices;
    for (QtWidgetBase *p : window.findChildren<QtWidgetBase *>())
        QObject::connect(p, SIGNAL(signalNotify(QString, int)), &notices, SLOT(print(QString, int)));

    LarkHost::StallMeter stalls;
    stalls.start();

    // after the port watcher's first tick, which would close a port opened earlier
    QTimer::singleShot(1500, page, [page, mode, port] {
        if (mode == "tcp-server")
            openNetLink(page, "cbxNetType", 0, port);
        else if (mode == "udp")
            openNetLink(page, "cbxNetType", 2, port);
        else if (mode == "camera")
            openNetLink(page, "cbxProtocol", 0, port);
        else if (mode == "pid") {
            static_cast<PidDebugWidget *>(page)->SltSerialportChanged({port});
            QMetaObject::invokeMethod(page, "SltOpenSerialport");
        }
        say("ready");
    });
    // A change in the machine's port count (other programs making /dev links) closes
    // the PID page's port as if it were pulled: open it again, as a user would, so that
    // a long run measures the page and not the neighbours.
    QTimer reopen;
    if (mode == "pid") {
        auto *pid = static_cast<PidDebugWidget *>(page);
        QObject::connect(&reopen, &QTimer::timeout, pid, [pid, port] {
            if (pid->serialPort()->isOpen())
                return;
            pid->SltSerialportChanged({port});
            QMetaObject::invokeMethod(pid, "SltOpenSerialport");
            say("reopened");
        });
        // watched only once the first open (at 1.5 s) has been made
        reopen.setInterval(1000);
        QTimer::singleShot(2000, &reopen, SLOT(start()));
    }
    return app.exec();
}

#include "main.moc"
