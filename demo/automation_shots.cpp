// The automation window at work on a loopback TCP link, in both skins: its rules
// having answered, and a script running. Saves automation-<skin>-<tab>.png into OUTDIR.
//   larkautomationshots OUTDIR   (under Xvfb without a display)
#include "AutoReplyRunner.h"
#include "AutomationWindow.h"
#include "LinkTap.h"
#include "MyApp.h"
#include "ReplyRule.h"
#include "ScriptRuntime.h"
#include "UiSkin.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTcpServer>
#include <QTcpSocket>

static void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

static ReplyRule rule(ReplyRule::MatchKind kind, const QString &pattern, const QString &reply, int interval = 0)
{
    ReplyRule r;
    r.matchKind = kind;
    r.pattern = pattern;
    r.reply = r.matchKind == ReplyRule::MatchHex ? "55 AA 81" : reply;
    r.replyKind = kind == ReplyRule::MatchHex ? ReplyRule::ReplyHex : ReplyRule::ReplyText;
    r.minIntervalMs = interval;
    return r;
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc < 2) {
        fprintf(stderr, "usage: larkautomationshots OUTDIR\n");
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    QDir().mkpath(out.path());
    QApplication::setFont(QFont(UiSkin::m_strAppFontNormal, 9));
    MyApp::InitApp();

    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    QTcpSocket board;
    board.connectToHost(QHostAddress::LocalHost, server.serverPort());
    if (!server.waitForNewConnection(5000))
        return 1;
    QTcpSocket *link = server.nextPendingConnection();
    LinkTap tap;
    QObject::connect(link, &QTcpSocket::readyRead, &tap, [&]() { tap.reportReceived(link->readAll()); });
    tap.setWriter([&](const QByteArray &b) { return link->write(b); });
    tap.reportOpened("TCP Server 127.0.0.1:6001");

    int saved = 0;
    for (int skin : {0, 1}) {
        MyApp::m_nSkinStyle = skin;
        UiSkin::LoadStyleSheet(skin);
        AutomationWindow window(&tap, "网络调试助手");
        window.setRules({rule(ReplyRule::MatchText, "AT\\r\\n", "OK\\r\\n"),
                         rule(ReplyRule::MatchHex, "AA 55 01", ""),
                         rule(ReplyRule::MatchRegex, "TEMP=(\\d+)", "ACK\\r\\n", 1000),
                         rule(ReplyRule::MatchText, "AT+RST\\r\\n", "\\x06", 0)});
        window.findChild<QCheckBox *>()->setChecked(true);
        window.show();
        for (int i = 0; i < 3; ++i)
            board.write("AT\r\n\xaa\x55\x01TEMP=23;");
        settle(600);
        const QString name = skin == 0 ? "dark" : "white";
        if (window.grab().save(out.filePath(QString("automation-%1-rules.png").arg(name))))
            ++saved;

        window.setCurrentTab(1);
        window.editor()->setPlainText(
            "// 每 100 ms 问一次温度，收到后画曲线；帧尾带 CRC-16/MODBUS\n"
            "var seq = 0;\n"
            "setInterval(function () {\n"
            "    var frame = new Uint8Array([0x01, 0x03, 0x00, seq++ & 0xff, 0x00, 0x01]);\n"
            "    var crc = crc16modbus(frame);\n"
            "    var out = new Uint8Array(8);\n"
            "    out.set(frame);\n"
            "    out[6] = crc & 0xff;\n"
            "    out[7] = crc >> 8;\n"
            "    send(out);\n"
            "}, 100);\n"
            "\n"
            "function onData(bytes) {\n"
            "    var m = /TEMP=(\\d+)/.exec(text(bytes));\n"
            "    if (m) {\n"
            "        plot('温度', Number(m[1]));\n"
            "        log('温度', m[1], toHex(bytes));\n"
            "    }\n"
            "}\n");
        QMetaObject::invokeMethod(&window, "SltRunScript");
        for (int i = 0; i < 6; ++i) {
            board.write(QByteArray("TEMP=") + QByteArray::number(20 + i) + ";\r\n");
            settle(120);
        }
        if (window.grab().save(out.filePath(QString("automation-%1-script.png").arg(name))))
            ++saved;
        window.runtime()->stop();
    }
    printf("%s\n", qPrintable(out.path()));
    return saved == 4 ? 0 : 1;
}
