#ifndef REPLYRULE_H
#define REPLYRULE_H

#include <QByteArray>
#include <QString>

class QTextCodec;

// One row of the reply table: what to look for in received data and what to answer.
// Text patterns and replies take the escapes of ReplyEscape::fromText; hex ones are
// byte pairs; a regular expression is matched against the received text decoded in
// the page's codec.
class ReplyRule
{
public:
    enum MatchKind { MatchText, MatchRegex, MatchHex };
    enum ReplyKind { ReplyText, ReplyHex };

    ReplyRule() = default;
    ReplyRule(MatchKind match, const QString &pattern, ReplyKind as = ReplyText, const QString &reply = QString(),
              int minIntervalMs = 0, int delayMs = 0);

    bool enabled = true;
    MatchKind matchKind = MatchText;
    QString pattern;
    ReplyKind replyKind = ReplyText;
    QString reply;
    int delayMs = 0;       // the reply leaves this long after the match
    int minIntervalMs = 0; // matches closer than this to the last firing are ignored

    // the bytes a literal pattern stands for (empty for a regular expression)
    QByteArray patternBytes(QTextCodec *codec, QString *error = nullptr) const;
    QByteArray replyBytes(QTextCodec *codec, QString *error = nullptr) const;
    // why the rule cannot be used, or an empty string
    QString problem() const;

    // the names used in rule files and shown in the table
    static QString matchKindKey(MatchKind kind);
    static bool matchKindFromKey(const QString &key, MatchKind *kind);
    static QString replyKindKey(ReplyKind kind);
    static bool replyKindFromKey(const QString &key, ReplyKind *kind);

    bool operator==(const ReplyRule &o) const;
};

#endif // REPLYRULE_H
