#include "LarkTest.h"
#include "QtWaitDialog.h"
#include "WaitingSpinnerWidget.h"

#include <QtTest>

class TstQtWaitDialog : public QObject
{
    Q_OBJECT

private slots:
    void messageShowsCentredAndStopsItselfAfterItsTime()
    {
        QWidget window;
        window.setGeometry(40, 30, 800, 500);
        QtWaitDialog *dlg = QtWaitDialog::Instance();
        dlg->SetParentWidget(&window);
        dlg->ShowWaitMessage("正在连接...", 300, false);
        QVERIFY(dlg->isVisible());
        QCOMPARE(dlg->pos(), QPoint(40 + (800 - dlg->width()) / 2, 30 + (500 - dlg->height()) / 2));
        QVERIFY(dlg->spinner()->isSpinning());
        QVERIFY(!dlg->spinner()->parentWidget()->isEnabled()); // the spinner's host, while it turns
        QTRY_VERIFY_WITH_TIMEOUT(!dlg->isVisible(), 3000);
        QVERIFY(!dlg->spinner()->isSpinning());
        QVERIFY(dlg->spinner()->parentWidget()->isEnabled());
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
        QVERIFY(wasModal);
        QVERIFY(!dlg->isVisible());
    }
};

LARK_TEST_MAIN(TstQtWaitDialog)
#include "tst_qtwaitdialog.moc"
