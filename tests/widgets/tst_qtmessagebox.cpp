#include "LarkTest.h"
#include "QtMessageBox.h"

#include <QPushButton>
#include <QtTest>

using BoxFunction = int (*)(const QString &, const QString &);
Q_DECLARE_METATYPE(BoxFunction)

class TstQtMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<BoxFunction>(); }

    void staticsAnswerOneOnlyForTheOkButton_data()
    {
        QTest::addColumn<BoxFunction>("box");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("result");
        const QPair<const char *, BoxFunction> boxes[] = {
            {"infomation", &QtMessageBox::infomation}, {"warning", &QtMessageBox::warning},
            {"question", &QtMessageBox::question},     {"remind", &QtMessageBox::remind},
            {"deleteConfirm", &QtMessageBox::deleteConfirm},
        };
        // Return and Space answer "no" like Escape, so that a stray key never confirms
        const QPair<const char *, int> answers[] = {
            {"ok", 1}, {"cancel", 0}, {"return", 0}, {"space", 0}, {"escape", 0}, {"close", 0},
        };
        for (const auto &b : boxes)
            for (const auto &a : answers)
                QTest::newRow(qPrintable(QString("%1: %2").arg(b.first, a.first))) << b.second << QString(a.first) << a.second;
    }

    void staticsAnswerOneOnlyForTheOkButton()
    {
        QFETCH(BoxFunction, box);
        QFETCH(QString, answer);
        LarkTest::onNextModal([&](QWidget *w) {
            const QMap<QString, QString> buttons{{"ok", "btnMsgOk"}, {"cancel", "btnMsgCancel"}, {"close", "btnClose"}};
            const QMap<QString, Qt::Key> keys{{"return", Qt::Key_Return}, {"space", Qt::Key_Space}, {"escape", Qt::Key_Escape}};
            if (QAbstractButton *button = w->findChild<QAbstractButton *>(buttons.value(answer, "-")))
                QTest::mouseClick(button, Qt::LeftButton);
            else if (keys.contains(answer) && w->findChild<QPushButton *>("btnMsgOk"))
                QTest::keyClick(w, keys.value(answer));
            else
                qobject_cast<QDialog *>(w)->reject(); // never leave a modal box behind
        });
        QTEST(box("确认恢复默认设置吗?", "询问"), "result");
    }
};

LARK_TEST_MAIN(TstQtMessageBox)
#include "tst_qtmessagebox.moc"
