#include "NetworkMessageFormat.h"
#include "MyApp.h"
#include "NumberTool.h"


QString NetworkMessageFormat::serverSenderName()
{
    return " 来自服务端消息 ";
}

QString NetworkMessageFormat::udpSenderName(const QHostAddress &address, quint16 port)
{
    QString host = address.toString();
    host.remove("::ffff:");
    return QString(" UDP from %1:%2 ").arg(host).arg(port);
}

QString NetworkMessageFormat::asciiLine(const QString &name, QByteArray data)
{
    // m_newLine is empty until the serial page has been built; an empty suffix would
    // "match" every chunk, so only a real line end is taken off
    if (!NumberTool::m_newLine.isEmpty() && data.endsWith(NumberTool::m_newLine))
        data.chop(NumberTool::m_newLine.size());
    return QString("[Tcp client %1] ").arg(name) + MyApp::toUnicode(data);
}

QString NetworkMessageFormat::hexText(const QByteArray &data)
{
    return NumberTool::byteToHex(data);
}

quint16 NetworkMessageFormat::portFromText(const QString &text)
{
    bool ok = false;
    const uint port = text.trimmed().toUInt(&ok, 10);
    if (!ok || port > 65535)
        return 0;
    return quint16(port);
}
