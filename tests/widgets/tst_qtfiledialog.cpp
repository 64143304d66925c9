#include "LarkTest.h"
#include "QtFileDialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

Q_DECLARE_METATYPE(QFileDialog::AcceptMode)

// Every case is answered in the real dialog, typed and clicked as a user would.
class TstQtFileDialog : public QObject
{
    Q_OBJECT

    QPushButton *button(QtFileDialog &dlg, QDialogButtonBox::StandardButton which)
    {
        QDialogButtonBox *box = dlg.fileDialog()->findChild<QDialogButtonBox *>("buttonBox");
        return box ? box->button(which) : nullptr;
    }

private slots:
    void chosenPathGetsTheFilterSuffixOnlyWhenSavingWithoutOne_data()
    {
        QTest::addColumn<QFileDialog::AcceptMode>("mode");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("chosen"); // empty: rejected
        const auto save = QFileDialog::AcceptSave;
        QTest::newRow("save without suffix") << save << "*.txt;;*.bin" << "data" << "ok" << "data.txt";
        QTest::newRow("save keeps its own suffix") << save << "*.txt" << "a.bin" << "ok" << "a.bin";
        QTest::newRow("save with a described filter") << save << "文本文件 (*.txt *.log)" << "data" << "ok" << "data.txt";
        QTest::newRow("save with a filter of every file") << save << "*" << "data" << "ok" << "data";
        QTest::newRow("save with every file, dotted") << save << "*.*" << "data" << "ok" << "data";
        QTest::newRow("open returns the path as it is") << QFileDialog::AcceptOpen << "*.txt" << "data" << "ok" << "data";
        QTest::newRow("cancel button") << save << "*.txt" << "data" << "cancel" << "";
        QTest::newRow("title bar close") << save << "*.txt" << "data" << "close" << "";
    }

    void chosenPathGetsTheFilterSuffixOnlyWhenSavingWithoutOne()
    {
        QFETCH(QFileDialog::AcceptMode, mode);
        QFETCH(QString, filter);
        QFETCH(QString, typed);
        QFETCH(QString, answer);
        QFETCH(QString, chosen);

        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        if (mode == QFileDialog::AcceptOpen)
            QVERIFY(QFile(tmp.filePath(typed)).open(QIODevice::WriteOnly));
        QWidget owner;
        QtFileDialog dlg(&owner);
        dlg.setAcceptMode(mode);
        dlg.setNameFilter(filter);
        dlg.fileDialog()->setDirectory(tmp.path());

        LarkTest::onNextModal([&](QWidget *w) {
            // typed as a user would: selectFile leaves a focused name edit alone
            if (QLineEdit *edt = dlg.fileDialog()->findChild<QLineEdit *>("fileNameEdit")) {
                edt->clear();
                QTest::keyClicks(edt, typed);
            }
            QAbstractButton *btn = nullptr;
            if (answer == "close")
                btn = w->findChild<QToolButton *>("btnClose");
            else if (answer == "cancel")
                btn = button(dlg, QDialogButtonBox::Cancel);
            else
                btn = button(dlg, mode == QFileDialog::AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open);
            if (btn && btn->isEnabled())
                QTest::mouseClick(btn, Qt::LeftButton);
            else if (QDialog *d = qobject_cast<QDialog *>(w))
                chosen.isEmpty() ? d->accept() : d->reject(); // makes the comparison fail
        });

        QCOMPARE(dlg.exec(), int(chosen.isEmpty() ? QDialog::Rejected : QDialog::Accepted));
        if (!chosen.isEmpty())
            QCOMPARE(dlg.exitfile(), QDir(tmp.path()).filePath(chosen));
    }

    void severalExistingFilesCanBeChosen()
    {
        QTemporaryDir tmp;
        QVERIFY(QFile(tmp.filePath("a.txt")).open(QIODevice::WriteOnly));
        QVERIFY(QFile(tmp.filePath("b.txt")).open(QIODevice::WriteOnly));
        QtFileDialog dlg;
        dlg.setAcceptMode(QFileDialog::AcceptOpen);
        dlg.setFileMode(QFileDialog::ExistingFiles);
        dlg.setNameFilter("*.txt");
        dlg.fileDialog()->setDirectory(tmp.path());

        LarkTest::onNextModal([&](QWidget *w) {
            QLineEdit *edt = dlg.fileDialog()->findChild<QLineEdit *>("fileNameEdit");
            QPushButton *open = button(dlg, QDialogButtonBox::Open);
            QListView *list = dlg.fileDialog()->findChild<QListView *>("listView");
            if (!edt || !open || !list) {
                qobject_cast<QDialog *>(w)->reject();
                return;
            }
            // the directory is read by a thread of the dialog's model: typing before it
            // has listed both files lets the completer race the typed names
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
};

LARK_TEST_MAIN(TstQtFileDialog)
#include "tst_qtfiledialog.moc"
