#include "ColorDisplay.h"
#include "ColorGridDisplay.h"
#include "ColorPanelGeometry.h"
#include "LarkTest.h"
#include "QtColorPanel.h"
#include "QtStyleDialog.h"
#include "QtTabBar.h"
#include "UiSkin.h"

#include <QtWidgets>
#include <QtTest>

// the debug lines the dialog logs; everything else goes through
static QStringList s_debugLines;
static QtMessageHandler s_previousHandler = nullptr;

class TstQtStyleDialog : public QObject
{
    Q_OBJECT

    static QtColorPanel *panel(QWidget *dialog, int index)
    {
        return qobject_cast<QtColorPanel *>(dialog->findChild<QStackedWidget *>()->widget(index));
    }
    // picks swatch id of a panel's base grid, as a user would
    static void pickBaseColor(QtColorPanel *panel, int id)
    {
        ColorGridDisplay *grid = panel->baseGrid();
        QTest::mouseClick(grid, Qt::LeftButton, Qt::NoModifier, ColorPanelGeometry::cellRect(grid->size(), 6, 8, id).center());
    }

private slots:
    // the dialog always runs under a skin, whose minimum heights once squeezed its parts
    void initTestCase() { UiSkin::LoadStyleSheet(0); }
    void init()
    {
        s_debugLines.clear();
        s_previousHandler = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &c, const QString &m) {
                type == QtDebugMsg ? void(s_debugLines << m) : s_previousHandler(type, c, m);
            });
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
            LarkTest::click(panel(dialog, 0), button);
        });
        QCOMPARE((new QtStyleDialog)->exec(), int(QDialog::Accepted));
        QCOMPARE(s_debugLines, QStringList("accpet SltBackGroundChanged \"#ffff00\""));
    }

    // the text colour page's buttons reach no one; Escape on the font page leaves the
    // dialog open until its title bar closes it, unaccepted and unlogged
    void otherTabsChangeNothing()
    {
        bool stillOpen = false;
        QPointer<QWidget> opened;
        LarkTest::onNextModal([&](QWidget *dialog) {
            opened = dialog;
            LarkTest::click(dialog->findChild<QtTabBar *>(), "字体颜色设置");
            pickBaseColor(panel(dialog, 1), 9);
            LarkTest::click(panel(dialog, 1), "确认");
            LarkTest::click(panel(dialog, 1), "取消");
            LarkTest::click(dialog->findChild<QtTabBar *>(), "字体设置");
            QWidget *font = dialog->findChild<QStackedWidget *>()->currentWidget();
            QTest::keyClick(font->focusWidget() ? font->focusWidget() : font, Qt::Key_Escape);
            stillOpen = dialog->isVisible();
            QTest::mouseClick(dialog->findChild<QToolButton *>("btnClose"), Qt::LeftButton);
        });
        QCOMPARE((new QtStyleDialog(nullptr, "发送区设置"))->exec(), int(QDialog::Rejected));
        QVERIFY(stillOpen);
        QCOMPARE(s_debugLines, QStringList());
        QTRY_VERIFY(!opened); // closing deletes it
    }
};

LARK_TEST_MAIN(TstQtStyleDialog)
#include "tst_qtstyledialog.moc"
