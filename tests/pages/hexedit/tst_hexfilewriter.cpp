#include "HexFileWriter.h"
#include "LarkTestCore.h"

#include <QtTest>

#include <sys/stat.h>

// Saving on real filesystems: a temporary folder, and small tmpfs mounts made read-only
// or filled up (skipped where mounting is not allowed).
class TstHexFileWriter : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_strMount;

    static HexFileWriter::Reader readerOf(const QByteArray &bytes, qint64 failAt = -1)
    {
        return [bytes, failAt](qint64 offset, char *buffer, qint64 length) {
            memcpy(buffer, bytes.constData() + offset, size_t(length));
            return failAt < 0 || offset + length <= failAt;
        };
    }
    static bool put(const QString &path, const QByteArray &bytes)
    {
        QFile f(path);
        return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
    }
    static bool run(const QString &program, const QStringList &args) { return QProcess::execute(program, args) == 0; }

private slots:
    void initTestCase() { HexFileWriter::m_nChunkSize = 4096; }
    void cleanup() { m_strMount.isEmpty() || run("umount", {m_strMount}), m_strMount.clear(); }

    // zero runs of whole chunks become holes; the bytes read back the same all the same
    void savedFileHoldsTheBytesKeepsItsModeAndItsHoles()
    {
        QByteArray bytes(64 * 4096, '\0');
        bytes.replace(0, 3, "new").replace(20 * 4096 + 7, 4, "LARK");
        const QString path = m_dir.filePath("a.bin"), expected = m_dir.filePath("expected.bin");
        QVERIFY(put(path, "old") && put(expected, bytes));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup));
        const QFile::Permissions mode = QFile::permissions(path);
        QCOMPARE(HexFileWriter::write(path, bytes.size(), readerOf(bytes)), QString());
        QVERIFY(run("cmp", {path, expected}));
        QCOMPARE(QFile::permissions(path), mode);
        struct stat st;
        QVERIFY(stat(QFile::encodeName(path).constData(), &st) == 0);
        QVERIFY2(st.st_blocks * 512 <= 8 * 4096, qPrintable(QString::number(st.st_blocks)));
    }

    void failuresLeaveTheTargetAlone_data()
    {
        QTest::addColumn<QString>("place"); // ro: read-only tmpfs, full: 64 KiB tmpfs
        QTest::addColumn<qint64>("failAt"); // where the reader fails, -1 never
        QTest::addColumn<QString>("reason");
        QTest::newRow("read-only filesystem") << "ro" << qint64(-1) << "is not writable";
        QTest::newRow("full filesystem") << "full" << qint64(-1) << "No space left on device";
        QTest::newRow("content unreadable") << "" << qint64(8192) << "读取数据失败";
    }
    void failuresLeaveTheTargetAlone()
    {
        QFETCH(QString, place);
        QFETCH(qint64, failAt);
        QFETCH(QString, reason);
        const QString folder = m_dir.filePath(place.isEmpty() ? "plain" : place);
        QVERIFY(QDir().mkpath(folder));
        if (!place.isEmpty()) {
            if (!run("mount", {"-t", "tmpfs", "-o", "size=64k", "tmpfs", folder}))
                QSKIP("mounting a tmpfs is not allowed here");
            m_strMount = folder;
        }
        const QString path = folder + "/target.bin";
        QVERIFY(put(path, "original\n"));
        if (place == "ro")
            QVERIFY(run("mount", {"-o", "remount,ro", folder}));
        // no page of it is zero, so all of it must be written
        QByteArray bytes(200 * 1024, Qt::Uninitialized);
        for (int i = 0; i < bytes.size(); ++i)
            bytes[i] = char(i % 251 + 1);
        const QString message = HexFileWriter::write(path, bytes.size(), readerOf(bytes, failAt));
        QVERIFY2(message.startsWith("保存文件失败!\n" + path) && message.contains(reason), qPrintable(message));
        QVERIFY(run("grep", {"-qx", "original", path}));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{"target.bin"});
    }
};

LARK_TEST_GUILESS_MAIN(TstHexFileWriter)
#include "tst_hexfilewriter.moc"
