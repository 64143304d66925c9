#include "LarkTestCore.h"
#include "RegisterTableFile.h"

#include <QBuffer>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

static QByteArray gb(const QString &text) { return QTextCodec::codecForName("GB18030")->fromUnicode(text); }

using LarkTest::modelCells;

class TstRegisterTableFile : public QObject
{
    Q_OBJECT
private slots:
    void readKeepsRowsWhereTheFileHasThem_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("cells");
        const QString old = "o|o|o|o";
        QTest::newRow("no header: first row lost") << QByteArray("1,A,B,C\n2,D,E,F\n") << "2|D|E|F;" + old + ";" + old;
        QTest::newRow("short line keeps its row") << QByteArray("x\n1,A\n2,D,E,F\n") << old + ";2|D|E|F;" + old;
        QTest::newRow("CR LF") << QByteArray("x\r\n1,A,B,C\r\n2,D,E,F\r\n") << "1|A|B|C;2|D|E|F;" + old;
        QTest::newRow("longer than the model") << QByteArray("x\n1,,,\n2,,,\n3,,,\n4,,,\n") << "1|||;2|||;3|||";
        QTest::newRow("GB18030") << gb("h\n1,10,20,曝光时间,\n") << "1|10|20|曝光时间;" + old + ";" + old;
        QTest::newRow("empty file") << QByteArray() << old + ";" + old + ";" + old;
    }

    void readKeepsRowsWhereTheFileHasThem()
    {
        QFETCH(QByteArray, file);
        QStandardItemModel model;
        LarkTest::fillModel(&model, "o|o|o|o;o|o|o|o;o|o|o|o");
        QBuffer buffer(&file);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        RegisterTableFile::read(buffer, &model);
        QTEST(modelCells(&model), "cells");
    }

    // header and rows end in a comma; blank rows stay; the rows come back
    void writtenTablesReadBack()
    {
        QStandardItemModel model;
        LarkTest::fillModel(&model, "1|10|20|曝光时间;2|3B|FFFFFFFF80000000|;|||");
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadWrite));
        RegisterTableFile::write(buffer, &model);
        QCOMPARE(bytes, gb("寄存器编号,寄存器地址,寄存器值,描述,\n1,10,20,曝光时间,\n2,3B,FFFFFFFF80000000,,\n,,,,\n"));
        QStandardItemModel back;
        LarkTest::fillModel(&back, "|||;|||;|||");
        buffer.seek(0);
        RegisterTableFile::read(buffer, &back);
        QCOMPARE(modelCells(&back), modelCells(&model));
    }

    // written over a longer file, the old tail stays and is read with the new lines;
    // the cut line ",," is too short but takes its row
    void aLongerOldFileKeepsItsTail()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("old.csv");
        const QByteArray old("h,\n1,A,,,\n2,B,,,\n3,C,,,\n4,D,,,\n5,E,,,\n6,F,,,\n7,G,,,\n8,H,,,\n9,I,,,\n");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(old) == old.size());
        file.close();
        QStandardItemModel model;
        LarkTest::fillModel(&model, "7|70|71|新");
        QVERIFY(RegisterTableFile::save(path, &model));
        const QByteArray head = gb("寄存器编号,寄存器地址,寄存器值,描述,\n7,70,71,新,\n");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), head + old.mid(head.size()));
        LarkTest::fillModel(&model, ";;;");
        QVERIFY(RegisterTableFile::load(path, &model));
        QCOMPARE(modelCells(&model), QString("7|70|71|新;|||;8|H||;9|I||"));
        QVERIFY(!RegisterTableFile::load(dir.filePath("missing.csv"), &model));
        QVERIFY(!RegisterTableFile::save(dir.filePath("no/such/dir.csv"), &model));
    }

    // written in place, so a table that outgrows the old file's room is refused whole
    void aFullDiskOrAFolderGoneFailsAndKeepsTheOldFile()
    {
        QStandardItemModel model;
        LarkTest::fillModel(&model, QString("0x3012|0x1F|曝光|ok;").repeated(400).chopped(1));
        LARK_VERIFY_DISK_FAULTS([&model](const QString &path) { return RegisterTableFile::save(path, &model); });
    }
};

LARK_TEST_GUILESS_MAIN(TstRegisterTableFile)
#include "tst_registertablefile.moc"
