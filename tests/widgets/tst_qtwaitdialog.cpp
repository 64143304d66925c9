#include "LarkTest.h"
#include "QtWaitDialog.h"
#include "WaitingSpinnerWidget.h"

#include <QtTest>

class TstQtWaitDialog : public QObject
{
    Q_OBJECT

private slots:
    // the host of the spinner takes no input while it turns, and gets it back
    void messageBlocksInputUntilItStopsItselfAfterItsTime()
    {
        QWidget window;
        window.setGeometry(40, 30, 800, 500);
        QtWaitDialog *dlg = QtWaitDialog::Instance();
        dlg->SetParentWidget(&window);
        dlg->ShowWaitMessage("正在连接...", 1000, false);
        QVERIFY(dlg->isVisible() && !dlg->spinner()->parentWidget()->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(!dlg->isVisible(), 3000);
        QVERIFY(!dlg->spinner()->isSpinning() && dlg->spinner()->parentWidget()->isEnabled());
    }

    void modalMessageReturnsWhenStopped()
    {
        QtWaitDialog *dlg = QtWaitDialog::Instance();
        bool wasModal = false;
        LarkTest::onNextModal([&](QWidget *w) {
            wasModal = (w == dlg);
            QtWaitDialog::Instance()->Stop();
        });
        dlg->ShowWaitMessage("请稍候", 0, true);
        QVERIFY(wasModal && !dlg->isVisible());
    }
};

LARK_TEST_MAIN(TstQtWaitDialog)
#include "tst_qtwaitdialog.moc"
