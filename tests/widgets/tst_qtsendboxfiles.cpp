#include "LarkTestCore.h"
#include "QtSendBoxFiles.h"

#include <QtTest>

using Table = QMap<int, QString>;

class TstQtSendBoxFiles : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString write(const QByteArray &bytes)
    {
        LarkTest::writeFile(m_dir.filePath("list.txt"), bytes);
        return m_dir.filePath("list.txt");
    }

private slots:
    void tableLinesAreKeyHashText_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("taken");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("text");
        QTest::newRow("hash inside the text") << QByteArray("12#hello#world\n") << true << 12 << "hello#world";
        QTest::newRow("negative key") << QByteArray("-3#negative") << true << -3 << "negative";
        QTest::newRow("no number: key 0") << QByteArray("abc#x\n") << true << 0 << "x";
        QTest::newRow("CR stays") << QByteArray("4#AT\r\n") << true << 4 << "AT\r";
        QTest::newRow("NUL ends the text") << QByteArray("6#ab\0cd\n", 8) << true << 6 << "ab";
        QTest::newRow("UTF-8") << QByteArray("2#\xE4\xB8\xAD\n") << true << 2 << "中";
        QTest::newRow("empty text") << QByteArray("5#\n") << true << 5 << "";
        QTest::newRow("no hash") << QByteArray("no hash here\n") << false << 0 << "";
        QTest::newRow("NUL before the hash") << QByteArray("7\0#x\n", 5) << false << 0 << "";
    }

    void tableLinesAreKeyHashText()
    {
        QFETCH(QByteArray, line);
        QFETCH(bool, taken);
        int key = 0;
        QString text;
        QCOMPARE(QtSendBoxFiles::parseMultiLine(line, key, text), taken);
        if (taken) {
            QTEST(key, "key");
            QTEST(text, "text");
        }
    }

    void tableFileKeepsGoodLinesOnly()
    {
        QByteArray noise;
        for (int i = 0; i < 4096; ++i)
            noise.append(char((i * 7919) & 0xFF)); // binary noise, NULs and stray '#' included
        const QString path = write("1#first\n" + noise + "\n3#x\nbad\n3#later wins\n" + QByteArray("6#ab\0cd\n23#c", 12));
        const Table read = QtSendBoxFiles::readMultiConfig(path);
        QCOMPARE(read.value(1), QString("first"));
        QCOMPARE(read.value(3), QString("later wins"));
        QCOMPARE(read.value(6), QString("ab"));
        QCOMPARE(read.value(23), QString("c"));
        QVERIFY(QtSendBoxFiles::writeMultiConfig(path, Table{{10, "b"}, {-1, "a"}}));
        QCOMPARE(LarkTest::readFile(path), QByteArray("-1#a\n10#b\n"));
        QCOMPARE(QtSendBoxFiles::readMultiConfig(m_dir.filePath("missing.txt")), Table());
    }

    // written a message a line, read back word by word; noise does not stop the words
    void historyComesBackWordByWord()
    {
        const QString path = m_dir.filePath("history.txt");
        QVERIFY(QtSendBoxFiles::writeHistory(path, {"AT+GMR", "hello world"}));
        QCOMPARE(QtSendBoxFiles::readHistory(path), (QStringList{"AT+GMR", "hello", "world"}));
        QVERIFY(QtSendBoxFiles::readHistory(write(QByteArray(2048, '\0') + "\x80\xFF\nAT+GMR\n")).contains("AT+GMR"));
        QCOMPARE(QtSendBoxFiles::readHistory(m_dir.filePath("missing.txt")), QStringList());
        QVERIFY(!QtSendBoxFiles::writeHistory(m_dir.filePath("no/dir.txt"), {"x"}));
    }

    // written as the program ends: a full disk keeps the lists of the last run
    void aFullDiskOrAFolderGoneFailsAndKeepsTheOldLists()
    {
        LARK_VERIFY_DISK_FAULTS([](const QString &path) { return QtSendBoxFiles::writeHistory(path, {"AT"}); });
        LARK_VERIFY_DISK_FAULTS([](const QString &path) { return QtSendBoxFiles::writeMultiConfig(path, {{1, "AT"}}); });
    }
};

LARK_TEST_GUILESS_MAIN(TstQtSendBoxFiles)
#include "tst_qtsendboxfiles.moc"
