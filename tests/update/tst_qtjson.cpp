#include "LarkTestCore.h"
#include "QtJson.h"

#include <QDate>
#include <QDateTime>
#include <QRandomGenerator>
#include <QtTest>

class TstQtJson : public QObject
{
    Q_OBJECT
private slots:
    void cleanup();
    void parseGivesValueTypeAndSuccess_data();
    void parseGivesValueTypeAndSuccess();
    void parseBuildsNestedMapsAndLists();
    void serializeWritesText_data();
    void serializeWritesText();
    void datesFollowTheDateTimeFormat();
    void roundTripKeepsNestedValues();
    void insertAppendAndCloneCopyDeeply();
    void randomTextNeverCrashesTheParser();
};

void TstQtJson::cleanup()
{
    QtJson::setDateTimeFormat(QString());
    QtJson::setDateFormat(QString());
}

void TstQtJson::parseGivesValueTypeAndSuccess_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<bool>("success");
    QTest::addColumn<QVariant>("value");

    QVariantMap ab{{"a", 1u}, {"b", 2u}};
    QTest::newRow("comma optional") << "{\"a\":1 \"b\":2}" << true << QVariant(ab);
    QTest::newRow("commas repeat") << "{,,\"a\":1,,\"b\":2,}" << true << QVariant(ab);
    QTest::newRow("last duplicate wins") << "{\"a\":5,\"a\":1,\"b\":2}" << true << QVariant(ab);
    QTest::newRow("array cut short") << "[1," << false << QVariant(QVariantList());
    QTest::newRow("object cut short") << "{\"a\":1" << false << QVariant(QVariantMap());
    QTest::newRow("object without colon") << "{\"a\" 1}" << false << QVariant(QVariantMap());
    QTest::newRow("object bad value") << "{\"a\":x}" << false << QVariant(QVariantMap());
    QTest::newRow("array bad value") << "[1, x]" << false << QVariant(QVariantList());
    QTest::newRow("nul") << "nul" << false << QVariant();
    QTest::newRow("null") << "null" << true << QVariant();
    QTest::newRow("null string") << QString() << true << QVariant();
    QTest::newRow("empty") << "" << false << QVariant();
    QTest::newRow("true") << " \t\r\ntrue" << true << QVariant(true);
    QTest::newRow("false") << "false" << true << QVariant(false);
    QTest::newRow("fals") << "fals" << false << QVariant();
    QTest::newRow("negative int") << "-5" << true << QVariant(-5);
    QTest::newRow("uint") << "5" << true << QVariant(5u);
    QTest::newRow("double") << "5.0" << true << QVariant(5.0);
    QTest::newRow("negative long long") << "-5000000000" << true << QVariant(Q_INT64_C(-5000000000));
    QTest::newRow("unsigned long long") << "5000000000" << true << QVariant(Q_UINT64_C(5000000000));
    QTest::newRow("exponent stays text") << "1e5" << true << QVariant(QString("1e5"));
    QTest::newRow("too big stays text") << "99999999999999999999" << true
                                        << QVariant(QString("99999999999999999999"));
    QTest::newRow("rest not looked at") << "1 ]]] garbage" << true << QVariant(1u);
    QTest::newRow("escapes") << "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\"" << true << QVariant(QString("\"\\/\b\f\n\r\t"));
    QTest::newRow("unicode escape") << "\"\\u4e91\\u96c0\"" << true << QVariant(QString("云雀"));
    QTest::newRow("bad hex gives 0") << "\"\\uzzzz\"" << true << QVariant(QString(QChar(0)));
    QTest::newRow("short unicode escape") << "\"\\u12\"" << false << QVariant();
    QTest::newRow("unknown escape dropped") << "\"a\\qb\"" << true << QVariant(QString("ab"));
    QTest::newRow("unterminated string") << "\"abc" << false << QVariant();
    QTest::newRow("lone brace") << "}" << false << QVariant();
}

void TstQtJson::parseGivesValueTypeAndSuccess()
{
    QFETCH(QString, json);
    QFETCH(bool, success);
    QFETCH(QVariant, value);

    bool ok = !success;
    const QVariant got = QtJson::parse(json, ok);
    QCOMPARE(ok, success);
    QCOMPARE(got.userType(), value.userType());
    QCOMPARE(got, value);
    QCOMPARE(QtJson::parse(json), value);
}

void TstQtJson::parseBuildsNestedMapsAndLists()
{
    bool ok = false;
    const QVariant v = QtJson::parse("{ \"verNum\" : \"1.0.1.6\", \"list\" : [1, -2, 3.5, [true, null], {}],"
                                     " \"obj\" : {\"k\" : \"v\"} }",
                                     ok);
    QVERIFY(ok);
    const QVariantMap m = v.toMap();
    QCOMPARE(m.keys(), QStringList({"list", "obj", "verNum"}));
    QCOMPARE(m["verNum"].toString(), QString("1.0.1.6"));
    const QVariantList list = m["list"].toList();
    QCOMPARE(list, QVariantList({1u, -2, 3.5, QVariantList({true, QVariant()}), QVariantMap()}));
    QCOMPARE(m["obj"].toMap()["k"].toString(), QString("v"));
}

void TstQtJson::serializeWritesText_data()
{
    QTest::addColumn<QVariant>("data");
    QTest::addColumn<bool>("success");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("invalid") << QVariant() << true << QByteArray("null");
    QTest::newRow("3.0") << QVariant(3.0) << true << QByteArray("3.0");
    QTest::newRow("1000000.0") << QVariant(1000000.0) << true << QByteArray("1e+06");
    QTest::newRow("six digits") << QVariant(3.14159265) << true << QByteArray("3.14159");
    QTest::newRow("empty map") << QVariant(QVariantMap()) << true << QByteArray("{  }");
    QTest::newRow("empty list") << QVariant(QVariantList()) << true << QByteArray("[  ]");
    QTest::newRow("list") << QVariant(QVariantList({1, "a", true, QVariant()})) << true
                          << QByteArray("[ 1, \"a\", true, null ]");
    QTest::newRow("string list") << QVariant(QStringList({"x", "y"})) << true << QByteArray("[ \"x\", \"y\" ]");
    QTest::newRow("map in key order") << QVariant(QVariantMap({{"b", 2}, {"a", false}})) << true
                                      << QByteArray("{ \"a\" : false, \"b\" : 2 }");
    QTest::newRow("hash") << QVariant(QVariantHash({{"k", "v"}})) << true << QByteArray("{ \"k\" : \"v\" }");
    QTest::newRow("escapes") << QVariant(QString("\\\"\b\f\n\r\t")) << true
                             << QByteArray("\"\\\\\\\"\\b\\f\\n\\r\\t\"");
    QTest::newRow("utf8 and control pass") << QVariant(QString("云\x01")) << true
                                           << QByteArray("\"\xe4\xba\x91\x01\"");
    QTest::newRow("byte array") << QVariant(QByteArray("ab")) << true << QByteArray("\"ab\"");
    QTest::newRow("negative long long") << QVariant(Q_INT64_C(-5000000000)) << true << QByteArray("-5000000000");
    QTest::newRow("max ulonglong") << QVariant(Q_UINT64_C(18446744073709551615)) << true
                                   << QByteArray("18446744073709551615");
    QTest::newRow("uint") << QVariant(7u) << true << QByteArray("7");
    QTest::newRow("unconvertible") << QVariant(QRect(1, 2, 3, 4)) << false << QByteArray();
    QTest::newRow("unconvertible inside list") << QVariant(QVariantList({1, QRect()})) << false << QByteArray();
    QTest::newRow("unconvertible inside map") << QVariant(QVariantMap({{"r", QRect()}})) << false << QByteArray();
}

void TstQtJson::serializeWritesText()
{
    QFETCH(QVariant, data);
    QFETCH(bool, success);
    QFETCH(QByteArray, text);

    bool ok = !success;
    const QByteArray got = QtJson::serialize(data, ok);
    QCOMPARE(ok, success);
    QCOMPARE(got, text);
    QCOMPARE(got.isNull(), !success);
    const QString str = QtJson::serializeStr(data, ok);
    QCOMPARE(ok, success);
    QCOMPARE(str, QString::fromUtf8(text));
    QCOMPARE(str.isNull(), !success);
}

void TstQtJson::datesFollowTheDateTimeFormat()
{
    const QDate d(2024, 3, 9);
    const QDateTime dt(d, QTime(8, 7, 6));
    QCOMPARE(QtJson::serialize(dt), ("\"" + dt.toString(Qt::TextDate) + "\"").toUtf8());
    QCOMPARE(QtJson::serialize(d), ("\"" + d.toString(Qt::TextDate) + "\"").toUtf8());

    // a date format alone does nothing: the date-time format decides
    QtJson::setDateFormat("yyyy/MM/dd");
    QCOMPARE(QtJson::getDateFormat(), QString("yyyy/MM/dd"));
    QCOMPARE(QtJson::serialize(d), ("\"" + d.toString(Qt::TextDate) + "\"").toUtf8());

    QtJson::setDateTimeFormat("yyyy-MM-dd hh:mm:ss");
    QCOMPARE(QtJson::getDateTimeFormat(), QString("yyyy-MM-dd hh:mm:ss"));
    QCOMPARE(QtJson::serialize(dt), QByteArray("\"2024-03-09 08:07:06\""));
    QCOMPARE(QtJson::serialize(d), QByteArray("\"2024/03/09\""));
}

void TstQtJson::roundTripKeepsNestedValues()
{
    const QVariantMap inner{{"name", "云雀 \"lark\"\n"}, {"neg", -3}, {"flag", false}};
    const QVariantList list{1u, 2.5, inner, QVariantList{QVariantList{}, "x"}, QVariant()};
    const QVariantMap outer{{"list", list}, {"map", inner}, {"empty", QVariantMap()}};

    bool ok = false;
    const QString text = QtJson::serializeStr(outer, ok);
    QVERIFY(ok);
    const QVariant back = QtJson::parse(text, ok);
    QVERIFY(ok);
    QCOMPARE(back, QVariant(outer));
    QCOMPARE(QtJson::serializeStr(back), text);
}

void TstQtJson::insertAppendAndCloneCopyDeeply()
{
    QVariant v(42);
    QtJson::insert(v, "a", QVariantList{1, 2});
    QCOMPARE(v, QVariant(QVariantMap{{"a", QVariantList{1, 2}}}));

    QVariant l("not a list");
    QtJson::append(l, 1);
    QtJson::append(l, "two");
    QCOMPARE(l, QVariant(QVariantList{1, "two"}));

    const QVariantHash hash{{"h", QStringList{"s"}}, {"e", QVariantMap()}};
    const QVariant copy = QtJson::clone(hash);
    QCOMPARE(copy.type(), QVariant::Map);
    QCOMPARE(copy.toMap()["h"].type(), QVariant::List);
    QCOMPARE(copy.toMap()["h"], QVariant(QVariantList{"s"}));
    QCOMPARE(copy.toMap()["e"], QVariant(QVariantMap()));
    QCOMPARE(QtJson::clone(7), QVariant(7));
}

void TstQtJson::randomTextNeverCrashesTheParser()
{
    QRandomGenerator rng(20240301);
    static const char alphabet[] = "{}[]:,\"\\ u0123456789abcdef-+.eEtrunlfas \t\n";
    for (int i = 0; i < 20000; ++i) {
        QString text;
        const int len = int(rng.bounded(24));
        for (int k = 0; k < len; ++k)
            text += rng.bounded(8) ? QChar(alphabet[rng.bounded(int(sizeof alphabet - 1))])
                                   : QChar(ushort(rng.bounded(0x10000)));
        bool ok = false;
        const QVariant v = QtJson::parse(text, ok);
        if (ok)
            QtJson::serialize(v);
    }
}

LARK_TEST_GUILESS_MAIN(TstQtJson)
#include "tst_qtjson.moc"
