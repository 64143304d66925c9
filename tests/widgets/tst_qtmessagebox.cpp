#include "LarkTest.h"
#include "QtMessageBox.h"
#include "QtTitleBar.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

using BoxFunction = int (*)(const QString &, const QString &);
Q_DECLARE_METATYPE(BoxFunction)

class TstQtMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void staticsAnswerOneOnlyForTheOkButton_data();
    void staticsAnswerOneOnlyForTheOkButton();
    void eachTypeHasItsIconSizeAndButtonText_data();
    void eachTypeHasItsIconSizeAndButtonText();
    void boxIsPaintedWithTitleContentAndButtonStrip();
};

void TstQtMessageBox::initTestCase()
{
    qRegisterMetaType<BoxFunction>();
}

void TstQtMessageBox::staticsAnswerOneOnlyForTheOkButton_data()
{
    QTest::addColumn<BoxFunction>("box");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("result");

    const struct {
        const char *name;
        BoxFunction fn;
        int type;
    } boxes[] = {
        {"infomation", &QtMessageBox::infomation, QtMessageBox::Infomation},
        {"warning", &QtMessageBox::warning, QtMessageBox::Warning},
        {"question", &QtMessageBox::question, QtMessageBox::Question},
        {"remind", &QtMessageBox::remind, QtMessageBox::Remind},
        {"deleteConfirm", &QtMessageBox::deleteConfirm, QtMessageBox::DeleteConfirm},
    };
    // Return and Space answer "no" like Escape, so that a stray key never confirms
    const struct {
        const char *answer;
        int result;
    } answers[] = {
        {"ok", 1}, {"cancel", 0}, {"return", 0}, {"space", 0}, {"escape", 0}, {"close", 0},
        {"other key, then ok", 1},
    };
    for (const auto &b : boxes)
        for (const auto &a : answers)
            QTest::newRow(qPrintable(QString("%1: %2").arg(b.name, a.answer)))
                << b.fn << b.type << QString(a.answer) << a.result;
}

void TstQtMessageBox::staticsAnswerOneOnlyForTheOkButton()
{
    QFETCH(BoxFunction, box);
    QFETCH(int, type);
    QFETCH(QString, answer);
    QFETCH(int, result);

    QPointer<QWidget> seen;
    int seenType = -1;
    QString seenTitle;
    QString seenText;
    bool stayedOpen = true;

    LarkTest::onNextModal([&](QWidget *w) {
        seen = w;
        QtMessageBox *mb = qobject_cast<QtMessageBox *>(w);
        QPushButton *ok = w->findChild<QPushButton *>("btnMsgOk");
        QPushButton *cancel = w->findChild<QPushButton *>("btnMsgCancel");
        QToolButton *close = w->findChild<QToolButton *>("btnClose");
        if (!mb || !ok || !cancel || !close) {
            // never leave a modal box behind: the test would hang
            if (QDialog *d = qobject_cast<QDialog *>(w))
                d->reject();
            return;
        }
        seenType = mb->type();
        seenTitle = w->findChild<QLabel *>("winTitle")->text();
        seenText = w->findChild<QLabel *>("labMsgText")->text();

        if (answer == "ok")
            QTest::mouseClick(ok, Qt::LeftButton);
        else if (answer == "cancel")
            QTest::mouseClick(cancel, Qt::LeftButton);
        else if (answer == "return")
            QTest::keyClick(w, Qt::Key_Return);
        else if (answer == "space")
            QTest::keyClick(w, Qt::Key_Space);
        else if (answer == "escape")
            QTest::keyClick(w, Qt::Key_Escape);
        else if (answer == "close")
            QTest::mouseClick(close, Qt::LeftButton);
        else {
            QTest::keyClick(w, Qt::Key_A);
            QTest::keyClick(w, Qt::Key_Enter);
            stayedOpen = w->isVisible();
            QTest::mouseClick(ok, Qt::LeftButton);
        }
    });

    const int got = box("确认恢复默认设置吗?", "询问");

    QCOMPARE(got, result);
    QCOMPARE(seenType, type);
    QCOMPARE(seenTitle, QString("询问"));
    QCOMPARE(seenText, QString("确认恢复默认设置吗?"));
    QVERIFY(stayedOpen);
    // the box deletes itself on close
    QTRY_VERIFY(seen.isNull());
}

void TstQtMessageBox::eachTypeHasItsIconSizeAndButtonText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("okText");
    QTest::addColumn<int>("iconSize");
    QTest::addColumn<int>("minimumWidth");
    QTest::addColumn<bool>("richText");

    QTest::newRow("information") << 0 << "确定" << 50 << 0 << false;
    QTest::newRow("warning") << 1 << "确定" << 50 << 0 << false;
    QTest::newRow("question") << 2 << "确定" << 50 << 0 << false;
    QTest::newRow("plain") << 3 << "确定" << 50 << 0 << false;
    QTest::newRow("remind") << 4 << "继续" << 60 << 0 << false;
    QTest::newRow("delete confirmation") << 5 << "继续" << 60 << 400 << true;
}

void TstQtMessageBox::eachTypeHasItsIconSizeAndButtonText()
{
    QFETCH(int, type);
    QFETCH(QString, okText);
    QFETCH(int, iconSize);
    QFETCH(int, minimumWidth);
    QFETCH(bool, richText);

    QtMessageBox *box = new QtMessageBox(nullptr, QtMessageBox::MessboxType(type));
    box->setMessage("<b>a.txt</b> will go", "删除");
    QCOMPARE(box->findChild<QPushButton *>("btnMsgOk")->text(), okText);
    QCOMPARE(box->findChild<QPushButton *>("btnMsgCancel")->text(), QString("取消"));
    QCOMPARE(box->findChild<QLabel *>("labMsgIcon")->pixmap(Qt::ReturnByValue).size(), QSize(iconSize, iconSize));
    QCOMPARE(box->minimumWidth(), minimumWidth);
    QCOMPARE(box->findChild<QLabel *>("labMsgText")->textFormat() == Qt::RichText, richText);
    QVERIFY(box->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(box->windowFlags() & Qt::WindowStaysOnTopHint);
    QCOMPARE(box->findChild<QtTitleBar *>("msgBoxTitle")->windowFlagsOfBar(),
             QtTitleBar::QtWindowFlags(QtTitleBar::QtWindowNoFlag));
    delete box;
}

void TstQtMessageBox::boxIsPaintedWithTitleContentAndButtonStrip()
{
    QtMessageBox *box = new QtMessageBox(nullptr, QtMessageBox::Question);
    box->setMessage("确认恢复默认设置吗?", "询问");
    box->show();
    QVERIFY(QTest::qWaitForWindowExposed(box));
    QCOMPARE(box->sizeHint(), QSize(285, 157));

    const QImage img = box->grab().toImage();
    const QString dir = qEnvironmentVariable("LARK_GRAB_DIR");
    if (!dir.isEmpty())
        img.save(dir + "/messagebox.png");
    // the button strip fills the bottom 35 pixels inside the 1-pixel margin
    QCOMPARE(img.pixelColor(3, img.height() - 5), QColor("#e6e6e6"));
    QCOMPARE(box->findChild<QPushButton *>("btnMsgOk")->parentWidget()->height(), 35);
    box->close();
}

LARK_TEST_MAIN(TstQtMessageBox)
#include "tst_qtmessagebox.moc"
