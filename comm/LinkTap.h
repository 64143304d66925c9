#ifndef LINKTAP_H
#define LINKTAP_H

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>

// What one page's link carries, seen from outside the page. Capture files, plots and
// automation attach here once for every page instead of once per transport.
//
// The page reports; tools listen and may write:
// - received: bytes as they left the link, before any display rule (hold, codec, hex),
//   also while the page's display is stopped;
// - sent: bytes the page wrote to the link, whoever asked for them;
// - opened/closed: the link's life, with a name a user recognises ("/dev/ttyUSB0",
//   "TCP Client 127.0.0.1:6000").
// write() hands bytes to the page's own write routine, so a tool's bytes are counted
// and reported as sent exactly as typed ones are.
class LinkTap : public QObject
{
    Q_OBJECT
public:
    using Writer = std::function<qint64(const QByteArray &)>;

    explicit LinkTap(QObject *parent = nullptr);
    // a page's tap with its write routine
    LinkTap(Writer writer, QObject *parent);

    // ---- page side
    // the page's write routine; it must report what it wrote through reportSent
    void setWriter(Writer writer);
    void reportOpened(const QString &name);
    void reportClosed();
    void reportReceived(const QByteArray &bytes);
    void reportSent(const QByteArray &bytes);

    // ---- tool side
    bool isOpen() const { return m_bOpen; }
    QString linkName() const { return m_strName; }
    // bytes written, or -1 when no link is open or the page cannot write now
    qint64 write(const QByteArray &bytes);

signals:
    void opened(const QString &name);
    void closed();
    void received(const QByteArray &bytes);
    void sent(const QByteArray &bytes);

private:
    Writer m_writer;
    QString m_strName;
    bool m_bOpen = false;
};

#endif // LINKTAP_H
