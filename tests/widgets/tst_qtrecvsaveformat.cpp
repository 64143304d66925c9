#include "LarkTest.h"
#include "MyApp.h"
#include "QtRecvSaveFormat.h"

#include <QDialog>
#include <QWidget>
#include <QtTest>

class TstQtRecvSaveFormat : public QObject
{
    Q_OBJECT
private slots:
    void saveBytesFollowTheSuffix_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<int>("codec");
        QTest::addColumn<QString>("view");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("txt in GB18030") << "/tmp/a.txt" << 1 << "温度\n2" << QByteArray("\xCE\xC2\xB6\xC8\n2");
        QTest::newRow("txt in UTF-8") << "/tmp/a.txt" << 0 << "温度" << QString("温度").toUtf8();
        QTest::newRow("bin from hex") << "/tmp/a.bin" << 1 << "01 AB 0D 0A " << QByteArray("\x01\xAB\r\n", 4);
        QTest::newRow("suffix is case-sensitive") << "/tmp/a.TXT" << 1 << "41 42" << QByteArray("AB");
        QTest::newRow("no suffix is binary") << "/tmp/a" << 1 << "00 FF" << QByteArray("\x00\xFF", 2);
    }

    void saveBytesFollowTheSuffix()
    {
        QFETCH(QString, fileName);
        QFETCH(int, codec);
        QFETCH(QString, view);
        MyApp::m_nTextCodecIndex = codec;
        QTEST(QtRecvSaveFormat::saveBytes(fileName, view), "bytes");
    }

    // nothing to save or no name chosen says nothing, a failed write is an error (a name
    // chosen and written is the pages' case: their tests save through the real dialog)
    void saveSaysNothingUnlessItWritesAndFailsAloud()
    {
        QTemporaryDir dir;
        QWidget parent;
        QCOMPARE(QtRecvSaveFormat::save(&parent, QString()), QtRecvSaveFormat::Notice());
        QCOMPARE(QtRecvSaveFormat::save(&parent, QString(), dir.filePath("empty.txt")), QtRecvSaveFormat::Notice());
        QVERIFY(!QFile::exists(dir.filePath("empty.txt")));
        LarkTest::onNextModal([](QWidget *w) { static_cast<QDialog *>(w)->reject(); });
        QCOMPARE(QtRecvSaveFormat::save(&parent, "41"), QtRecvSaveFormat::Notice());
        QCOMPARE(QtRecvSaveFormat::save(nullptr, "data", "/nonexistent-dir/x.txt"),
                 QtRecvSaveFormat::Notice("文件保存失败!", 255));
    }

    void aFullDiskOrAFolderGoneFailsAndKeepsTheOldFile()
    {
        LARK_VERIFY_DISK_FAULTS([](const QString &path) { return QtRecvSaveFormat::save(nullptr, "41 42", path).second != 255; });
    }
};

LARK_TEST_MAIN(TstQtRecvSaveFormat)
#include "tst_qtrecvsaveformat.moc"
