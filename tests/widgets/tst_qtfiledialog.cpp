#include "LarkTest.h"
#include "QtFileDialog.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

Q_DECLARE_METATYPE(QFileDialog::AcceptMode)

class TstQtFileDialog : public QObject
{
    Q_OBJECT

private slots:
    void innerDialogIsEmbeddedWithOwnTexts();
    void chosenPathGetsTheFilterSuffixOnlyWhenSavingWithoutOne_data();
    void chosenPathGetsTheFilterSuffixOnlyWhenSavingWithoutOne();
    void cancelAndCloseAnswerZero_data();
    void cancelAndCloseAnswerZero();
    void severalExistingFilesCanBeChosen();
    void suffixOfFilter_data();
    void suffixOfFilter();

private:
    static QPushButton *button(QtFileDialog *dlg, QDialogButtonBox::StandardButton which);
    static void touch(const QString &path);
    static void typeName(QtFileDialog *dlg, const QString &name);
};

void TstQtFileDialog::typeName(QtFileDialog *dlg, const QString &name)
{
    QLineEdit *edt = dlg->fileDialog()->findChild<QLineEdit *>("fileNameEdit");
    if (!edt)
        return;
    edt->clear();
    QTest::keyClicks(edt, name);
}

QPushButton *TstQtFileDialog::button(QtFileDialog *dlg, QDialogButtonBox::StandardButton which)
{
    QDialogButtonBox *box = dlg->fileDialog()->findChild<QDialogButtonBox *>("buttonBox");
    return box ? box->button(which) : nullptr;
}

void TstQtFileDialog::touch(const QString &path)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
}

void TstQtFileDialog::innerDialogIsEmbeddedWithOwnTexts()
{
    QtFileDialog dlg;
    QCOMPARE(dlg.windowTitle(), QString("文件选择框"));
    QVERIFY(dlg.windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(!dlg.fileDialog()->isWindow());
    QVERIFY(dlg.fileDialog()->testOption(QFileDialog::DontUseNativeDialog));
    QCOMPARE(dlg.fileDialog()->findChild<QLabel *>("lookInLabel")->text(), QString("文件目录："));
    QCOMPARE(dlg.fileDialog()->findChild<QLineEdit *>("fileNameEdit")->minimumHeight(), 24);

    QPushButton *open = button(&dlg, QDialogButtonBox::Open);
    QVERIFY(open);
    QCOMPARE(open->text(), QString("确定"));
    QCOMPARE(open->size(), QSize(68, 24));
    QCOMPARE(button(&dlg, QDialogButtonBox::Cancel)->text(), QString("取消"));

    dlg.setAcceptMode(QFileDialog::AcceptSave);
    QPushButton *save = button(&dlg, QDialogButtonBox::Save);
    QVERIFY(save);
    QCOMPARE(save->text(), QString("保存"));
    QCOMPARE(save->size(), QSize(68, 24));
    // the save mode rebuilds Qt's buttons and labels; ours must survive it
    QCOMPARE(button(&dlg, QDialogButtonBox::Cancel)->text(), QString("取消"));
    QCOMPARE(button(&dlg, QDialogButtonBox::Cancel)->size(), QSize(68, 24));
    QCOMPARE(dlg.fileDialog()->findChild<QLabel *>("lookInLabel")->text(), QString("文件目录："));

    const QString dir = qEnvironmentVariable("LARK_GRAB_DIR");
    if (!dir.isEmpty()) {
        dlg.resize(640, 420);
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        dlg.grab().save(dir + "/filedialog.png");
        dlg.hide();
    }
}

void TstQtFileDialog::chosenPathGetsTheFilterSuffixOnlyWhenSavingWithoutOne_data()
{
    QTest::addColumn<QFileDialog::AcceptMode>("mode");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("chosen");

    QTest::newRow("save without suffix") << QFileDialog::AcceptSave << "*.txt;;*.bin" << "data" << "data.txt";
    QTest::newRow("save keeps its own suffix") << QFileDialog::AcceptSave << "*.txt" << "a.bin" << "a.bin";
    QTest::newRow("save with a described filter")
        << QFileDialog::AcceptSave << "文本文件 (*.txt *.log)" << "data" << "data.txt";
    QTest::newRow("save with a filter of every file") << QFileDialog::AcceptSave << "*" << "data" << "data";
    QTest::newRow("open returns the path as it is") << QFileDialog::AcceptOpen << "*.txt" << "data" << "data";
}

void TstQtFileDialog::chosenPathGetsTheFilterSuffixOnlyWhenSavingWithoutOne()
{
    QFETCH(QFileDialog::AcceptMode, mode);
    QFETCH(QString, filter);
    QFETCH(QString, typed);
    QFETCH(QString, chosen);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    if (mode == QFileDialog::AcceptOpen)
        touch(tmp.filePath(typed));

    QWidget owner;
    QtFileDialog dlg(&owner);
    dlg.setAcceptMode(mode);
    dlg.setNameFilter(filter);
    dlg.fileDialog()->setDirectory(tmp.path());

    bool innerShown = false;
    LarkTest::onNextModal([&](QWidget *w) {
        innerShown = dlg.fileDialog()->isVisible();
        // typed as a user would: selectFile leaves a focused name edit alone
        typeName(&dlg, typed);
        QPushButton *btn = button(&dlg, mode == QFileDialog::AcceptSave ? QDialogButtonBox::Save
                                                                        : QDialogButtonBox::Open);
        if (btn && btn->isEnabled())
            QTest::mouseClick(btn, Qt::LeftButton);
        else
            qobject_cast<QDialog *>(w)->reject();
    });

    QCOMPARE(dlg.exec(), int(QDialog::Accepted));
    QVERIFY(innerShown);
    QCOMPARE(dlg.exitfile(), QDir(tmp.path()).filePath(chosen));
}

void TstQtFileDialog::cancelAndCloseAnswerZero_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("cancel button") << "cancel";
    QTest::newRow("title bar close") << "close";
}

void TstQtFileDialog::cancelAndCloseAnswerZero()
{
    QFETCH(QString, how);

    QTemporaryDir tmp;
    QtFileDialog dlg;
    dlg.setAcceptMode(QFileDialog::AcceptSave);
    dlg.setNameFilter("*.txt");
    dlg.fileDialog()->setDirectory(tmp.path());

    LarkTest::onNextModal([&](QWidget *w) {
        typeName(&dlg, "data");
        QAbstractButton *btn = how == "cancel"
            ? static_cast<QAbstractButton *>(button(&dlg, QDialogButtonBox::Cancel))
            : static_cast<QAbstractButton *>(w->findChild<QToolButton *>("btnClose"));
        if (btn)
            QTest::mouseClick(btn, Qt::LeftButton);
        else
            qobject_cast<QDialog *>(w)->accept(); // makes the comparison below fail
    });

    QCOMPARE(dlg.exec(), int(QDialog::Rejected));
    QVERIFY(!QFile::exists(tmp.filePath("data.txt")));
}

void TstQtFileDialog::severalExistingFilesCanBeChosen()
{
    QTemporaryDir tmp;
    touch(tmp.filePath("a.txt"));
    touch(tmp.filePath("b.txt"));

    QtFileDialog dlg;
    dlg.setAcceptMode(QFileDialog::AcceptOpen);
    dlg.setFileMode(QFileDialog::ExistingFiles);
    dlg.setNameFilter("*.txt");
    dlg.fileDialog()->setDirectory(tmp.path());

    LarkTest::onNextModal([&](QWidget *w) {
        QLineEdit *edt = dlg.fileDialog()->findChild<QLineEdit *>("fileNameEdit");
        QPushButton *open = button(&dlg, QDialogButtonBox::Open);
        if (!edt || !open) {
            qobject_cast<QDialog *>(w)->reject();
            return;
        }
        // the directory is read by a thread of the dialog's model: typing before it
        // has listed both files lets the completer race the typed names
        QListView *list = dlg.fileDialog()->findChild<QListView *>("listView");
        if (list)
            (void)QTest::qWaitFor([list] { return list->model()->rowCount(list->rootIndex()) == 2; }, 5000);
        edt->clear();
        QTest::keyClicks(edt, "\"a.txt\" \"b.txt\"");
        QTest::mouseClick(open, Qt::LeftButton);
    });

    QCOMPARE(dlg.exec(), int(QDialog::Accepted));
    QStringList files = dlg.selectedFiles();
    files.sort();
    QCOMPARE(files, QStringList() << tmp.filePath("a.txt") << tmp.filePath("b.txt"));
    QCOMPARE(dlg.exitfile(), tmp.filePath("a.txt"));
}

void TstQtFileDialog::suffixOfFilter_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("suffix");

    QTest::newRow("plain pattern") << "*.txt" << ".txt";
    QTest::newRow("described") << "Text (*.csv *.txt)" << ".csv";
    QTest::newRow("every file") << "*" << "";
    QTest::newRow("every file with a dot") << "*.*" << "";
    QTest::newRow("described every file") << "All (*)" << "";
    QTest::newRow("wildcard inside") << "*.t?t" << "";
    QTest::newRow("empty") << "" << "";
}

void TstQtFileDialog::suffixOfFilter()
{
    QFETCH(QString, filter);
    QFETCH(QString, suffix);
    QCOMPARE(QtFileDialog::suffixOfFilter(filter), suffix);
}

LARK_TEST_MAIN(TstQtFileDialog)
#include "tst_qtfiledialog.moc"
