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

QString NetworkMessageFormat::viewPlainText(const QString &text)
{
    QString out;
    out.reserve(text.size());
    const QChar *src = text.constData();
    const int n = text.size();
    for (int i = 0; i < n; ++i) {
        const ushort c = src[i].unicode();
        switch (c) {
        case '\r':
            if (i + 1 < n && src[i + 1].unicode() == '\n')
                ++i;
            out.append(QChar('\n'));
            break;
        case 0x2028: // line separator
        case 0x2029: // paragraph separator
        case 0xFDD0: // frame marks, which the text cursor also takes as breaks
        case 0xFDD1:
            out.append(QChar('\n'));
            break;
        case 0x00A0:
            out.append(QChar(' '));
            break;
        default:
            out.append(src[i]);
            break;
        }
    }
    return out;
}

int NetworkMessageFormat::tailStart(const QString &text, int maxChars)
{
    const int size = text.size();
    if (maxChars <= 0)
        return size;
    if (size <= maxChars)
        return 0;
    const int start = size - maxChars;
    if (text.at(start - 1) == QChar('\n'))
        return start;
    const int slack = qMax(1, maxChars / 4);
    const int lineEnd = text.indexOf(QChar('\n'), start);
    if (lineEnd >= 0 && lineEnd - start < slack)
        return lineEnd + 1;
    // from the character before the cut, so that a cut just after a blank stays
    const int blank = text.indexOf(QChar(' '), start - 1);
    if (blank >= 0 && blank - start < 16)
        return blank + 1;
    return start;
}

quint16 NetworkMessageFormat::portFromText(const QString &text)
{
    bool ok = false;
    const uint port = text.trimmed().toUInt(&ok, 10);
    if (!ok || port > 65535)
        return 0;
    return quint16(port);
}
