#include "ScriptHost.h"
#include "NumberTool.h"
#include "ReplyEscape.h"
#include "ScriptRuntime.h"

#include <QJSEngine>
#include <QTextCodec>

ScriptHost::ScriptHost(ScriptRuntime *runtime)
    : QObject(runtime)
    , m_runtime(runtime)
{
}

double ScriptHost::send(const QByteArray &bytes)
{
    return double(m_runtime->sendBytes(bytes));
}

double ScriptHost::sendText(const QString &text)
{
    return send(encode(text));
}

void ScriptHost::log(const QString &text)
{
    emit m_runtime->logLine(text);
}

void ScriptHost::plot(const QString &name, double value)
{
    emit m_runtime->plotValue(name, value);
}

int ScriptHost::addTimer(double ms, bool repeat, const QString &entry)
{
    return m_runtime->addTimer(ms, repeat, entry);
}

void ScriptHost::removeTimer(int id)
{
    m_runtime->removeTimer(id);
}

QString ScriptHost::toHex(const QByteArray &bytes) const
{
    return NumberTool::byteToHex(bytes).trimmed();
}

QByteArray ScriptHost::fromHex(const QString &text)
{
    QString error;
    const QByteArray bytes = ReplyEscape::fromHex(text, &error);
    if (!error.isEmpty())
        qjsEngine(this)->throwError(QJSValue::TypeError, QString("fromHex: %1").arg(error));
    return bytes;
}

QString ScriptHost::text(const QByteArray &bytes) const
{
    return m_runtime->codec()->toUnicode(bytes);
}

QByteArray ScriptHost::encode(const QString &text) const
{
    return m_runtime->codec()->fromUnicode(text);
}

int ScriptHost::crc16modbus(const QByteArray &bytes) const
{
    // the page's CRC gives -1 for no bytes; the CRC of nothing is its initial value
    return bytes.isEmpty() ? 0xFFFF : NumberTool::getCrcData(bytes);
}

QString ScriptHost::codec() const
{
    return QString::fromLatin1(m_runtime->codec()->name());
}
