#include "ReplyRule.h"
#include "ReplyEscape.h"

#include <QRegularExpression>

ReplyRule::ReplyRule(MatchKind match, const QString &pattern, ReplyKind as, const QString &reply, int minIntervalMs,
                     int delayMs)
    : matchKind(match)
    , pattern(pattern)
    , replyKind(as)
    , reply(reply)
    , delayMs(delayMs)
    , minIntervalMs(minIntervalMs)
{
}

QByteArray ReplyRule::patternBytes(QTextCodec *codec, QString *error) const
{
    if (error)
        error->clear();
    switch (matchKind) {
    case MatchText: return ReplyEscape::fromText(pattern, codec, error);
    case MatchHex: return ReplyEscape::fromHex(pattern, error);
    case MatchRegex: break;
    }
    return QByteArray();
}

QByteArray ReplyRule::replyBytes(QTextCodec *codec, QString *error) const
{
    return replyKind == ReplyHex ? ReplyEscape::fromHex(reply, error) : ReplyEscape::fromText(reply, codec, error);
}

QString ReplyRule::problem() const
{
    QString error;
    if (matchKind == MatchRegex) {
        const QRegularExpression re(pattern);
        if (!re.isValid())
            return QString("正则表达式第 %1 个字符：%2").arg(re.patternErrorOffset() + 1).arg(re.errorString());
        if (pattern.isEmpty())
            return QString("匹配内容为空");
    } else {
        if (patternBytes(nullptr, &error).isEmpty())
            return error.isEmpty() ? QString("匹配内容为空") : QString("匹配内容%1").arg(error);
    }
    replyBytes(nullptr, &error);
    if (!error.isEmpty())
        return QString("应答内容%1").arg(error);
    if (delayMs < 0 || minIntervalMs < 0)
        return QString("延时与间隔不能为负数");
    return QString();
}

QString ReplyRule::matchKindKey(MatchKind kind)
{
    switch (kind) {
    case MatchRegex: return "regex";
    case MatchHex: return "hex";
    case MatchText: break;
    }
    return "text";
}

bool ReplyRule::matchKindFromKey(const QString &key, MatchKind *kind)
{
    for (MatchKind k : {MatchText, MatchRegex, MatchHex}) {
        if (matchKindKey(k) == key) {
            *kind = k;
            return true;
        }
    }
    return false;
}

QString ReplyRule::replyKindKey(ReplyKind kind)
{
    return kind == ReplyHex ? "hex" : "text";
}

bool ReplyRule::replyKindFromKey(const QString &key, ReplyKind *kind)
{
    if (key != "hex" && key != "text")
        return false;
    *kind = key == "hex" ? ReplyHex : ReplyText;
    return true;
}

bool ReplyRule::operator==(const ReplyRule &o) const
{
    return enabled == o.enabled && matchKind == o.matchKind && pattern == o.pattern && replyKind == o.replyKind
        && reply == o.reply && delayMs == o.delayMs && minIntervalMs == o.minIntervalMs;
}
