#include "LarkTestCore.h"
#include "UpdateProtocol.h"

#include <QtTest>

// The update dialog's test covers the replies and archives end to end; these are the
// odd readings of version numbers and file names it does not reach.
class TstUpdateProtocol : public QObject
{
    Q_OBJECT
private slots:
    void versionValuePacksOnePartPerByte_data();
    void versionValuePacksOnePartPerByte();
    void downloadNameComesFromDisposition_data();
    void downloadNameComesFromDisposition();
};

void TstUpdateProtocol::versionValuePacksOnePartPerByte_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<quint32>("value");
    QTest::newRow("three parts") << "2.1.3" << quint32(0x020103);
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

void TstUpdateProtocol::downloadNameComesFromDisposition_data()
{
    QTest::addColumn<QString>("disposition");
    QTest::addColumn<QString>("stored");
    QTest::newRow("bare") << "filename=a.zip" << "a.zip";
    QTest::newRow("no filename: from offset 8") << "attachment" << "nt";
    QTest::newRow("quoted stays quoted") << "filename=\"a.zip\"" << "\"a.zip\"";
    QTest::newRow("up and out") << "filename=../../x.zip" << "x.zip";
    QTest::newRow("absolute") << "filename=/tmp/x.zip" << "x.zip";
    QTest::newRow("backslashes") << "filename=..\\x.zip" << "x.zip";
    QTest::newRow("dot dot") << "filename=.." << "";
}

void TstUpdateProtocol::downloadNameComesFromDisposition()
{
    QFETCH(QString, disposition);
    QFETCH(QString, stored);
    QCOMPARE(UpdateProtocol::safeDownloadName(UpdateProtocol::fileNameFromDisposition(disposition)), stored);
}

LARK_TEST_GUILESS_MAIN(TstUpdateProtocol)
#include "tst_updateprotocol.moc"
