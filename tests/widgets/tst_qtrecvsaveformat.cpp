#include "LarkTest.h"
#include "MyApp.h"
#include "QtRecvSaveFormat.h"

#include <QDialog>
#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QWidget>
#include <QtTest>

class TstQtRecvSaveFormat : public QObject
{
    Q_OBJECT
private slots:
    void init() { MyApp::m_nTextCodecIndex = 1; }

    void saveBytesFollowTheSuffix_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("view");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("txt in GB18030") << "/tmp/a.txt" << "温度\n2"
                                        << QTextCodec::codecForName("GB18030")->fromUnicode("温度\n2");
        QTest::newRow("bin from hex") << "/tmp/a.bin" << "01 AB 0D 0A " << QByteArray("\x01\xAB\r\n", 4);
        QTest::newRow("suffix is case-sensitive") << "/tmp/a.TXT" << "41 42" << QByteArray("AB");
        QTest::newRow("no suffix is binary") << "/tmp/a" << "00 FF" << QByteArray("\x00\xFF", 2);
    }

    void saveBytesFollowTheSuffix()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, view);
        QFETCH(QByteArray, bytes);
        QCOMPARE(QtRecvSaveFormat::saveBytes(fileName, view), bytes);
    }

    void textFollowsTheChosenCodec()
    {
        MyApp::m_nTextCodecIndex = 0;
        QCOMPARE(QtRecvSaveFormat::saveBytes("/tmp/a.txt", "温度"), QString("温度").toUtf8());
    }

    // the name chosen in the real dialog, completed with the chosen filter's suffix
    void saveAsksForANameAndWritesTheFile()
    {
        QTemporaryDir dir; // a folder of its own: the dialog watches the folder it shows
        QWidget parent;
        LarkTest::answerNextFileDialog(dir.filePath("received"), "*.bin");
        const auto notice = QtRecvSaveFormat::save(&parent, "41 42 43");
        QCOMPARE(notice, QtRecvSaveFormat::Notice("文件保存完成!", 0));
        QFile bin(dir.filePath("received.bin"));
        QVERIFY(bin.open(QIODevice::ReadOnly));
        QCOMPARE(bin.readAll(), QByteArray("ABC"));
    }

    void nothingToSaveOrNoNameSaysNothing()
    {
        QWidget parent;
        // an empty text asks nothing (no dialog would be answered here)
        QCOMPARE(QtRecvSaveFormat::save(&parent, QString()), QtRecvSaveFormat::Notice());
        LarkTest::onNextModal([](QWidget *w) { static_cast<QDialog *>(w)->reject(); });
        QCOMPARE(QtRecvSaveFormat::save(&parent, "41"), QtRecvSaveFormat::Notice());
    }

    void aFileThatCannotBeWrittenIsAnError()
    {
        QCOMPARE(QtRecvSaveFormat::save(nullptr, "data", "/nonexistent-dir/x.txt"),
                 QtRecvSaveFormat::Notice("文件保存失败!", 255));
    }
};

LARK_TEST_MAIN(TstQtRecvSaveFormat)
#include "tst_qtrecvsaveformat.moc"
