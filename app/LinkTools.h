#ifndef LINKTOOLS_H
#define LINKTOOLS_H

#include <QObject>
#include <QVector>

class CaptureWriter;
class DeviceReopener;
class LinkTap;
class QAction;
class QActionGroup;
class QLabel;
class SocketReconnector;
class QStackedWidget;
class QTimer;
class QtWidgetBase;
class RemoteReopener;
class ToolsMenu;

// The "工具" menu entries around a page's link: continuous capture to a file,
// reopening a serial device that came back or a remote port whose session ended, the
// modem control lines and flow control, a remote port in the camera page's link box.
// Each page with a link has its own capture and reopen state, attached to its
// LinkTap; the entries act on the page shown.
//
// "自动重连" is remembered per page in conf/links.ini (group AutoReconnect, page
// index as key); the capture's roll-over size is read from the same file (group
// Capture, RollBytes, 0 for none).
class LinkTools : public QObject
{
    Q_OBJECT
public:
    LinkTools(ToolsMenu *menu, QStackedWidget *pages, QLabel *indicator, QObject *parent = nullptr);

    static QString settingsFile();
    CaptureWriter *capture(int page) const;
    DeviceReopener *reopener(int page) const;
    RemoteReopener *remoteReopener(int page) const;

    // the work behind the entries, for the page at index (the menu asks for a file
    // name first, then calls startCapture)
    bool startCapture(int page, const QString &path, bool hex);
    void setAutoReconnect(int page, bool on);
    void setControlLine(int page, bool dtr, bool on);
    void setFlowControl(int page, int flow);
    // "rfc2217://HOST:PORT" into the camera page's link box; false (and a red notice)
    // for a name that is none
    bool addRemotePort(int page, const QString &name);

private slots:
    void SltStartCapture();
    void SltStopCapture();
    void SltAutoReconnect(bool on);
    void SltDtr(bool on);
    void SltRts(bool on);
    void SltFlow(QAction *action);
    void SltMenuShown();
    void SltRefreshIndicator();
    void SltCaptureFailed(const QString &reason);
    void SltLinkOpened(const QString &name);
    void SltLinkClosed();
    void SltPageNotice(const QString &text, int level);
    void SltReopen(const QString &path);
    void SltReconnecting(const QString &host, quint16 port, int delayMs);
    void SltRemoteRetrying(const QString &name, int delayMs);
    void SltRemotePort();

private:
    struct PageLinks {
        QtWidgetBase *page = nullptr;
        LinkTap *tap = nullptr;
        CaptureWriter *capture = nullptr;
        DeviceReopener *reopener = nullptr;
        SocketReconnector *reconnector = nullptr;
        RemoteReopener *remote = nullptr;
        QString name; // of the link last opened
        bool pulled = false;
        bool dtr = true;
        bool rts = true;
        int flow = 0;
    };
    int indexOfSender() const;
    void notify(int page, const QString &text, int level);

    ToolsMenu *m_menu;
    QStackedWidget *m_pages;
    QLabel *m_indicator;
    QTimer *m_indicatorTimer;
    QVector<PageLinks> m_links;
    QAction *m_actStart = nullptr;
    QAction *m_actStop = nullptr;
    QAction *m_actReconnect = nullptr;
    QAction *m_actDtr = nullptr;
    QAction *m_actRts = nullptr;
    QActionGroup *m_flowGroup = nullptr;
};

#endif // LINKTOOLS_H
