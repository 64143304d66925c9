#include "LarkTestCore.h"
#include "UpdateArchive.h"

#include <QtTest>

#include <private/qzipwriter_p.h>

class TstUpdateArchive : public QObject
{
    Q_OBJECT

private slots:
    // One bad entry beside a good one: only the good one is written, and the progress
    // names the bad one by its stored name, as skipped.
    void unsafeEntriesAreSkippedAndNamed_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("symLinkEntry");
        QTest::newRow("up") << "../x" << false;
        QTest::newRow("up inside") << "sub/../../x" << false;
        QTest::newRow("backslash up") << "sub\\..\\..\\x" << false;
        QTest::newRow("absolute") << "@OUT@/x" << false;
        QTest::newRow("through a link out") << "out/x" << false;
        QTest::newRow("through a dangling link") << "dangling" << false;
        QTest::newRow("link entry") << "x" << true;
    }

    void unsafeEntriesAreSkippedAndNamed()
    {
        QFETCH(QString, name);
        QFETCH(bool, symLinkEntry);
        // program and outside share a parent, so "../x" from the program is outside/../x
        QTemporaryDir parent;
        const QString programDir = parent.path() + "/program";
        const QString outside = parent.path() + "/outside";
        QVERIFY(QDir().mkpath(programDir + "/sub") && QDir().mkpath(outside));
        QVERIFY(QFile::link(outside, programDir + "/out"));
        QVERIFY(QFile::link(outside + "/missing", programDir + "/dangling"));
        QVERIFY(QFile::link(programDir + "/sub", programDir + "/in"));
        name.replace("@OUT@", outside);

        QZipWriter writer(parent.path() + "/u.zip");
        if (symLinkEntry)
            writer.addSymLink(name, outside + "/x");
        else
            writer.addFile(name, "evil");
        writer.addFile("in/a..b", "good"); // dots inside a name and links that stay inside are harmless
        writer.close();

        const UpdateArchive archive(parent.path() + "/u.zip");
        QCOMPARE(archive.count(), 2);
        QStringList progress;
        QVERIFY(archive.unpack(programDir, [&](int k, const QString &entry, bool skipped) {
            progress << QString("%1 %2%3").arg(k).arg(skipped ? "skipped " : "").arg(entry);
        }));
        QCOMPARE(progress, (QStringList{"0 skipped " + name, "1 in/a..b"}));
        QVERIFY(QDir(outside).isEmpty());
        QVERIFY(!QFile::exists(parent.path() + "/x"));
        QVERIFY(!QFileInfo(programDir + "/x").isSymLink() && !QFile::exists(programDir + "/x"));
        QCOMPARE(LarkTest::readFile(programDir + "/sub/a..b"), QByteArray("good"));
    }

    // files overwritten in place keep the old tail; folders made; permissions taken
    void entriesLandOverTheProgramsFolder()
    {
        QTemporaryDir dir;
        const QString program = dir.path() + "/program";
        QVERIFY(QDir().mkpath(program) && LarkTest::writeFile(program + "/readme.txt", "old text"));
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QZipWriter writer(&buffer);
        writer.addFile("run", "#!/bin/sh\n");
        writer.addDirectory("data/deep");
        writer.addFile("data/deep/a.bin", QByteArray(1000, '\x5A'));
        writer.addFile("readme.txt", "new");
        writer.close();
        // Qt 5's writer cannot store an execute bit: set the owner's in the entry's
        // central record, the last copy of its name, as zip tools do
        QByteArray bytes = buffer.data();
        bytes.data()[bytes.lastIndexOf("run") - 6] |= 0x40;
        QVERIFY(LarkTest::writeFile(dir.path() + "/u.zip", bytes));

        int calls = 0;
        QVERIFY(UpdateArchive(dir.path() + "/u.zip").unpack(program, [&](int, const QString &, bool) { ++calls; }));
        QCOMPARE(calls, 4);
        QCOMPARE(LarkTest::readFile(program + "/readme.txt"), QByteArray("new text"));
        QCOMPARE(LarkTest::readFile(program + "/data/deep/a.bin"), QByteArray(1000, '\x5A'));
        QVERIFY(QFileInfo(program + "/run").isExecutable());
        QVERIFY(!QFileInfo(program + "/readme.txt").isExecutable());
    }

    void anUnreadableArchiveWritesNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("not a zip") << QByteArray("PK but not really");
        QTest::newRow("empty file") << QByteArray();
    }

    void anUnreadableArchiveWritesNothing()
    {
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        QVERIFY(LarkTest::writeFile(dir.path() + "/u.zip", bytes));
        QCOMPARE(UpdateArchive(dir.path() + "/u.zip").count(), 0);
        QVERIFY(!UpdateArchive(dir.path() + "/missing.zip").unpack(dir.path(), nullptr));
        QCOMPARE(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList{"u.zip"});
    }

    // the system refuses to write a running executable: this one runs while unpacking
    void theRunningProgramIsReplacedWhole()
    {
        QTemporaryDir program;
        const QString exe = program.filePath("larkTools");
        QVERIFY(QFile::copy("/bin/sleep", exe));
        QProcess running;
        running.start(exe, {"60"});
        QVERIFY(running.waitForStarted());
        QZipWriter writer(program.filePath("u.zip"));
        writer.addFile("larkTools", "#!/bin/sh\n");
        writer.close();
        QVERIFY(UpdateArchive(program.filePath("u.zip")).unpack(program.path(), nullptr));
        QCOMPARE(LarkTest::readFile(exe), QByteArray("#!/bin/sh\n"));
        QCOMPARE(running.state(), QProcess::Running);
        QVERIFY(!QFile::exists(exe + ".new"));
        running.kill();
        running.waitForFinished();
    }
};

LARK_TEST_GUILESS_MAIN(TstUpdateArchive)
#include "tst_updatearchive.moc"
