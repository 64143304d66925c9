#include "LarkTestCore.h"
#include "QtJson.h"

#include <QtTest>

class TstQtJson : public QObject
{
    Q_OBJECT
private slots:
    void parseGivesValueTypeAndSuccess_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<bool>("success");
        QTest::addColumn<QVariant>("value");

        const QVariantMap inner{{"name", "云雀 \"lark\"\n"}, {"neg", -3}, {"flag", false}};
        const QVariantMap nested{{"list", QVariantList{1u, 2.5, inner, QVariantList{QVariantList{}, "x"}, QVariant()}},
                                 {"map", inner}, {"empty", QVariantMap()}};
        QTest::newRow("nested, as serialize writes them") << QtJson::serializeStr(nested) << true << QVariant(nested);
        QTest::newRow("commas optional, repeat; last duplicate wins")
            << "{,,\"a\":5 \"a\":1,,\"b\":2,}" << true << QVariant(QVariantMap{{"a", 1u}, {"b", 2u}});
        QTest::newRow("array cut short") << "[1," << false << QVariant(QVariantList());
        QTest::newRow("array bad value") << "[1, x]" << false << QVariant(QVariantList());
        QTest::newRow("object cut short") << "{\"a\":1" << false << QVariant(QVariantMap());
        QTest::newRow("object without colon") << "{\"a\" 1}" << false << QVariant(QVariantMap());
        QTest::newRow("object bad value") << "{\"a\":x}" << false << QVariant(QVariantMap());
        QTest::newRow("nul") << "nul" << false << QVariant();
        QTest::newRow("null") << "null" << true << QVariant();
        QTest::newRow("null string") << QString() << true << QVariant();
        QTest::newRow("empty") << "" << false << QVariant();
        QTest::newRow("true") << " \t\r\ntrue" << true << QVariant(true);
        QTest::newRow("negative int") << "-5" << true << QVariant(-5);
        QTest::newRow("uint") << "5" << true << QVariant(5u);
        QTest::newRow("double") << "5.0" << true << QVariant(5.0);
        QTest::newRow("negative long long") << "-5000000000" << true << QVariant(Q_INT64_C(-5000000000));
        QTest::newRow("unsigned long long") << "5000000000" << true << QVariant(Q_UINT64_C(5000000000));
        QTest::newRow("exponent stays text") << "1e5" << true << QVariant(QString("1e5"));
        QTest::newRow("too big stays text") << "99999999999999999999" << true
                                            << QVariant(QString("99999999999999999999"));
        QTest::newRow("rest not looked at") << "1 ]]] garbage" << true << QVariant(1u);
        QTest::newRow("escapes, unknown dropped") << "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\q\"" << true
                                                  << QVariant(QString("\"\\/\b\f\n\r\t"));
        QTest::newRow("unicode, bad hex gives 0") << "\"\\u4e91\\uzzzz\"" << true << QVariant(QString("云") + QChar(0));
        QTest::newRow("short unicode escape") << "\"\\u12\"" << false << QVariant();
        QTest::newRow("unterminated string") << "\"abc" << false << QVariant();
        QTest::newRow("lone brace") << "}" << false << QVariant();
    }

    void parseGivesValueTypeAndSuccess()
    {
        QFETCH(QString, json);
        QFETCH(bool, success);
        QFETCH(QVariant, value);

        bool ok = !success;
        const QVariant got = QtJson::parse(json, ok);
        QCOMPARE(ok, success);
        QCOMPARE(got.userType(), value.userType());
        QCOMPARE(got, value);
    }

    void serializeWritesText_data()
    {
        QTest::addColumn<QVariant>("data");
        QTest::addColumn<QByteArray>("text"); // null: fails

        QTest::newRow("invalid") << QVariant() << QByteArray("null");
        QTest::newRow("3.0") << QVariant(3.0) << QByteArray("3.0");
        QTest::newRow("1000000.0") << QVariant(1000000.0) << QByteArray("1e+06");
        QTest::newRow("six digits") << QVariant(3.14159265) << QByteArray("3.14159");
        QTest::newRow("list") << QVariant(QVariantList({1, "a", true, QVariant(), QVariantList()}))
                              << QByteArray("[ 1, \"a\", true, null, [  ] ]");
        QTest::newRow("string list") << QVariant(QStringList({"x", "y"})) << QByteArray("[ \"x\", \"y\" ]");
        QTest::newRow("map in key order") << QVariant(QVariantMap({{"b", 2}, {"a", false}, {"e", QVariantMap()}}))
                                          << QByteArray("{ \"a\" : false, \"b\" : 2, \"e\" : {  } }");
        QTest::newRow("hash") << QVariant(QVariantHash({{"k", "v"}})) << QByteArray("{ \"k\" : \"v\" }");
        QTest::newRow("escapes") << QVariant(QString("\\\"\b\f\n\r\t")) << QByteArray("\"\\\\\\\"\\b\\f\\n\\r\\t\"");
        QTest::newRow("utf8 and control pass") << QVariant(QString("云\x01")) << QByteArray("\"\xe4\xba\x91\x01\"");
        QTest::newRow("byte array") << QVariant(QByteArray("ab")) << QByteArray("\"ab\"");
        QTest::newRow("max ulonglong") << QVariant(Q_UINT64_C(18446744073709551615))
                                       << QByteArray("18446744073709551615");
        QTest::newRow("unconvertible inside list") << QVariant(QVariantList({1, QRect()})) << QByteArray();
        QTest::newRow("unconvertible inside map") << QVariant(QVariantMap({{"r", QRect()}})) << QByteArray();
    }

    void serializeWritesText()
    {
        QFETCH(QVariant, data);
        QFETCH(QByteArray, text);

        bool ok = text.isNull();
        const QByteArray got = QtJson::serialize(data, ok);
        QCOMPARE(ok, !text.isNull());
        QCOMPARE(got, text);
        QCOMPARE(got.isNull(), text.isNull());
    }

    void datesFollowTheDateTimeFormat()
    {
        const QDate d(2024, 3, 9);
        QtJson::setDateFormat("yyyy/MM/dd");
        // a date format alone does nothing: the date-time format decides
        QCOMPARE(QtJson::serialize(d), ("\"" + d.toString(Qt::TextDate) + "\"").toUtf8());
        QtJson::setDateTimeFormat("yyyy-MM-dd hh:mm:ss");
        QCOMPARE(QtJson::serialize(QDateTime(d, QTime(8, 7, 6))), QByteArray("\"2024-03-09 08:07:06\""));
        QCOMPARE(QtJson::serialize(d), QByteArray("\"2024/03/09\""));
        QtJson::setDateTimeFormat(QString());
        QtJson::setDateFormat(QString());
    }

    void randomTextNeverCrashesTheParser()
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
};

LARK_TEST_GUILESS_MAIN(TstQtJson)
#include "tst_qtjson.moc"
