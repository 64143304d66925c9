#ifndef SCRIPTRUNTIME_H
#define SCRIPTRUNTIME_H

#include <QByteArray>
#include <QHash>
#include <QJSValue>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class LinkTap;
class QJSEngine;
class QTextCodec;
class QTimer;
class ScriptHost;
class ScriptWatchdog;

// One JavaScript program at work on a link, in Qt's own engine (QJSEngine with no
// extensions: no file, network, module or Qt object of its own). The script sees:
//   onData(bytes)            its own function, called with each received chunk (Uint8Array)
//   send(textOrBytes)        text in the page's codec, or Uint8Array/ArrayBuffer/array
//   setTimeout, setInterval, clearTimeout, clearInterval; there is no sleep
//   log(...), console.log(...), plot(name, value)
//   hex/toHex(bytes), fromHex(text), text(bytes), crc16modbus(bytesOrText), codec
//
// Every call into the script (the program itself, onData, a timer) may take at most
// CallLimitMs: a watchdog thread interrupts a longer one, and the script stops with the
// reason, the entry point's line (onData's definition, the line that set the timer, or
// the top level) and the line of the loop it was in: the engine unwinds an interrupted
// call without any line, so the loops are marked to tell theirs (ScriptLoopMarker). An
// uncaught error stops it too, with file, line and message.
class ScriptRuntime : public QObject
{
    Q_OBJECT
public:
    static constexpr int CallLimitMs = 200;

    explicit ScriptRuntime(QObject *parent = nullptr);
    ~ScriptRuntime() override;

    // the link the script works on: each chunk it receives goes to onData, and send()
    // writes through it (-1 to the script once it is gone: nothing was written)
    void setTap(LinkTap *tap);
    void setCodec(const QByteArray &codecName);
    QTextCodec *codec() const { return m_codec; }

    // runs the program; false (and finished with the reason) when it failed at once
    bool start(const QString &source, const QString &fileName);
    bool isRunning() const { return m_engine != nullptr; }

public slots:
    void feed(const QByteArray &bytes);
    void stop();

signals:
    void logLine(const QString &text);
    void plotValue(const QString &name, double value);
    void started();
    // the script ended: reason is empty when the user stopped it
    void finished(const QString &reason);

private:
    friend class ScriptHost;
    qint64 sendBytes(const QByteArray &bytes);
    int addTimer(double ms, bool repeat, const QString &entry);
    void removeTimer(int id);
    void fireTimer(int id);

    // calls into the script under the watchdog; false when the script was stopped
    bool call(QJSValue fn, const QJSValueList &args, const QString &entry);
    bool check(const QJSValue &result, bool timedOut, const QString &entry);
    QString where(const QJSValue &error) const;
    void end(const QString &reason);

    std::unique_ptr<ScriptWatchdog> m_watchdog;
    QJSEngine *m_engine = nullptr;
    ScriptHost *m_host;
    QTextCodec *m_codec;
    QPointer<LinkTap> m_tap;
    QString m_strFile;
    QJSValue m_fire;
    QJSValue m_data;
    QJSValue m_loop; // {line}: the loop test run last in the current call
    QHash<int, QTimer *> m_timers;
    QHash<int, QString> m_timerEntries; // what a timeout names: where the timer was set
    QString m_strDataEntry;
    int m_nextTimer = 1;
    int m_depth = 0;
    QString m_pendingEnd; // set when the script must end once the current call returns
    bool m_bEnding = false;
};

#endif // SCRIPTRUNTIME_H
