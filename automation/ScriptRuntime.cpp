#include "ScriptRuntime.h"
#include "ScriptHost.h"
#include "ScriptLoopMarker.h"
#include "ScriptWatchdog.h"
#include "LinkTap.h"

#include <QJSEngine>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTimer>

// Installs the script's functions on the global object. The host stays in this closure,
// out of the script's reach; the returned object is how the runtime calls back in.
static const char kPrelude[] = R"JS(
(function (h, file) {
    var g = (function () { return this; })();
    // "file:line" of the script's own code that called the helper calling this
    function callerLine() {
        var frames = String(new Error().stack).split('\n');
        for (var i = 0; i < frames.length; ++i) {
            var at = frames[i].lastIndexOf(file + ':');
            if (at >= 0)
                return frames[i].substring(at);
        }
        return file;
    }
    function bytes(x, what) {
        if (x instanceof ArrayBuffer)
            return x;
        if (ArrayBuffer.isView(x))
            return x.buffer.slice(x.byteOffset, x.byteOffset + x.byteLength);
        if (Array.isArray(x)) {
            for (var i = 0; i < x.length; ++i) {
                if (typeof x[i] !== 'number' || x[i] < 0 || x[i] > 255 || x[i] % 1 !== 0)
                    throw new TypeError(what + ': array item ' + i + ' is not a byte (0..255)');
            }
            return new Uint8Array(x).buffer;
        }
        throw new TypeError(what + ': expects Uint8Array, ArrayBuffer or an array of bytes');
    }
    function show(v) {
        if (typeof v === 'string')
            return v;
        if (v instanceof ArrayBuffer || ArrayBuffer.isView(v))
            return '<' + h.toHex(bytes(v, 'log')) + '>';
        try {
            var s = JSON.stringify(v);
            return s === undefined ? String(v) : s;
        } catch (e) {
            return String(v);
        }
    }
    // the line of the loop test run last, for a call that gets interrupted
    var loop = { line: 0 };
    g.__larkLoop = function (line) { loop.line = line; return true; };
    var timers = {};
    function addTimer(fn, ms, repeat, args) {
        if (typeof fn !== 'function')
            throw new TypeError((repeat ? 'setInterval' : 'setTimeout') + ': the first argument must be a function');
        var id = h.addTimer(Number(ms) || 0, repeat, (repeat ? 'setInterval' : 'setTimeout') + ' 回调（' + callerLine() + ' 设置）');
        timers[id] = { fn: fn, repeat: repeat, args: args };
        return id;
    }
    function clearTimer(id) {
        if (timers[id]) {
            delete timers[id];
            h.removeTimer(id);
        }
    }
    g.send = function (x) { return typeof x === 'string' ? h.sendText(x) : h.send(bytes(x, 'send')); };
    g.log = function () { h.log(Array.prototype.map.call(arguments, show).join(' ')); };
    g.console = { log: g.log, info: g.log, warn: g.log, error: g.log };
    g.plot = function (name, value) { h.plot(String(name), Number(value)); };
    g.hex = g.toHex = function (x) { return h.toHex(bytes(x, 'toHex')); };
    g.fromHex = function (s) { return new Uint8Array(h.fromHex(String(s))); };
    g.text = function (x) { return h.text(bytes(x, 'text')); };
    g.crc16modbus = function (x) { return h.crc16modbus(typeof x === 'string' ? h.encode(x) : bytes(x, 'crc16modbus')); };
    g.codec = h.codec();
    g.setTimeout = function (fn, ms) { return addTimer(fn, ms, false, Array.prototype.slice.call(arguments, 2)); };
    g.setInterval = function (fn, ms) { return addTimer(fn, ms, true, Array.prototype.slice.call(arguments, 2)); };
    g.clearTimeout = g.clearInterval = clearTimer;
    return {
        loop: loop,
        fire: function (id) {
            var t = timers[id];
            if (!t)
                return;
            if (!t.repeat)
                delete timers[id];
            t.fn.apply(undefined, t.args);
        },
        data: function (ab) {
            if (typeof g.onData === 'function')
                g.onData(new Uint8Array(ab));
        }
    };
})
)JS";

ScriptRuntime::ScriptRuntime(QObject *parent)
    : QObject(parent)
    , m_host(new ScriptHost(this))
    , m_codec(QTextCodec::codecForName("UTF-8"))
{
    // setInterrupted is the one QJSEngine call meant for another thread
    m_watchdog = std::make_unique<ScriptWatchdog>(CallLimitMs, [this]() {
        if (QJSEngine *engine = m_engine)
            engine->setInterrupted(true);
    });
}

ScriptRuntime::~ScriptRuntime()
{
    m_bEnding = true; // no signals from a half-destroyed runtime
    m_watchdog.reset();
    end(QString());
}

void ScriptRuntime::setTap(LinkTap *tap)
{
    if (m_tap)
        disconnect(m_tap, nullptr, this, nullptr);
    m_tap = tap;
    if (tap)
        connect(tap, &LinkTap::received, this, &ScriptRuntime::feed);
}

void ScriptRuntime::setCodec(const QByteArray &codecName)
{
    if (QTextCodec *codec = QTextCodec::codecForName(codecName))
        m_codec = codec;
}

bool ScriptRuntime::start(const QString &source, const QString &fileName)
{
    stop();
    m_strFile = fileName.isEmpty() ? QString("script.js") : fileName;
    m_engine = new QJSEngine(this);
    m_pendingEnd.clear();
    m_watchdog->setEnabled(true);
    const QJSValue api = m_engine->evaluate(QString::fromUtf8(kPrelude), "<larkTools>")
                             .call({m_engine->newQObject(m_host), m_strFile});
    m_fire = api.property("fire");
    m_data = api.property("data");
    m_loop = api.property("loop");
    // loops tell their line, so that an interrupted one can be named; a source the
    // marker misreads into one that does not compile runs as written
    QString marked = ScriptLoopMarker::mark(source, "__larkLoop");
    if (marked != source && m_engine->globalObject().property("Function").callAsConstructor({marked}).isError())
        marked = source;
    emit started();
    ++m_depth;
    m_loop.setProperty("line", 0);
    m_watchdog->arm();
    const QJSValue result = m_engine->evaluate(marked, m_strFile, 1);
    const bool timedOut = !m_watchdog->disarm();
    --m_depth;
    // an interrupted call unwinds without a line of its own: the entry point is named
    // instead, and onData's is where the source defines it
    const QRegularExpressionMatch def = QRegularExpression("function\\s+onData\\b|\\bonData\\s*=").match(source);
    m_strDataEntry = QString("onData（%1:%2）").arg(m_strFile).arg(def.hasMatch() ? source.leftRef(def.capturedStart()).count('\n') + 1 : 1);
    return check(result, timedOut, QString("顶层代码（%1）").arg(m_strFile));
}

void ScriptRuntime::stop()
{
    if (m_engine)
        end(QString());
}

void ScriptRuntime::feed(const QByteArray &bytes)
{
    if (m_engine && !bytes.isEmpty())
        call(m_data, {m_engine->toScriptValue(bytes)}, m_strDataEntry);
}

bool ScriptRuntime::call(QJSValue fn, const QJSValueList &args, const QString &entry)
{
    if (!m_engine)
        return false;
    // only the outermost call is timed: a script reached again from inside itself is
    // still the same call
    const bool outer = m_depth++ == 0;
    if (outer) {
        m_loop.setProperty("line", 0);
        m_watchdog->arm();
    }
    const QJSValue result = fn.call(args);
    const bool timedOut = outer && !m_watchdog->disarm();
    --m_depth;
    return check(result, timedOut, entry);
}

bool ScriptRuntime::check(const QJSValue &result, bool timedOut, const QString &entry)
{
    if (timedOut) {
        // the interrupted engine goes with the script; a new run gets a fresh one. The
        // loop named is the one whose test ran last in this call: the one looping, unless
        // the time went into a single long operation after a loop had ended
        m_engine->setInterrupted(false);
        const int line = m_loop.property("line").toInt();
        const QString loop = line > 0 ? QString("于 %1:%2 的循环").arg(m_strFile).arg(line) : QString();
        end(QString("%1 单次运行超过 %2 ms，脚本已中断%3（死循环？请用 setTimeout/setInterval 代替等待）")
                .arg(entry).arg(CallLimitMs).arg(loop));
    } else if (result.isError()) {
        end(QString("%1: %2").arg(where(result), result.toString()));
    } else if (!m_pendingEnd.isNull() && m_depth == 0) {
        end(m_pendingEnd);
    }
    return m_engine != nullptr;
}

QString ScriptRuntime::where(const QJSValue &error) const
{
    // an error thrown inside a helper names the helper's line; the script's own line
    // is the first frame of the script in the stack
    if (error.property("fileName").toString() == m_strFile)
        return QString("%1:%2").arg(m_strFile).arg(error.property("lineNumber").toInt());
    const QStringList frames = error.property("stack").toString().split('\n');
    for (const QString &frame : frames) {
        const int at = frame.lastIndexOf(m_strFile + ':');
        if (at >= 0)
            return frame.mid(at);
    }
    return m_strFile;
}

void ScriptRuntime::end(const QString &reason)
{
    if (!m_engine)
        return;
    if (m_depth > 0) {
        // the engine is on the stack: tear it down once the call returns
        if (m_pendingEnd.isNull())
            m_pendingEnd = reason.isNull() ? QString("") : reason;
        return;
    }
    // later: the timer whose timeout brought us here may still be emitting
    for (QTimer *timer : qAsConst(m_timers)) {
        timer->stop();
        timer->deleteLater();
    }
    m_timers.clear();
    m_timerEntries.clear();
    m_fire = QJSValue();
    m_data = QJSValue();
    m_loop = QJSValue();
    if (m_watchdog)
        m_watchdog->setEnabled(false);
    QJSEngine *engine = m_engine;
    m_engine = nullptr;
    delete engine;
    if (!m_bEnding)
        emit finished(reason);
}

qint64 ScriptRuntime::sendBytes(const QByteArray &bytes)
{
    if (!m_tap || bytes.isEmpty())
        return bytes.isEmpty() ? 0 : -1;
    return m_tap->write(bytes);
}

int ScriptRuntime::addTimer(double ms, bool repeat, const QString &entry)
{
    const int id = m_nextTimer++;
    m_timerEntries.insert(id, entry);
    QTimer *timer = new QTimer(this);
    // a repeating 0 ms timer would leave no time for anything else
    const double clamped = qBound(repeat ? 1.0 : 0.0, ms, 2147483647.0);
    timer->setInterval(int(clamped));
    timer->setSingleShot(!repeat);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, [this, id]() { fireTimer(id); });
    m_timers.insert(id, timer);
    timer->start();
    return id;
}

void ScriptRuntime::removeTimer(int id)
{
    m_timerEntries.remove(id);
    if (QTimer *timer = m_timers.take(id))
        timer->deleteLater();
}

void ScriptRuntime::fireTimer(int id)
{
    QTimer *timer = m_timers.value(id);
    if (!timer)
        return;
    const QString entry = m_timerEntries.value(id);
    if (timer->isSingleShot())
        removeTimer(id);
    call(m_fire, {QJSValue(id)}, entry);
}
