#include "ReplyRuleFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

static bool setError(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

// reads one rule; false with a message that names the field
static bool readRule(const QJsonObject &o, ReplyRule *rule, QString *why)
{
    static const QStringList known = {"enabled", "match", "pattern", "reply", "replyAs", "delayMs", "minIntervalMs"};
    for (auto it = o.begin(); it != o.end(); ++it) {
        if (!known.contains(it.key())) {
            *why = QString("未知字段 \"%1\"（可用字段：%2）").arg(it.key(), known.join("、"));
            return false;
        }
    }
    auto wrongType = [why](const char *key, const char *type) {
        *why = QString("字段 \"%1\" 应为%2").arg(key, type);
        return false;
    };
    if (!o.contains("pattern"))
        return (*why = QString("缺少字段 \"pattern\""), false);
    if (!o.value("pattern").isString())
        return wrongType("pattern", "字符串");
    rule->pattern = o.value("pattern").toString();
    if (o.contains("enabled")) {
        if (!o.value("enabled").isBool())
            return wrongType("enabled", " true 或 false");
        rule->enabled = o.value("enabled").toBool();
    }
    if (o.contains("match")) {
        if (!ReplyRule::matchKindFromKey(o.value("match").toString(), &rule->matchKind))
            return wrongType("match", " \"text\"、\"regex\" 或 \"hex\"");
    }
    if (o.contains("reply")) {
        if (!o.value("reply").isString())
            return wrongType("reply", "字符串");
        rule->reply = o.value("reply").toString();
    }
    if (o.contains("replyAs")) {
        if (!ReplyRule::replyKindFromKey(o.value("replyAs").toString(), &rule->replyKind))
            return wrongType("replyAs", " \"text\" 或 \"hex\"");
    }
    for (auto field : {std::make_pair("delayMs", &rule->delayMs), std::make_pair("minIntervalMs", &rule->minIntervalMs)}) {
        if (!o.contains(field.first))
            continue;
        const QJsonValue v = o.value(field.first);
        const double d = v.toDouble(-1);
        // a day at most: larger values are typing mistakes, not intervals
        if (!v.isDouble() || d < 0 || d > 86400000 || d != double(int(d)))
            return wrongType(field.first, " 0 到 86400000 之间的整数（毫秒）");
        *field.second = int(d);
    }
    const QString problem = rule->problem();
    if (!problem.isEmpty())
        return (*why = problem, false);
    return true;
}

bool ReplyRuleFile::parse(const QByteArray &json, QList<ReplyRule> *rules, QString *error)
{
    QJsonParseError pe;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &pe);
    if (pe.error != QJsonParseError::NoError) {
        // the offset as a line and column, which is what an editor shows
        const QByteArray head = json.left(pe.offset);
        const int line = head.count('\n') + 1;
        const int column = pe.offset - (head.lastIndexOf('\n') + 1) + 1;
        return setError(error, QString("不是有效的 JSON（第 %1 行第 %2 列）：%3").arg(line).arg(column).arg(pe.errorString()));
    }
    if (!doc.isObject())
        return setError(error, "文件应为一个 JSON 对象，含数组 \"rules\"");
    const QJsonObject top = doc.object();
    for (auto it = top.begin(); it != top.end(); ++it) {
        if (it.key() != "rules")
            return setError(error, QString("未知字段 \"%1\"（顶层只有 \"rules\"）").arg(it.key()));
    }
    if (!top.value("rules").isArray())
        return setError(error, "缺少数组 \"rules\"");
    QList<ReplyRule> out;
    const QJsonArray array = top.value("rules").toArray();
    for (int i = 0; i < array.size(); ++i) {
        QString why;
        ReplyRule rule;
        if (!array.at(i).isObject())
            why = "应为一个 JSON 对象";
        else
            readRule(array.at(i).toObject(), &rule, &why);
        if (!why.isEmpty())
            return setError(error, QString("第 %1 条规则：%2").arg(i + 1).arg(why));
        out << rule;
    }
    *rules = out;
    return true;
}

QByteArray ReplyRuleFile::serialize(const QList<ReplyRule> &rules)
{
    QJsonArray array;
    for (const ReplyRule &r : rules) {
        QJsonObject o;
        o["enabled"] = r.enabled;
        o["match"] = ReplyRule::matchKindKey(r.matchKind);
        o["pattern"] = r.pattern;
        o["reply"] = r.reply;
        o["replyAs"] = ReplyRule::replyKindKey(r.replyKind);
        o["delayMs"] = r.delayMs;
        o["minIntervalMs"] = r.minIntervalMs;
        array.append(o);
    }
    return QJsonDocument(QJsonObject{{"rules", array}}).toJson(QJsonDocument::Indented);
}

bool ReplyRuleFile::load(const QString &path, QList<ReplyRule> *rules, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return setError(error, QString("无法打开 %1：%2").arg(path, file.errorString()));
    // rule files are small; a huge file is the wrong file
    if (file.size() > 16 * 1024 * 1024)
        return setError(error, QString("%1 太大，不是规则文件").arg(path));
    return parse(file.readAll(), rules, error);
}

bool ReplyRuleFile::save(const QString &path, const QList<ReplyRule> &rules, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return setError(error, QString("无法写入 %1：%2").arg(path, file.errorString()));
    const QByteArray data = serialize(rules);
    if (file.write(data) != data.size() || !file.commit())
        return setError(error, QString("无法写入 %1：%2").arg(path, file.errorString()));
    return true;
}
