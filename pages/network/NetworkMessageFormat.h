#ifndef NETWORKMESSAGEFORMAT_H
#define NETWORKMESSAGEFORMAT_H

#include <QByteArray>
#include <QHostAddress>
#include <QString>

// The texts of the network page's receive view and the parsing of its fields, kept
// apart from the widgets so that they can be checked without a window.
//
// All three modes share one receive path and one tag: in server mode the sender is
// the client's name, in client mode " 来自服务端消息 ", in UDP mode
// " UDP from address:port ". Users' log parsers know lines such as
// "[Tcp client  UDP from 10.0.0.9:5000 ] text", so the word "Tcp client" and the
// doubled blanks stay as they are.
class NetworkMessageFormat
{
public:
    // the sender name of data that came from the server in client mode
    static QString serverSenderName();
    // the sender name of a datagram; IPv4 senders on the dual-stack socket show as IPv4
    static QString udpSenderName(const QHostAddress &address, quint16 port);

    // one line of the ASCII view: a trailing NumberTool::m_newLine is dropped (the
    // count still holds it), then the tag and the data in the text codec
    static QString asciiLine(const QString &name, QByteArray data);
    // the HEX view's text: runs on from the last chunk without a break or a tag
    static QString hexText(const QByteArray &data);

    // a port field's number; text that is no port (not a number, out of range)
    // gives 0, with which listen and bind take any free port
    static quint16 portFromText(const QString &text);
};

#endif // NETWORKMESSAGEFORMAT_H
