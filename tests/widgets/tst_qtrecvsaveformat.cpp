#include "LarkTest.h"
#include "MyApp.h"
#include "QtRecvSaveFormat.h"

#include <QtWidgets>
#include <QtTest>

class TstQtRecvSaveFormat : public QObject
{
    Q_OBJECT
private slots:
    // the text rule has its own table; the page's codec reaches it
    void savedTextIsInThePagesCodec()
    {
        MyApp::m_nTextCodecIndex = 1;
        QCOMPARE(QtRecvSaveFormat::saveBytes("/tmp/a.txt", "温度"), QByteArray("\xCE\xC2\xB6\xC8"));
        MyApp::m_nTextCodecIndex = 0;
        QCOMPARE(QtRecvSaveFormat::saveBytes("/tmp/a.txt", "温度"), QString("温度").toUtf8());
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
