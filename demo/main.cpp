// larkdemo: the main window with every page alive against larksim, saved as one
// screenshot a page in each skin. Started by scripts/demo.sh (`make demo`).
//   larkdemo LARKSIM OUTDIR
#include "CameraDebugWidget.h"
#include "CaptureWriter.h"
#include "HexEditWidget.h"
#include "HexFindBar.h"
#include "ImageFormatConfig.h"
#include "LinkTools.h"
#include "MainWindow.h"
#include "MyApp.h"
#include "NetworkToolWidget.h"
#include "PidDebugWidget.h"
#include "QHexEdit.h"
#include "QextSerialPort.h"
#include "QtSerialPort.h"
#include "QtTabBar.h"
#include "SerialportWidget.h"
#include "TcpServer.h"
#include "ToolsMenu.h"
#include "UiSkin.h"

#include <Okteta/AbstractByteArrayModel>
#include <QtWidgets>

#include <memory>
#include <vector>

namespace {

QString g_sim;
std::vector<std::unique_ptr<QProcess>> g_boards;

void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

// a larksim board; the printed line that begins with prefix, less the prefix
QString board(const QStringList &args, const QString &prefix)
{
    g_boards.emplace_back(new QProcess);
    QProcess *p = g_boards.back().get();
    p->start(g_sim, args);
    QByteArray out;
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 5000) {
        p->waitForReadyRead(100);
        out += p->readAllStandardOutput();
        for (const QString &line : QString::fromUtf8(out).split('\n'))
            if (line.startsWith(prefix) && out.endsWith('\n'))
                return line.mid(prefix.size());
    }
    qWarning("larksim %s printed nothing", qPrintable(args.join(' ')));
    return QString();
}

template <class T>
T *child(QWidget *page, const QString &name)
{
    for (T *w : page->findChildren<T *>())
        if (w->objectName() == name || w->property("text").toString() == name)
            return w;
    return nullptr;
}

void startSerial(SerialportWidget *page)
{
    const QString pty = board({"text", "--pty", "--lines-per-s", "8"}, "larksim: pty ");
    page->SltSerialportChanged({pty.mid(5)});
    child<QPushButton>(page, "btnOpen")->click();
}

void startCamera(CameraDebugWidget *page)
{
    child<QComboBox>(page, "cbxProtocol")->setCurrentIndex(0);
    child<QLineEdit>(page, "edtPort")->setText("0");
    child<QPushButton>(page, "btnOpen")->click();
    board({"camera", "--fps", "25", "--tcp-client", QString("127.0.0.1:%1").arg(page->tcpServer()->serverPort())},
          "larksim: ");
}

// the first two read rows ask the sensor's id registers; a write row shows a write
void useRegisters(CameraDebugWidget *page)
{
    const QList<QPair<int, QString>> entries{{0, "12"}, {1, "80"}, {16, "0A"}, {18, "0B"}};
    for (const auto &e : entries)
        for (QLineEdit *w : page->formatConfig()->findChildren<QLineEdit *>())
            if (w->property("id").isValid() && w->property("id").toInt() == e.first)
                w->setText(e.second);
    for (const char *b : {"btnSendReg0", "btnSendReg8", "btnSendReg9"}) {
        if (auto *button = page->findChild<QPushButton *>(b))
            button->click();
        settle(150);
    }
}

void startNetwork(NetworkToolWidget *page)
{
    page->findChild<QComboBox *>("cbxNetType")->setCurrentIndex(0);
    page->findChild<QLineEdit *>("edtPort")->setText("0");
    page->findChild<QPushButton *>("btnOpen")->click();
    board({"text", "--lines-per-s", "5", "--tcp-client", QString("127.0.0.1:%1").arg(page->tcpServer()->serverPort())},
          "larksim: ");
}

void startPid(PidDebugWidget *page)
{
    const QString pty = board({"pid", "--pty", "--noise", "3"}, "larksim: pty ");
    page->SltSerialportChanged({pty.mid(5)});
    for (QPushButton *b : page->findChildren<QPushButton *>())
        if (b->text() == "打开串口")
            b->click();
    QComboBox *channel = nullptr;
    QList<QLineEdit *> edits;
    for (QGroupBox *g : page->findChildren<QGroupBox *>()) {
        if (g->title() != "PID值配置")
            continue;
        auto *grid = static_cast<QGridLayout *>(g->layout());
        channel = qobject_cast<QComboBox *>(grid->itemAtPosition(0, 1)->widget());
        for (int row : {1, 2, 3, 5, 6})
            edits << qobject_cast<QLineEdit *>(grid->itemAtPosition(row, 1)->widget());
    }
    if (!channel || edits.size() != 5)
        return;
    // CH1 well tuned to 1000, CH2 with too much P to 600
    const QList<QStringList> runs{{"1", "5", "0", "1000", "10"}, {"12", "0", "0", "600", "10"}};
    for (int c = 0; c < runs.size(); ++c) {
        channel->setCurrentIndex(c);
        for (int k = 0; k < 5; ++k)
            edits[k]->setText(runs[c][k]);
        for (QPushButton *b : page->findChildren<QPushButton *>())
            if (QStringList{"发送PID", "发送目标值", "发送周期"}.contains(b->text()))
                b->click();
        // the run button is one for all channels: stop (on this channel) and start
        for (QPushButton *b : page->findChildren<QPushButton *>()) {
            if (b->text() == "停止")
                b->click();
            if (b->text() == "启动") {
                b->click();
                break;
            }
        }
        settle(100);
    }
}

// the editor with a file, an unsaved edit and a search in the find bar
void showEditor(HexEditWidget *page)
{
    page->loadFile(g_sim);
    page->hexEdit()->byteArrayModel()->setByte(0x12, 0x5a);
    page->SltShowFind();
    page->findBar()->findChild<QComboBox *>()->setCurrentIndex(1);
    page->findBar()->findChild<QLineEdit *>("edtFind")->setText("GLIBC");
    page->SltFind(false);
}

// the serial page capturing to a log, and the 工具 menu open over it: a popup is a
// window of its own, so the screen is grabbed rather than the main window
void shootCaptureAndTools(MainWindow &window, const QDir &out, const QString &skin, int *saved)
{
    window.tabBar()->setCurrentIndex(0);
    window.SltTabBarClicked(0);
    LinkTools *tools = window.linkTools();
    tools->startCapture(0, out.filePath(QString("demo-%1-capture.log").arg(skin)), false);
    settle(1500);
    const QString capture = out.filePath(QString("demo-%1-capture.png").arg(skin));
    if (window.grab().save(capture)) {
        printf("%s\n", qPrintable(capture));
        ++*saved;
    }
    const QString menu = out.filePath(QString("demo-%1-tools.png").arg(skin));
    QTimer::singleShot(800, [&window, menu, saved] {
        const QRect r = window.frameGeometry();
        if (QGuiApplication::primaryScreen()->grabWindow(0, r.x(), r.y(), r.width(), r.height()).save(menu)) {
            printf("%s\n", qPrintable(menu));
            ++*saved;
        }
        window.toolsMenu()->close();
    });
    window.findChild<QPushButton *>("btnTools")->showMenu();
    tools->capture(0)->stop();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc < 3) {
        fprintf(stderr, "usage: larkdemo LARKSIM OUTDIR\n");
        return 2;
    }
    g_sim = QString::fromLocal8Bit(argv[1]);
    const QDir out(QString::fromLocal8Bit(argv[2]));
    QDir().mkpath(out.path());
    QApplication::setFont(QFont(UiSkin::m_strAppFontNormal, 9));
    MyApp::InitApp();

    const QStringList pages{"serial", "camera", "network", "pid", "hexedit"};
    int saved = 0;
    for (int skin : {0, 1}) {
        MyApp::m_nSkinStyle = skin;
        UiSkin::LoadStyleSheet(skin);
        MainWindow window;
        window.resize(1280, 800);
        window.show();
        // after the port watcher's first look, which replaces the port lists
        settle(2500);
        auto *stack = window.stackedWidget();
        startSerial(qobject_cast<SerialportWidget *>(stack->widget(0)));
        startCamera(qobject_cast<CameraDebugWidget *>(stack->widget(1)));
        startNetwork(qobject_cast<NetworkToolWidget *>(stack->widget(2)));
        startPid(qobject_cast<PidDebugWidget *>(stack->widget(3)));
        showEditor(qobject_cast<HexEditWidget *>(stack->widget(4)));
        settle(2000);
        useRegisters(qobject_cast<CameraDebugWidget *>(stack->widget(1)));
        settle(1000);
        for (int i = 0; i < pages.size(); ++i) {
            window.tabBar()->setCurrentIndex(i);
            window.SltTabBarClicked(i);
            settle(i == 3 ? 1500 : 700);
            const QString path = out.filePath(QString("demo-%1-%2.png").arg(skin == 0 ? "dark" : "white", pages[i]));
            if (window.grab().save(path)) {
                printf("%s\n", qPrintable(path));
                ++saved;
            }
        }
        shootCaptureAndTools(window, out, skin == 0 ? "dark" : "white", &saved);
        for (auto &p : g_boards) {
            p->terminate();
            p->waitForFinished(3000);
        }
        g_boards.clear();
        settle(200);
    }
    return saved == 2 * (pages.size() + 2) ? 0 : 1;
}
