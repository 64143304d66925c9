#include "LarkTestCore.h"
#include "UpdateProtocol.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TstUpdateProtocol : public QObject
{
    Q_OBJECT
private slots:
    void versionValuePacksOnePartPerByte_data();
    void versionValuePacksOnePartPerByte();
    void versionReplyIsClassified_data();
    void versionReplyIsClassified();
    void fileNameComesFromDisposition_data();
    void fileNameComesFromDisposition();
    void unsafeEntryNames_data();
    void unsafeEntryNames();
    void linksOutOfTheFolderAreNoWayIn();
    void notAZipHasNoEntries();
};

void TstUpdateProtocol::versionValuePacksOnePartPerByte_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<quint32>("value");
    QTest::newRow("own") << "1.0.1.5" << quint32(0x01000105);
    QTest::newRow("newer") << "1.0.1.6" << quint32(0x01000106);
    QTest::newRow("three parts") << "2.1.3" << quint32(0x020103);
    QTest::newRow("two parts") << "1.1" << quint32(0);
    QTest::newRow("empty") << "" << quint32(0);
    QTest::newRow("empty part kept") << "1..2" << quint32(0x010002);
    QTest::newRow("spills over") << "1.0.256.0" << quint32(0x01010000);
    QTest::newRow("fifth part shifts by 0") << "1.2.3.4.5" << quint32(0x02030405);
    QTest::newRow("text parts") << "a.b.c" << quint32(0);
}

void TstUpdateProtocol::versionValuePacksOnePartPerByte()
{
    QFETCH(QString, version);
    QFETCH(quint32, value);
    QCOMPARE(UpdateProtocol::versionValue(version), value);
}

void TstUpdateProtocol::versionReplyIsClassified_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("verNum");
    QTest::addColumn<QString>("verInfo");
    using R = UpdateProtocol::VersionReply;
    QTest::newRow("object") << QByteArray("{\"verNum\":\"1.0.1.6\",\"verInfo\":\"修复\"}") << int(R::Object)
                            << "1.0.1.6" << "修复";
    QTest::newRow("keys missing") << QByteArray("{}") << int(R::Object) << "" << "";
    QTest::newRow("empty") << QByteArray() << int(R::Empty) << "" << "";
    QTest::newRow("not json") << QByteArray("<html>") << int(R::Invalid) << "" << "";
    QTest::newRow("array") << QByteArray("[1]") << int(R::NotObject) << "" << "";
}

void TstUpdateProtocol::versionReplyIsClassified()
{
    QFETCH(QByteArray, body);
    QFETCH(int, kind);
    QFETCH(QString, verNum);
    QFETCH(QString, verInfo);
    const UpdateProtocol::VersionReply reply = UpdateProtocol::parseVersionReply(body);
    QCOMPARE(int(reply.kind), kind);
    QCOMPARE(reply.verNum, verNum);
    QCOMPARE(reply.verInfo, verInfo);
    QCOMPARE(reply.value, UpdateProtocol::versionValue(verNum));
}

void TstUpdateProtocol::fileNameComesFromDisposition_data()
{
    QTest::addColumn<QString>("disposition");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("stored");
    QTest::newRow("attachment") << "attachment; filename=larkTools.zip" << "larkTools.zip" << "larkTools.zip";
    QTest::newRow("bare") << "filename=a.zip" << "a.zip" << "a.zip";
    QTest::newRow("no filename: from offset 8") << "attachment" << "nt" << "nt";
    QTest::newRow("quoted stays quoted") << "filename=\"a.zip\"" << "\"a.zip\"" << "\"a.zip\"";
    QTest::newRow("up and out") << "filename=../../x.zip" << "../../x.zip" << "x.zip";
    QTest::newRow("absolute") << "filename=/tmp/x.zip" << "/tmp/x.zip" << "x.zip";
    QTest::newRow("backslashes") << "filename=..\\x.zip" << "..\\x.zip" << "x.zip";
    QTest::newRow("dot dot") << "filename=.." << ".." << "";
}

void TstUpdateProtocol::fileNameComesFromDisposition()
{
    QFETCH(QString, disposition);
    QFETCH(QString, name);
    QFETCH(QString, stored);
    QCOMPARE(UpdateProtocol::fileNameFromDisposition(disposition), name);
    QCOMPARE(UpdateProtocol::safeDownloadName(name), stored);
}

void TstUpdateProtocol::unsafeEntryNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("unsafe");
    QTest::newRow("plain") << "bin/larkTools" << false;
    QTest::newRow("dots in names") << "a..b/..c" << false;
    QTest::newRow("up") << "../x" << true;
    QTest::newRow("up inside") << "a/../../x" << true;
    QTest::newRow("absolute") << "/tmp/x" << true;
    QTest::newRow("backslash up") << "a\\..\\..\\x" << true;
    QTest::newRow("drive") << "C:/x" << true;
}

void TstUpdateProtocol::unsafeEntryNames()
{
    QFETCH(QString, name);
    QFETCH(bool, unsafe);
    QCOMPARE(UpdateProtocol::isUnsafeEntryName(name), unsafe);
}

void TstUpdateProtocol::linksOutOfTheFolderAreNoWayIn()
{
    QTemporaryDir base, outside;
    QVERIFY(QDir().mkpath(base.path() + "/real/sub"));
    QVERIFY(QFile::link(outside.path(), base.path() + "/out"));
    QVERIFY(QFile::link(base.path() + "/real", base.path() + "/in"));
    QVERIFY(QFile::link(outside.path() + "/missing", base.path() + "/dangling"));

    QVERIFY(UpdateProtocol::staysInsideDir(base.path(), "real/sub/new/file"));
    QVERIFY(UpdateProtocol::staysInsideDir(base.path(), "in/sub/file"));
    QVERIFY(!UpdateProtocol::staysInsideDir(base.path(), "out/file"));
    QVERIFY(!UpdateProtocol::staysInsideDir(base.path(), "out"));
    QVERIFY(!UpdateProtocol::staysInsideDir(base.path(), "dangling"));
}

void TstUpdateProtocol::notAZipHasNoEntries()
{
    QTemporaryDir dir;
    QFile file(dir.path() + "/x.zip");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("PK not really a zip");
    file.close();
    QVERIFY(UpdateProtocol::rawZipEntryNames(file.fileName()).isEmpty());
    QVERIFY(UpdateProtocol::rawZipEntryNames(dir.path() + "/none.zip").isEmpty());
}

LARK_TEST_GUILESS_MAIN(TstUpdateProtocol)
#include "tst_updateprotocol.moc"
