#ifndef QTJSON_H
#define QTJSON_H

#include <QByteArray>
#include <QString>
#include <QVariant>

// JSON text to nested QVariants and back: an object becomes a QVariantMap, an array a
// QVariantList. Lenient on purpose: commas between members are optional, text after
// the first complete value is ignored, and the only error report is the success flag.
namespace QtJson {

enum JsonToken {
    JsonTokenNone = 0,
    JsonTokenCurlyOpen = 1,
    JsonTokenCurlyClose = 2,
    JsonTokenSquaredOpen = 3,
    JsonTokenSquaredClose = 4,
    JsonTokenColon = 5,
    JsonTokenComma = 6,
    JsonTokenString = 7,
    JsonTokenNumber = 8,
    JsonTokenTrue = 9,
    JsonTokenFalse = 10,
    JsonTokenNull = 11
};

QVariant parse(const QString &json);
QVariant parse(const QString &json, bool &success);

QByteArray serialize(const QVariant &data);
QByteArray serialize(const QVariant &data, bool &success);

QString serializeStr(const QVariant &data);
QString serializeStr(const QVariant &data, bool &success);

void setDateTimeFormat(const QString &format);
void setDateFormat(const QString &format);
QString getDateTimeFormat();
QString getDateFormat();

void append(QVariant &v, const QVariant &value);
void insert(QVariant &v, const QString &key, const QVariant &value);
QVariant clone(const QVariant &data);

} // namespace QtJson

#endif // QTJSON_H
