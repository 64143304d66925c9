#include "ColorDisplay.h"
#include "ColorGridDisplay.h"
#include "LarkTest.h"
#include "QtColorPanel.h"
#include "QtStyleDialog.h"
#include "QtTabBar.h"
#include "UiSkin.h"

#include <QFontDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QtTest>

namespace {
QStringList s_debugLines;
QtMessageHandler s_previousHandler = nullptr;
// keeps the debug lines, lets everything else through
void catchDebug(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtDebugMsg)
        s_debugLines << message;
    else
        s_previousHandler(type, context, message);
}
} // namespace

class TstQtStyleDialog : public QObject
{
    Q_OBJECT

    static QtColorPanel *panel(QWidget *dialog, int index)
    {
        return qobject_cast<QtColorPanel *>(dialog->findChild<QStackedWidget *>()->widget(index));
    }
    static void click(QWidget *parent, const QString &text)
    {
        for (QAbstractButton *b : parent->findChildren<QAbstractButton *>())
            if (b->text() == text)
                return QTest::mouseClick(b, Qt::LeftButton);
        QFAIL(qPrintable("no button " + text));
    }
    // picks swatch id of a panel's base grid, as a user would
    static void pickBaseColor(QtColorPanel *panel, int id)
    {
        ColorGridDisplay *grid = panel->baseGrid();
        QTest::mouseClick(grid, Qt::LeftButton, Qt::NoModifier, ColorGridDisplay::cellRect(grid->size(), 6, 8, id).center());
    }

private slots:
    void init()
    {
        s_debugLines.clear();
        s_previousHandler = qInstallMessageHandler(catchDebug);
    }
    void cleanup() { qInstallMessageHandler(s_previousHandler); }

    // both buttons of the background tab accept; the choice is only logged
    void backgroundButtonsAcceptAndLog_data()
    {
        QTest::addColumn<QString>("button");
        QTest::newRow("confirm") << "确认";
        QTest::newRow("cancel") << "取消";
    }
    void backgroundButtonsAcceptAndLog()
    {
        QFETCH(QString, button);
        LarkTest::onNextModal([&](QWidget *dialog) {
            pickBaseColor(panel(dialog, 0), 9);
            click(panel(dialog, 0), button);
        });
        QCOMPARE((new QtStyleDialog)->exec(), int(QDialog::Accepted));
        QCOMPARE(s_debugLines, QStringList("accpet SltBackGroundChanged \"#ffff00\""));
    }

    // the tabs switch the pages; the text colour page's buttons reach no one, so the
    // dialog stays open until its title bar closes it, unaccepted and unlogged
    void textColourTabChangesNothing()
    {
        bool stillOpen = false;
        bool textPageShown = false;
        QPointer<QWidget> opened;
        LarkTest::onNextModal([&](QWidget *dialog) {
            opened = dialog;
            click(dialog->findChild<QtTabBar *>(), "字体颜色设置");
            textPageShown = dialog->findChild<QStackedWidget *>()->currentWidget() == panel(dialog, 1);
            pickBaseColor(panel(dialog, 1), 9);
            click(panel(dialog, 1), "确认");
            click(panel(dialog, 1), "取消");
            stillOpen = dialog->isVisible();
            QTest::mouseClick(dialog->findChild<QToolButton *>("btnClose"), Qt::LeftButton);
        });
        QCOMPARE((new QtStyleDialog(nullptr, "发送区设置"))->exec(), int(QDialog::Rejected));
        QVERIFY(textPageShown);
        QVERIFY(stillOpen);
        QCOMPARE(s_debugLines, QStringList());
        QTRY_VERIFY(!opened); // closing deletes it
    }

    // the font page is a part of the dialog; Escape inside it must not leave a blank tab
    void fontTabStaysFilled()
    {
        bool fontShown = false;
        bool stillOpen = false;
        LarkTest::onNextModal([&](QWidget *dialog) {
            click(dialog->findChild<QtTabBar *>(), "字体设置");
            QFontDialog *font = qobject_cast<QFontDialog *>(dialog->findChild<QStackedWidget *>()->currentWidget());
            QTest::keyClick(font->focusWidget() ? font->focusWidget() : font, Qt::Key_Escape);
            fontShown = font->isVisible();
            stillOpen = dialog->isVisible();
            dialog->close();
        });
        QCOMPARE((new QtStyleDialog)->exec(), int(QDialog::Rejected));
        QVERIFY(fontShown);
        QVERIFY(stillOpen);
    }

    // the skin's minimum heights must not let the layout squeeze the colour entry
    void colourEntryKeepsItsHeightUnderTheSkin()
    {
        UiSkin::LoadStyleSheet(0);
        QtStyleDialog dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        int entryHeight = 0;
        for (QLineEdit *edit : panel(&dialog, 0)->colorDisplay()->findChildren<QLineEdit *>())
            if (!edit->isReadOnly())
                entryHeight = edit->height();
        qApp->setStyleSheet(QString());
        QCOMPARE(entryHeight, 26);
    }
};

LARK_TEST_MAIN(TstQtStyleDialog)
#include "tst_qtstyledialog.moc"
