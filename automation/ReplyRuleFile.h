#ifndef REPLYRULEFILE_H
#define REPLYRULEFILE_H

#include <QByteArray>
#include <QList>
#include <QString>

#include "ReplyRule.h"

// A rule set as a JSON file:
//   {"rules": [{"enabled": true, "match": "text", "pattern": "AT\\r\\n",
//               "reply": "OK\\r\\n", "replyAs": "text", "delayMs": 0, "minIntervalMs": 0}]}
// Only "rules" and, in each rule, "pattern" are required. Reading is strict: an unknown
// field, a wrong type or an unusable rule refuses the whole file with a message naming
// the rule and the field, and the caller keeps the rules it had.
class ReplyRuleFile
{
public:
    static bool parse(const QByteArray &json, QList<ReplyRule> *rules, QString *error);
    static QByteArray serialize(const QList<ReplyRule> &rules);

    static bool load(const QString &path, QList<ReplyRule> *rules, QString *error);
    // written whole or not at all: an interrupted save leaves the old file
    static bool save(const QString &path, const QList<ReplyRule> &rules, QString *error);
};

#endif // REPLYRULEFILE_H
