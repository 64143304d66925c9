#ifndef TEXTSOURCE_H
#define TEXTSOURCE_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QStringList>

class QTextCodec;
class QTimer;
class SimEndpoint;

// A board that prints: log lines with Chinese text (GB18030 or UTF-8), a counter, or
// binary bursts, paced by lines a second or by bytes a second; in echo mode it also
// sends back whatever it receives.
class TextSource : public QObject
{
    Q_OBJECT
public:
    // in the order of kindNames()
    enum Kind { Lines, Counter, Binary, Csv, Named, Frame };
    static QStringList kindNames();
    struct Options {
        Kind kind = Lines;
        QByteArray encoding = "GB18030";
        double linesPerSecond = 10;  // 0: nothing is generated
        double bytesPerSecond = 0;   // above 0: paced by bytes instead of lines
        int burst = 256;             // bytes of a binary burst
        bool echo = false;
        qint64 count = -1;           // lines or bursts, then quit; -1 never
    };

    TextSource(SimEndpoint *endpoint, const Options &options, QObject *parent = nullptr);
    void start();
    // item n as it goes on the wire
    QByteArray item(qint64 n) const;
    // numbers for the plot window: CSV or name:value lines, or a binary frame
    QByteArray plotItem(qint64 n) const;

private slots:
    void tick();
    void received(const QByteArray &data);

private:
    SimEndpoint *m_endpoint;
    Options m_opt;
    QTextCodec *m_codec;
    QTimer *m_timer;
    QElapsedTimer m_clock;
    qint64 m_items = 0;
    qint64 m_paceItems = 0; // m_items when the pace last started
    qint64 m_bytes = 0;
};

#endif // TEXTSOURCE_H
