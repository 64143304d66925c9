#include "QtJson.h"

#include <QDate>
#include <QDateTime>
#include <QStringList>
#include <QVariantHash>
#include <QVariantList>
#include <QVariantMap>

namespace QtJson {

// output formats of dates; empty means Qt's text format
static QString dateTimeFormat;
static QString dateFormat;

static QVariant parseValue(const QString &json, int &index, bool &success);

static void eatWhitespace(const QString &json, int &index)
{
    for (; index < json.size(); ++index) {
        const QChar c = json.at(index);
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\n')
            && c != QLatin1Char('\r'))
            break;
    }
}

static bool matchesAt(const QString &json, int index, const char *word)
{
    for (int i = 0; word[i]; ++i) {
        if (index + i >= json.size() || json.at(index + i) != QLatin1Char(word[i]))
            return false;
    }
    return true;
}

static int nextToken(const QString &json, int &index)
{
    eatWhitespace(json, index);
    if (index >= json.size())
        return JsonTokenNone;

    const QChar c = json.at(index);
    switch (c.unicode()) {
    case '{': ++index; return JsonTokenCurlyOpen;
    case '}': ++index; return JsonTokenCurlyClose;
    case '[': ++index; return JsonTokenSquaredOpen;
    case ']': ++index; return JsonTokenSquaredClose;
    case ':': ++index; return JsonTokenColon;
    case ',': ++index; return JsonTokenComma;
    case '"': ++index; return JsonTokenString;
    case '-': case '0': case '1': case '2': case '3': case '4':
    case '5': case '6': case '7': case '8': case '9':
        ++index;
        return JsonTokenNumber;
    default:
        break;
    }

    const int remaining = json.size() - index;
    if (remaining >= 4 && matchesAt(json, index, "true")) {
        index += 4;
        return JsonTokenTrue;
    }
    if (remaining >= 5 && matchesAt(json, index, "false")) {
        index += 5;
        return JsonTokenFalse;
    }
    if (remaining >= 4 && matchesAt(json, index, "null")) {
        index += 4;
        return JsonTokenNull;
    }
    return JsonTokenNone;
}

static int lookAhead(const QString &json, int index)
{
    return nextToken(json, index);
}

static QVariant parseString(const QString &json, int &index, bool &success)
{
    eatWhitespace(json, index);
    if (index >= json.size()) {
        success = false;
        return QVariant();
    }
    ++index; // the opening quote, whatever it is

    QString s;
    bool complete = false;
    while (index < json.size()) {
        QChar c = json.at(index++);
        if (c == QLatin1Char('"')) {
            complete = true;
            break;
        }
        if (c != QLatin1Char('\\')) {
            s.append(c);
            continue;
        }
        if (index >= json.size())
            break;
        c = json.at(index++);
        switch (c.unicode()) {
        case '"': s.append(QLatin1Char('"')); break;
        case '\\': s.append(QLatin1Char('\\')); break;
        case '/': s.append(QLatin1Char('/')); break;
        case 'b': s.append(QLatin1Char('\b')); break;
        case 'f': s.append(QLatin1Char('\f')); break;
        case 'n': s.append(QLatin1Char('\n')); break;
        case 'r': s.append(QLatin1Char('\r')); break;
        case 't': s.append(QLatin1Char('\t')); break;
        case 'u':
            if (json.size() - index < 4) {
                success = false;
                return QVariant();
            }
            // bad digits give 0, as toInt does
            s.append(QChar(json.mid(index, 4).toInt(nullptr, 16)));
            index += 4;
            break;
        default:
            break; // an unknown escape is dropped whole
        }
    }

    if (!complete) {
        success = false;
        return QVariant();
    }
    return QVariant(s);
}

static QVariant parseNumber(const QString &json, int &index)
{
    eatWhitespace(json, index);
    static const QString numberChars = QStringLiteral("0123456789+-.eE");
    int end = index;
    while (end < json.size() && numberChars.contains(json.at(end)))
        ++end;
    const QString run = json.mid(index, end - index);
    index = end;

    bool ok = false;
    if (run.contains(QLatin1Char('.'))) {
        const double d = run.toDouble(&ok);
        if (ok)
            return QVariant(d);
    } else if (run.startsWith(QLatin1Char('-'))) {
        const int i = run.toInt(&ok);
        if (ok)
            return QVariant(i);
        const qlonglong ll = run.toLongLong(&ok);
        if (ok)
            return QVariant(ll);
    } else {
        const uint u = run.toUInt(&ok);
        if (ok)
            return QVariant(u);
        const qulonglong ull = run.toULongLong(&ok);
        if (ok)
            return QVariant(ull);
    }
    // "1e5" and out-of-range integers come back as their text
    return QVariant(run);
}

static QVariant parseObject(const QString &json, int &index, bool &success)
{
    QVariantMap map;
    nextToken(json, index); // {
    for (;;) {
        const int token = lookAhead(json, index);
        if (token == JsonTokenNone) {
            success = false;
            return QVariantMap();
        }
        if (token == JsonTokenComma) {
            nextToken(json, index);
            continue;
        }
        if (token == JsonTokenCurlyClose) {
            nextToken(json, index);
            return map;
        }
        const QString name = parseString(json, index, success).toString();
        if (!success)
            return QVariantMap();
        if (nextToken(json, index) != JsonTokenColon) {
            success = false;
            return QVariantMap();
        }
        const QVariant value = parseValue(json, index, success);
        if (!success)
            return QVariantMap();
        map[name] = value;
    }
}

static QVariant parseArray(const QString &json, int &index, bool &success)
{
    QVariantList list;
    nextToken(json, index); // [
    for (;;) {
        const int token = lookAhead(json, index);
        if (token == JsonTokenNone) {
            success = false;
            return QVariantList();
        }
        if (token == JsonTokenComma) {
            nextToken(json, index);
            continue;
        }
        if (token == JsonTokenSquaredClose) {
            nextToken(json, index);
            return list;
        }
        const QVariant value = parseValue(json, index, success);
        if (!success)
            return QVariantList();
        list.append(value);
    }
}

static QVariant parseValue(const QString &json, int &index, bool &success)
{
    switch (lookAhead(json, index)) {
    case JsonTokenString:
        return parseString(json, index, success);
    case JsonTokenNumber:
        return parseNumber(json, index);
    case JsonTokenCurlyOpen:
        return parseObject(json, index, success);
    case JsonTokenSquaredOpen:
        return parseArray(json, index, success);
    case JsonTokenTrue:
        nextToken(json, index);
        return QVariant(true);
    case JsonTokenFalse:
        nextToken(json, index);
        return QVariant(false);
    case JsonTokenNull:
        nextToken(json, index);
        return QVariant();
    default:
        success = false;
        return QVariant();
    }
}

QVariant parse(const QString &json)
{
    bool success = true;
    return parse(json, success);
}

QVariant parse(const QString &json, bool &success)
{
    success = true;
    if (json.isNull())
        return QVariant();
    int index = 0;
    return parseValue(json, index, success);
}

static QString sanitizeString(QString str)
{
    str.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    str.replace(QLatin1String("\""), QLatin1String("\\\""));
    str.replace(QLatin1String("\b"), QLatin1String("\\b"));
    str.replace(QLatin1String("\f"), QLatin1String("\\f"));
    str.replace(QLatin1String("\n"), QLatin1String("\\n"));
    str.replace(QLatin1String("\r"), QLatin1String("\\r"));
    str.replace(QLatin1String("\t"), QLatin1String("\\t"));
    return QString(QLatin1String("\"%1\"")).arg(str);
}

static QByteArray join(const QList<QByteArray> &parts, const QByteArray &sep)
{
    QByteArray out;
    for (int i = 0; i < parts.size(); ++i) {
        if (i)
            out += sep;
        out += parts.at(i);
    }
    return out;
}

QByteArray serialize(const QVariant &data)
{
    bool success = true;
    return serialize(data, success);
}

QByteArray serialize(const QVariant &data, bool &success)
{
    QByteArray str;
    success = true;

    if (!data.isValid()) {
        str = "null";
    } else if (data.type() == QVariant::List || data.type() == QVariant::StringList) {
        QList<QByteArray> values;
        const QVariantList list = data.toList();
        for (const QVariant &v : list) {
            const QByteArray value = serialize(v);
            if (value.isNull()) {
                success = false;
                break;
            }
            values << value;
        }
        str = "[ " + join(values, ", ") + " ]";
    } else if (data.type() == QVariant::Hash) {
        QList<QByteArray> pairs;
        const QVariantHash hash = data.toHash();
        for (auto it = hash.constBegin(); it != hash.constEnd(); ++it) {
            const QByteArray value = serialize(it.value());
            if (value.isNull()) {
                success = false;
                break;
            }
            pairs << sanitizeString(it.key()).toUtf8() + " : " + value;
        }
        str = "{ " + join(pairs, ", ") + " }";
    } else if (data.type() == QVariant::Map) {
        QList<QByteArray> pairs;
        const QVariantMap map = data.toMap();
        for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
            const QByteArray value = serialize(it.value());
            if (value.isNull()) {
                success = false;
                break;
            }
            pairs << sanitizeString(it.key()).toUtf8() + " : " + value;
        }
        str = "{ " + join(pairs, ", ") + " }";
    } else if (data.type() == QVariant::String || data.type() == QVariant::ByteArray) {
        str = sanitizeString(data.toString()).toUtf8();
    } else if (data.type() == QVariant::Double) {
        str = QByteArray::number(data.toDouble(), 'g', 6);
        if (!str.contains('.') && !str.contains('e'))
            str += ".0";
    } else if (data.type() == QVariant::Bool) {
        str = data.toBool() ? "true" : "false";
    } else if (data.type() == QVariant::ULongLong) {
        str = QByteArray::number(data.value<qulonglong>());
    } else if (data.canConvert<qlonglong>()) {
        str = QByteArray::number(data.value<qlonglong>());
    } else if (data.canConvert<long>()) {
        str = QByteArray::number(qlonglong(data.value<long>()));
    } else if (data.type() == QVariant::DateTime) {
        const QDateTime dt = data.toDateTime();
        str = sanitizeString(dateTimeFormat.isEmpty() ? dt.toString(Qt::TextDate)
                                                      : dt.toString(dateTimeFormat)).toUtf8();
    } else if (data.type() == QVariant::Date) {
        // the date-time format decides whether any format applies, for dates too
        const QDate d = data.toDate();
        str = sanitizeString(dateTimeFormat.isEmpty() ? d.toString(Qt::TextDate)
                                                      : d.toString(dateFormat)).toUtf8();
    } else if (data.canConvert<QString>()) {
        str = sanitizeString(data.toString()).toUtf8();
    } else {
        success = false;
    }

    return success ? str : QByteArray();
}

QString serializeStr(const QVariant &data)
{
    bool success = true;
    return serializeStr(data, success);
}

QString serializeStr(const QVariant &data, bool &success)
{
    const QByteArray text = serialize(data, success);
    return success ? QString::fromUtf8(text) : QString();
}

void setDateTimeFormat(const QString &format)
{
    dateTimeFormat = format;
}

void setDateFormat(const QString &format)
{
    dateFormat = format;
}

QString getDateTimeFormat()
{
    return dateTimeFormat;
}

QString getDateFormat()
{
    return dateFormat;
}

void append(QVariant &v, const QVariant &value)
{
    if (!v.canConvert<QVariantList>())
        v = QVariantList();
    QVariantList list = v.toList();
    list.append(value);
    v = list;
}

void insert(QVariant &v, const QString &key, const QVariant &value)
{
    if (!v.canConvert<QVariantMap>())
        v = QVariantMap();
    QVariantMap map = v.toMap();
    map.insert(key, clone(value));
    v = map;
}

QVariant clone(const QVariant &data)
{
    if (data.type() == QVariant::Map || data.type() == QVariant::Hash) {
        QVariant v = QVariantMap(); // an empty one stays a map
        if (data.type() == QVariant::Map) {
            const QVariantMap map = data.toMap();
            for (auto it = map.constBegin(); it != map.constEnd(); ++it)
                insert(v, it.key(), it.value());
        } else {
            const QVariantHash hash = data.toHash();
            for (auto it = hash.constBegin(); it != hash.constEnd(); ++it)
                insert(v, it.key(), it.value());
        }
        return v;
    }
    if (data.type() == QVariant::List || data.type() == QVariant::StringList) {
        QVariant v = QVariantList();
        const QVariantList list = data.toList();
        for (const QVariant &item : list)
            append(v, clone(item));
        return v;
    }
    return data;
}

} // namespace QtJson
