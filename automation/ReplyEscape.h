#ifndef REPLYESCAPE_H
#define REPLYESCAPE_H

#include <QByteArray>
#include <QString>

class QTextCodec;

// The two ways a user types bytes into a reply rule. Both are strict, unlike the send
// box's lenient hex reader: a rule that would send something other than what the
// user meant is refused with the place of the mistake instead.
class ReplyEscape
{
public:
    // Text in the given codec (UTF-8 when null) with the escapes \r \n \t \\ and \xNN,
    // where NN is two hexadecimal digits giving one raw byte.
    static QByteArray fromText(const QString &text, QTextCodec *codec, QString *error = nullptr);
    // Pairs of hexadecimal digits; whitespace may separate bytes but not split one.
    static QByteArray fromHex(const QString &text, QString *error = nullptr);
};

#endif // REPLYESCAPE_H
