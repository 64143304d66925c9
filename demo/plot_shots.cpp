// The stream plot in both skins: text lines and binary frames from larksim over
// loopback UDP, sixteen channels of 10 kHz drawn as column extremes, and the frame
// definition's JSON dialog and form. Saves plot-<skin>-<what>.png into OUTDIR.
//   larkplotshots LARKSIM OUTDIR   (under Xvfb without a display)
#include "LinkTap.h"
#include "MyApp.h"
#include "PlotDefinitionDialog.h"
#include "PlotDefinitionFormDialog.h"
#include "PlotWindow.h"
#include "UiSkin.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QNetworkDatagram>
#include <QProcess>
#include <QTimer>
#include <QUdpSocket>

#include <cmath>

static void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

static bool save(QWidget *w, const QDir &out, const QString &name)
{
    const QString path = out.filePath(name + ".png");
    if (!w->grab().save(path))
        return false;
    printf("%s\n", qPrintable(path));
    return true;
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc < 3) {
        fprintf(stderr, "usage: larkplotshots LARKSIM OUTDIR\n");
        return 2;
    }
    const QString sim = QString::fromLocal8Bit(argv[1]);
    const QDir out(QString::fromLocal8Bit(argv[2]));
    QDir().mkpath(out.path());
    QApplication::setFont(QFont(UiSkin::m_strAppFontNormal, 9));
    MyApp::InitApp();
    const QString sensor = QFileInfo(sim).absolutePath() + "/plot-examples/larksim_sensor.json";

    int saved = 0;
    for (int skin : {0, 1}) {
        MyApp::m_nSkinStyle = skin;
        UiSkin::LoadStyleSheet(skin);
        const QString name = skin == 0 ? "dark" : "white";
        for (const QString kind : {"csv", "frame"}) {
            QUdpSocket socket;
            socket.bind(QHostAddress(QHostAddress::LocalHost), 0);
            LinkTap tap;
            QObject::connect(&socket, &QUdpSocket::readyRead, [&] {
                while (socket.hasPendingDatagrams())
                    tap.reportReceived(socket.receiveDatagram().data());
            });
            PlotWindow window(&tap, "波形绘图 - 串口调试助手");
            window.setAttribute(Qt::WA_DeleteOnClose, false);
            window.resize(1100, 640);
            window.show();
            QString error;
            window.loadDefinition(sensor, &error);
            window.setMode(kind == "frame" ? PlotWindow::BinaryFrames : PlotWindow::TextLines);
            QProcess board;
            board.start(sim, {"text", "--kind", kind, "--udp", QString("127.0.0.1:%1").arg(socket.localPort()),
                              "--lines-per-s", "200"});
            settle(4000);
            saved += save(&window, out, QString("plot-%1-%2").arg(name, kind));
            if (kind == "frame") {
                // the dialogs are shown, not run: a shot needs no answer
                PlotDefinitionDialog json(window.definition(), &window);
                json.show();
                settle(400);
                saved += save(&json, out, QString("plot-%1-json").arg(name));
                PlotDefinitionFormDialog form(window.definition(), &window);
                form.show();
                settle(400);
                saved += save(&form, out, QString("plot-%1-form").arg(name));
            }
            board.terminate();
            board.waitForFinished(3000);
        }
        // sixteen channels of 10 kHz for twelve seconds, fed as a fast board would
        LinkTap tap;
        PlotWindow window(&tap, "波形绘图 - 16 通道 × 10 kHz");
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.resize(1100, 640);
        window.show();
        QElapsedTimer clock;
        clock.start();
        qint64 sent = 0;
        QTimer feeder;
        QObject::connect(&feeder, &QTimer::timeout, [&] {
            QByteArray lines;
            for (const qint64 due = clock.elapsed() * 10; sent < due; ++sent) {
                for (int c = 0; c < 16; ++c)
                    lines += (c ? "," : "") + QByteArray::number(100 * std::sin(sent * 0.0005 * (c + 1)) + 10 * c
                                                                 + (sent % 9973 == 0 ? 80 : 0), 'f', 2);
                lines += "\n";
            }
            tap.reportReceived(lines);
        });
        feeder.start(5);
        settle(12000);
        feeder.stop();
        settle(200);
        saved += save(&window, out, QString("plot-%1-dense").arg(name));
    }
    return saved == 10 ? 0 : 1;
}
