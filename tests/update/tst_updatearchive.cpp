#include "LarkTestCore.h"
#include "UpdateArchive.h"
#include "UpdateZip.h"

#include <QtTest>

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
        QVERIFY(QDir(outside).isEmpty() && !QFile::exists(parent.path() + "/x"));
        QVERIFY(!QFileInfo(programDir + "/x").isSymLink() && !QFile::exists(programDir + "/x"));
        QCOMPARE(LarkTest::readFile(programDir + "/sub/a..b"), QByteArray("good"));
    }

    // files overwritten in place keep the old tail; folders made; permissions taken
    void entriesLandOverTheProgramsFolder()
    {
        QTemporaryDir dir;
        const QString program = dir.path() + "/program";
        QVERIFY(QDir().mkpath(program) && LarkTest::writeFile(program + "/readme.txt", "old text"));
        QVERIFY(LarkTest::writeFile(dir.path() + "/u.zip", updateZip({{"run", "#!/bin/sh\n"}, {"data/deep/", ""},
            {"data/deep/a.bin", QByteArray(1000, '\x5A')}, {"readme.txt", "new"}}, {"run"})));

        int calls = 0;
        QVERIFY(UpdateArchive(dir.path() + "/u.zip").unpack(program, [&](int, const QString &, bool) { ++calls; }));
        QCOMPARE(calls, 4);
        QCOMPARE(LarkTest::readFile(program + "/readme.txt"), QByteArray("new text"));
        QCOMPARE(LarkTest::readFile(program + "/data/deep/a.bin"), QByteArray(1000, '\x5A'));
        QVERIFY(QFileInfo(program + "/run").isExecutable() && !QFileInfo(program + "/readme.txt").isExecutable());
    }

    // An archive that is broken, too large, or larger than the disk it would land on
    // writes nothing and says why.
    void aRefusedArchiveWritesNothingAndSaysWhy_data()
    {
        QTest::addColumn<QByteArray>("zip");
        QTest::addColumn<QString>("reason"); // how errorString() starts
        const QByteArray zip = updateZip({{"larkTools", "#!/bin/sh\n"}, {"zeros.bin", QByteArray(2 << 20, '\0')}});
        const int zeros = zip.lastIndexOf("zeros.bin") - 46; // its central record
        const auto patched = [&](int at, const QByteArray &bytes) { return QByteArray(zip).replace(at, bytes.size(), bytes); };
        QList<QPair<QString, QByteArray>> many;
        for (int i = 0; i < 100000; ++i)
            many.append({QString::number(i), QByteArray()});
        const QString broken = "升级文件已损坏(";
        QTest::newRow("no archive behind the mark") << QByteArray("PK but no archive") << broken + "目录不完整)";
        QTest::newRow("empty file") << QByteArray() << broken + "无法读取)";
        QTest::newRow("cut short") << zip.chopped(30) << broken + "目录不完整)";
        QTest::newRow("corrupt central directory") << patched(zeros, "PK\1\3") << broken + "目录不完整)";
        QTest::newRow("corrupt entry data") << patched(zip.indexOf("zeros.bin") + 20, "\xff\xff") << broken + "zeros.bin)";
        QTest::newRow("size understated") << patched(zeros + 24, QByteArray("\0\4\0\0", 4)) << broken + "zeros.bin)";
        QTest::newRow("beyond the cap") << patched(zeros + 24, QByteArray("\0\0\0\x7f", 4))
                                        << "升级文件解压后过大(2032.0MB，最多1024.0MB)";
        QTest::newRow("more than the disk holds") << zip << "磁盘空间不足(解压需2.0MB，可用0.";
        QTest::newRow("100,000 entries") << updateZip(many) << "升级文件条目过多(100000个，最多10000个)";
    }

    void aRefusedArchiveWritesNothingAndSaysWhy()
    {
        QFETCH(QByteArray, zip);
        QFETCH(QString, reason);
        QTemporaryDir dir;
        const QString program = dir.filePath("program");
        const bool full = reason.startsWith("磁盘");
        QVERIFY(QDir().mkpath(program) && LarkTest::writeFile(dir.filePath("u.zip"), zip));
        if (full && QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=256k", "tmpfs", program}) != 0)
            QSKIP("mounting a tmpfs is not allowed here");
        const auto unmount = qScopeGuard([&] { full && QProcess::execute("umount", {program}); });
        const UpdateArchive archive(dir.filePath("u.zip"));
        QVERIFY(!archive.unpack(program, nullptr));
        QVERIFY2(archive.errorString().startsWith(reason), qPrintable(archive.errorString()));
        QVERIFY(QDir(program).isEmpty() && !UpdateArchive(dir.filePath("missing.zip")).unpack(program, nullptr));
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
