#include "LarkTest.h"
#include "QtFileDialog.h"

#include <QtWidgets>
#include <QtTest>

Q_DECLARE_METATYPE(QFileDialog::AcceptMode)

// Every case is answered in the real dialog, typed and clicked as a user would.
class TstQtFileDialog : public QObject
{
    Q_OBJECT
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
        QTest::newRow("save with every file") << save << "*.*" << "data" << "ok" << "data";
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
            auto *box = dlg.fileDialog()->findChild<QDialogButtonBox *>("buttonBox");
            const auto which = answer == "cancel" ? QDialogButtonBox::Cancel
                               : mode == QFileDialog::AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open;
            QAbstractButton *btn = answer == "close" ? w->findChild<QToolButton *>("btnClose")
                                   : box ? static_cast<QAbstractButton *>(box->button(which)) : nullptr;
            if (btn && btn->isEnabled())
                QTest::mouseClick(btn, Qt::LeftButton);
            else if (QDialog *d = qobject_cast<QDialog *>(w))
                chosen.isEmpty() ? d->accept() : d->reject(); // makes the comparison fail
        });

        QCOMPARE(dlg.exec(), int(chosen.isEmpty() ? QDialog::Rejected : QDialog::Accepted));
        if (!chosen.isEmpty())
            QCOMPARE(dlg.exitfile(), QDir(tmp.path()).filePath(chosen));
    }
};

LARK_TEST_MAIN(TstQtFileDialog)
#include "tst_qtfiledialog.moc"
