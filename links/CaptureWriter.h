#ifndef CAPTUREWRITER_H
#define CAPTUREWRITER_H

#include "CaptureClock.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QString>

class LinkTap;
class QTextCodec;
class QTimer;

// Continuous capture of one link to a file, independent of what the page shows.
//
// Raw captures (.bin) hold the received bytes exactly; logs (.log, see CaptureLog)
// hold both directions, one line per chunk. Data is written at the latest one frame
// (flushInterval, 25 ms) after it arrived, straight to the descriptor, so a crash
// loses at most that; more than flushBytes waiting is written at once, so the buffer
// never grows with the link's speed.
//
// A write that fails, or a file that was removed or replaced under the capture, stops
// it: what was written stays, failed() tells why, and the link goes on untouched.
// With a roll-over size, a file that reached it is closed and the capture goes on in
// NAME.1.EXT, NAME.2.EXT, ...
class CaptureWriter : public QObject
{
    Q_OBJECT
public:
    enum Format { Raw, LogText, LogHex };
    static constexpr int flushInterval = 25;
    static constexpr int flushBytes = 1 << 20;

    explicit CaptureWriter(QObject *parent = nullptr);
    ~CaptureWriter() override;

    // Raw for ".bin", a log otherwise (hexadecimal when asked)
    static Format formatFor(const QString &path, bool hex);
    // the file after `index` roll-overs: cap.bin, cap.1.bin, cap.2.bin
    static QString rolledPath(const QString &path, int index);

    // starts a new capture (truncating the file); false with errorString() when the
    // file cannot be made. codec: the text codec of LogText.
    bool start(const QString &path, Format format, QTextCodec *codec = nullptr, qint64 rollBytes = 0);
    // writes what is waiting and closes the file
    void stop();
    // received/sent follow the tap's link, across its closes and reopens
    void attach(LinkTap *tap);

    bool isRunning() const { return m_file.isOpen(); }
    QString errorString() const { return m_error; }
    QString path() const { return m_path; }
    QString currentPath() const { return m_file.fileName(); }
    // bytes in all files of this capture
    qint64 totalBytes() const { return m_total; }

public slots:
    void SltReceived(const QByteArray &bytes);
    void SltSent(const QByteArray &bytes);
    void SltFlush();

signals:
    void failed(const QString &reason);
    void progress(qint64 totalBytes);
    void stopped();

private:
    void add(bool sent, const QByteArray &bytes);
    bool openFile(const QString &path);
    void fail(const QString &reason);
    bool fileStillOurs() const;

    QFile m_file;
    QString m_path;
    QString m_error;
    Format m_format = Raw;
    QTextCodec *m_codec = nullptr;
    qint64 m_roll = 0;
    int m_rollIndex = 0;
    qint64 m_fileBytes = 0;
    qint64 m_total = 0;
    QByteArray m_pending;
    QTimer *m_timer;
    QElapsedTimer m_clock;
    CaptureClock m_wallClock;
};

#endif // CAPTUREWRITER_H
