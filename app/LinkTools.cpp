#include "LinkTools.h"
#include "AppPaths.h"

#include "CameraDebugWidget.h"
#include "CaptureWriter.h"
#include "DeviceReopener.h"
#include "LinkTap.h"
#include "MyApp.h"
#include "NetworkToolWidget.h"
#include "PidDebugWidget.h"
#include "QextSerialPort.h"
#include "QtSerialPort.h"
#include "QtWidgetBase.h"
#include "RemoteReopener.h"
#include "Rfc2217Port.h"
#include "SerialportWidget.h"
#include "SocketReconnector.h"
#include "ToolsMenu.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QSettings>
#include <QStackedWidget>
#include <QTcpSocket>
#include <QTextCodec>
#include <QTimer>

namespace {
QString sizeText(qint64 bytes)
{
    if (bytes < 1024)
        return QString("%1 B").arg(bytes);
    if (bytes < 1024 * 1024)
        return QString("%1 KB").arg(bytes / 1024.0, 0, 'f', 1);
    return QString("%1 MB").arg(bytes / 1048576.0, 0, 'f', 1);
}
} // namespace

LinkTools::LinkTools(ToolsMenu *menu, QStackedWidget *pages, QLabel *indicator, QObject *parent)
    : QObject(parent), m_menu(menu), m_pages(pages), m_indicator(indicator), m_indicatorTimer(new QTimer(this))
{
    QSettings settings(settingsFile(), QSettings::IniFormat);
    m_links.resize(pages->count());
    for (int i = 0; i < pages->count(); ++i) {
        PageLinks &l = m_links[i];
        l.page = qobject_cast<QtWidgetBase *>(pages->widget(i));
        l.tap = l.page ? l.page->linkTap() : nullptr;
        const bool reconnect = settings.value(QString("AutoReconnect/%1").arg(i), false).toBool();
        QTcpSocket *client = nullptr;
        if (auto *n = qobject_cast<NetworkToolWidget *>(l.page))
            client = n->tcpSocket();
        else if (auto *c = qobject_cast<CameraDebugWidget *>(l.page))
            client = c->tcpClient();
        if (client) {
            l.reconnector = new SocketReconnector(this);
            l.reconnector->attach(client);
            l.reconnector->setEnabled(reconnect);
            connect(l.reconnector, SIGNAL(reconnecting(QString, quint16, int)), this,
                    SLOT(SltReconnecting(QString, quint16, int)));
        }
        // a writer for every page, so a capture can be driven without a link too; it
        // records what the page's tap carries
        l.capture = new CaptureWriter(this);
        connect(l.capture, SIGNAL(failed(QString)), this, SLOT(SltCaptureFailed(QString)));
        if (!l.tap)
            continue;
        l.capture->attach(l.tap);
        l.reopener = new DeviceReopener(this);
        l.reopener->setEnabled(reconnect);
        connect(l.reopener, SIGNAL(reopenWanted(QString)), this, SLOT(SltReopen(QString)));
        l.remote = new RemoteReopener(this);
        l.remote->setEnabled(reconnect);
        connect(l.remote, SIGNAL(reopenWanted(QString)), this, SLOT(SltReopen(QString)));
        connect(l.remote, SIGNAL(retrying(QString, int)), this, SLOT(SltRemoteRetrying(QString, int)));
        connect(l.tap, SIGNAL(opened(QString)), this, SLOT(SltLinkOpened(QString)));
        connect(l.tap, SIGNAL(closed()), this, SLOT(SltLinkClosed()));
        connect(l.page, SIGNAL(signalNotify(QString, int)), this, SLOT(SltPageNotice(QString, int)));
    }

    auto capturing = [this](int i, QtWidgetBase *) { return capture(i) && capture(i)->isRunning(); };
    m_menu->addSeparator();
    m_actStart = m_menu->addPageAction("开始记录…", [capturing](int i, QtWidgetBase *p) {
        return ToolsMenu::hasLink(i, p) && !capturing(i, p);
    });
    m_actStart->setShortcut(QKeySequence("Ctrl+Shift+R"));
    m_actStop = m_menu->addPageAction("停止记录", capturing);
    m_actStop->setShortcut(QKeySequence("Ctrl+Shift+E"));
    m_actReconnect = m_menu->addPageAction("自动重连", [this](int i, QtWidgetBase *p) {
        return ToolsMenu::hasLink(i, p) || (i < m_links.size() && m_links.at(i).reconnector);
    });
    m_actReconnect->setCheckable(true);
    QMenu *lines = m_menu->addPageMenu("控制线", [](int i, QtWidgetBase *p) {
        return ToolsMenu::isSerialPage(i, p);
    });
    m_actDtr = lines->addAction("DTR");
    m_actDtr->setCheckable(true);
    m_actRts = lines->addAction("RTS");
    m_actRts->setCheckable(true);
    lines->addSeparator();
    m_flowGroup = new QActionGroup(this);
    int flow = 0;
    for (const char *text : {"无流控", "RTS/CTS", "XON/XOFF"}) {
        QAction *a = lines->addAction(text);
        a->setCheckable(true);
        a->setData(flow++);
        m_flowGroup->addAction(a);
    }
    QAction *remote = m_menu->addPageAction("远程串口…", [](int, QtWidgetBase *p) {
        return qobject_cast<CameraDebugWidget *>(p) != nullptr;
    });
    remote->setShortcut(QKeySequence("Ctrl+Shift+T"));
    connect(remote, SIGNAL(triggered()), this, SLOT(SltRemotePort()));
    connect(m_actStart, SIGNAL(triggered()), this, SLOT(SltStartCapture()));
    connect(m_actStop, SIGNAL(triggered()), this, SLOT(SltStopCapture()));
    connect(m_actReconnect, SIGNAL(triggered(bool)), this, SLOT(SltAutoReconnect(bool)));
    connect(m_actDtr, SIGNAL(triggered(bool)), this, SLOT(SltDtr(bool)));
    connect(m_actRts, SIGNAL(triggered(bool)), this, SLOT(SltRts(bool)));
    connect(m_flowGroup, SIGNAL(triggered(QAction *)), this, SLOT(SltFlow(QAction *)));
    connect(m_menu, SIGNAL(aboutToShow()), this, SLOT(SltMenuShown()));

    // the size shown while a capture runs; a timer rather than each write, so a fast
    // link does not repaint the status bar thousands of times a second. It runs only
    // while a capture does: an idle program wakes for nothing
    m_indicatorTimer->setInterval(500);
    connect(m_indicatorTimer, SIGNAL(timeout()), this, SLOT(SltRefreshIndicator()));
    SltRefreshIndicator();
}

QString LinkTools::settingsFile()
{
    return AppPaths::confDir() + "/links.ini";
}

CaptureWriter *LinkTools::capture(int page) const
{
    return page >= 0 && page < m_links.size() ? m_links.at(page).capture : nullptr;
}

DeviceReopener *LinkTools::reopener(int page) const
{
    return page >= 0 && page < m_links.size() ? m_links.at(page).reopener : nullptr;
}

void LinkTools::notify(int page, const QString &text, int level)
{
    // by name: a page may declare its own signalNotify, which is the one the status
    // bar listens to
    if (QtWidgetBase *w = m_links.value(page).page)
        QMetaObject::invokeMethod(w, "signalNotify", Q_ARG(QString, text), Q_ARG(int, level));
}

RemoteReopener *LinkTools::remoteReopener(int page) const
{
    return page >= 0 && page < m_links.size() ? m_links.at(page).remote : nullptr;
}

bool LinkTools::startCapture(int page, const QString &path, bool hex)
{
    CaptureWriter *writer = capture(page);
    if (!writer)
        return false;
    const qint64 roll = QSettings(settingsFile(), QSettings::IniFormat).value("Capture/RollBytes", 0).toLongLong();
    if (!writer->start(path, CaptureWriter::formatFor(path, hex), QTextCodec::codecForName(MyApp::getTextCodec()),
                       roll)) {
        notify(page, QString("无法创建记录文件 %1: %2").arg(path, writer->errorString()), 255);
        return false;
    }
    notify(page, QString("开始记录到 %1").arg(path), 0);
    SltRefreshIndicator();
    return true;
}

void LinkTools::SltStartCapture()
{
    const int page = m_menu->currentIndex();
    QString filter;
    const QString path = QFileDialog::getSaveFileName(m_pages->window(), "开始记录", QString(),
                                                      "原始数据 (*.bin);;文本记录 (*.log);;十六进制记录 (*.log)", &filter);
    if (path.isEmpty())
        return;
    QString file = path;
    if (QFileInfo(file).suffix().isEmpty())
        file += filter.startsWith("原始") ? ".bin" : ".log";
    startCapture(page, file, filter.startsWith("十六进制"));
}

void LinkTools::SltStopCapture()
{
    const int page = m_menu->currentIndex();
    if (CaptureWriter *writer = capture(page)) {
        writer->stop();
        notify(page, QString("记录已停止: %1 (%2)").arg(writer->path(), sizeText(writer->totalBytes())), 0);
    }
    SltRefreshIndicator();
}

void LinkTools::SltCaptureFailed(const QString &reason)
{
    for (int i = 0; i < m_links.size(); ++i)
        if (m_links.at(i).capture == sender())
            notify(i, "记录已停止: " + reason, 255);
    SltRefreshIndicator();
}

void LinkTools::SltRefreshIndicator()
{
    QStringList running;
    for (int i = 0; i < m_links.size(); ++i) {
        const CaptureWriter *w = m_links.at(i).capture;
        if (w && w->isRunning())
            running << QString("● 记录 %1 %2").arg(QFileInfo(w->currentPath()).fileName(), sizeText(w->totalBytes()));
    }
    if (m_indicator) {
        m_indicator->setText(running.join("  "));
        m_indicator->setVisible(!running.isEmpty());
    }
    // a capture that stopped on its own (a failed write) is seen at the next tick,
    // which then hides the size and rests
    if (running.isEmpty())
        m_indicatorTimer->stop();
    else if (!m_indicatorTimer->isActive())
        m_indicatorTimer->start();
}

void LinkTools::setAutoReconnect(int page, bool on)
{
    if (DeviceReopener *r = reopener(page))
        r->setEnabled(on);
    if (RemoteReopener *r = remoteReopener(page))
        r->setEnabled(on);
    if (page >= 0 && page < m_links.size() && m_links.at(page).reconnector)
        m_links.at(page).reconnector->setEnabled(on);
    QSettings(settingsFile(), QSettings::IniFormat).setValue(QString("AutoReconnect/%1").arg(page), on);
}

void LinkTools::SltAutoReconnect(bool on)
{
    setAutoReconnect(m_menu->currentIndex(), on);
}

void LinkTools::SltMenuShown()
{
    const int page = m_menu->currentIndex();
    const PageLinks l = m_links.value(page);
    m_actReconnect->setChecked((l.reopener && l.reopener->isEnabled()) || (l.reconnector && l.reconnector->isEnabled()));
    m_actDtr->setChecked(l.dtr);
    m_actRts->setChecked(l.rts);
    const QList<QAction *> flows = m_flowGroup->actions();
    flows.at(qBound(0, l.flow, flows.size() - 1))->setChecked(true);
}

void LinkTools::setControlLine(int page, bool dtr, bool on)
{
    if (page < 0 || page >= m_links.size())
        return;
    PageLinks &l = m_links[page];
    (dtr ? l.dtr : l.rts) = on;
    QWidget *w = m_pages->widget(page);
    bool ok = false;
    bool open = false;
    if (auto *s = qobject_cast<SerialportWidget *>(w)) {
        open = s->serialport()->isOpen();
        ok = dtr ? s->serialport()->setDtr(on) : s->serialport()->setRts(on);
    } else if (auto *c = qobject_cast<CameraDebugWidget *>(w)) {
        open = c->serialPort()->isOpen();
        ok = dtr ? c->serialPort()->setDtr(on) : c->serialPort()->setRts(on);
    } else if (auto *p = qobject_cast<PidDebugWidget *>(w)) {
        open = p->serialPort()->isOpen();
        ok = dtr ? p->serialPort()->setDtr(on) : p->serialPort()->setRts(on);
    }
    const QString line = dtr ? "DTR" : "RTS";
    if (!open)
        notify(page, QString("串口未打开, %1 将不会改变").arg(line), 0);
    else if (!ok)
        notify(page, QString("该串口不支持控制线 %1 (伪终端没有调制解调器线)").arg(line), 255);
    else
        notify(page, QString("%1 %2").arg(line, on ? "已置位" : "已复位"), 0);
}

void LinkTools::SltDtr(bool on)
{
    setControlLine(m_menu->currentIndex(), true, on);
}

void LinkTools::SltRts(bool on)
{
    setControlLine(m_menu->currentIndex(), false, on);
}

void LinkTools::setFlowControl(int page, int flow)
{
    if (page < 0 || page >= m_links.size())
        return;
    m_links[page].flow = flow;
    QWidget *w = m_pages->widget(page);
    // kept by the port for its next open, applied at once when it is open
    if (auto *s = qobject_cast<SerialportWidget *>(w))
        s->serialport()->setFlowControl(QextSerialPort::FlowType(flow));
    else if (auto *c = qobject_cast<CameraDebugWidget *>(w))
        c->serialPort()->setFlowControl(QextSerialPort::FlowType(flow));
    else if (auto *p = qobject_cast<PidDebugWidget *>(w))
        p->serialPort()->setFlowControl(flow);
}

void LinkTools::SltFlow(QAction *action)
{
    setFlowControl(m_menu->currentIndex(), action->data().toInt());
}

int LinkTools::indexOfSender() const
{
    for (int i = 0; i < m_links.size(); ++i)
        if (m_links.at(i).tap == sender() || m_links.at(i).page == sender() || m_links.at(i).reopener == sender()
            || m_links.at(i).reconnector == sender() || m_links.at(i).remote == sender())
            return i;
    return -1;
}

void LinkTools::SltLinkOpened(const QString &name)
{
    const int i = indexOfSender();
    if (i < 0)
        return;
    m_links[i].pulled = false;
    m_links[i].name = name;
    // only devices come back by themselves, and remote ports by trying; a network link
    // has a name of its own
    if (!Rfc2217Port::remoteName(name).isEmpty())
        m_links[i].remote->linkOpened(name);
    else if (name.startsWith("/dev/"))
        m_links[i].reopener->linkOpened(name);
}

void LinkTools::SltLinkClosed()
{
    const int i = indexOfSender();
    if (i < 0)
        return;
    // the page tells a pulled port by its notice right after closing it: decide once
    // this event is done
    QTimer::singleShot(0, this, [this, i] {
        PageLinks &l = m_links[i];
        if (!Rfc2217Port::remoteName(l.name).isEmpty()) {
            // a session the server ended comes with the page's pulled notice too
            l.remote->linkClosed(l.pulled);
        } else {
            const bool gone = l.reopener->presentPath().isEmpty();
            l.reopener->linkClosed(l.pulled || gone);
        }
        l.pulled = false;
    });
}

void LinkTools::SltPageNotice(const QString &text, int)
{
    const int i = indexOfSender();
    if (i >= 0 && text.contains("已拔出"))
        m_links[i].pulled = true;
}

void LinkTools::SltReopen(const QString &path)
{
    const int i = indexOfSender();
    if (i < 0)
        return;
    QWidget *w = m_pages->widget(i);
    bool ok = false;
    if (auto *s = qobject_cast<SerialportWidget *>(w))
        ok = s->reopenPort(path);
    else if (auto *c = qobject_cast<CameraDebugWidget *>(w))
        ok = c->reopenPort(path);
    else if (auto *p = qobject_cast<PidDebugWidget *>(w))
        ok = p->reopenPort(path);
    if (ok) {
        if (sender() == m_links.at(i).reopener)
            m_links.at(i).reopener->linkOpened(path);
        notify(i, QString("串口[%1]已重新连接").arg(path), 0);
    } else if (sender() == m_links.at(i).remote)
        m_links.at(i).remote->attemptFailed();
}

void LinkTools::SltRemoteRetrying(const QString &name, int delayMs)
{
    notify(indexOfSender(),
           QString("[远程串口] %1 未连接, %2 秒后重新连接...").arg(Rfc2217Port::remoteName(name)).arg(delayMs / 1000.0), 0);
}

bool LinkTools::addRemotePort(int page, const QString &name)
{
    auto *camera = qobject_cast<CameraDebugWidget *>(m_pages->widget(page));
    QString error;
    if (!camera)
        return false;
    if (!camera->addRemoteLink(name, &error)) {
        notify(page, error, 255);
        return false;
    }
    return true;
}

void LinkTools::SltRemotePort()
{
    bool ok = false;
    const QString name = QInputDialog::getText(m_pages->window(), "远程串口", "远程串口地址 (RFC 2217, 如 ser2net):",
                                               QLineEdit::Normal, Rfc2217Port::scheme(), &ok);
    if (ok)
        addRemotePort(m_menu->currentIndex(), name);
}

void LinkTools::SltReconnecting(const QString &host, quint16 port, int delayMs)
{
    notify(indexOfSender(), QString("[TCP Client] %1:%2 未连接, %3 秒后重新连接...").arg(host).arg(port).arg(delayMs / 1000.0), 0);
}
