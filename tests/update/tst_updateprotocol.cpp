#include "LarkTestCore.h"
#include "UpdateProtocol.h"

#include <QtTest>

// The update dialog's test covers the replies and archives end to end; these are the
// odd readings of version numbers and file names it does not reach.
class TstUpdateProtocol : public QObject
{
    Q_OBJECT
private slots:
    void versionValuePacksOnePartPerByte_data()
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

    void versionValuePacksOnePartPerByte()
    {
        QFETCH(QString, version);
        QTEST(UpdateProtocol::versionValue(version), "value");
    }

    void downloadNameComesFromDisposition_data()
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

    void downloadNameComesFromDisposition()
    {
        QFETCH(QString, disposition);
        QTEST(UpdateProtocol::safeDownloadName(UpdateProtocol::fileNameFromDisposition(disposition)), "stored");
    }

    // A link in the program folder may lead anywhere inside it, and nowhere else: not into
    // a sibling folder whose name starts with the program folder's.
    void linksStayInsideTheProgramFolder_data()
    {
        QTest::addColumn<QString>("link"); // where app/lnk points, from the temporary folder
        QTest::addColumn<QString>("entry");
        QTest::addColumn<bool>("inside");
        QTest::newRow("into a sibling with a longer name") << "app2" << "lnk/x" << false;
        QTest::newRow("into the parent") << "." << "lnk/x" << false;
        QTest::newRow("into a subfolder") << "app/sub" << "lnk/x" << true;
        QTest::newRow("to the folder itself") << "app" << "lnk/x" << true;
        QTest::newRow("dangling") << "app/none" << "lnk/x" << false;
        QTest::newRow("missing parts below") << "app/sub" << "lnk/new/deeper/x" << true;
    }

    void linksStayInsideTheProgramFolder()
    {
        QFETCH(QString, link);
        QFETCH(QString, entry);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath("app/sub") && QDir(dir.path()).mkpath("app2"));
        QVERIFY(QFile::link(dir.filePath(link), dir.filePath("app/lnk")));
        QTEST(UpdateProtocol::staysInsideDir(dir.filePath("app"), entry), "inside");
    }
};

LARK_TEST_GUILESS_MAIN(TstUpdateProtocol)
#include "tst_updateprotocol.moc"
