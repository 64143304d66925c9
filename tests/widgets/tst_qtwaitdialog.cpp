#include "LarkTest.h"
#include "QtWaitDialog.h"
#include "WaitingSpinnerWidget.h"
#include "UiSkin.h"

#include <QtTest>

class TstQtWaitDialog : public QObject
{
    Q_OBJECT

private slots:
    void spinnerIsSetUpForTheDialog();
    void messageShowsSpinsAndStopsItselfAfterItsTime();
    void modalMessageReturnsWhenStopped();
    void dialogIsCentredOnTheRegisteredWindow();
};

void TstQtWaitDialog::spinnerIsSetUpForTheDialog()
{
    QtWaitDialog *dlg = QtWaitDialog::Instance();
    QCOMPARE(QtWaitDialog::Instance(), dlg);
    QCOMPARE(dlg->size(), QSize(300, 100));
    QCOMPARE(dlg->windowModality(), Qt::ApplicationModal);
    WaitingSpinnerWidget *s = dlg->spinner();
    QCOMPARE(s->numberOfLines(), 17);
    QCOMPARE(s->roundness(), 70.0);
    QCOMPARE(s->size(), QSize(52, 52));
    QCOMPARE(s->timerInterval(), 58);
    QVERIFY(!dlg->isVisible());
}

void TstQtWaitDialog::messageShowsSpinsAndStopsItselfAfterItsTime()
{
    QtWaitDialog *dlg = QtWaitDialog::Instance();
    dlg->ShowWaitMessage("正在连接...", 300, false);

    QVERIFY(dlg->isVisible());
    QCOMPARE(dlg->text(), QString("正在连接..."));
    QVERIFY(dlg->spinner()->isSpinning());
    QCOMPARE(dlg->spinner()->color(), QColor(UiSkin::m_strHighLightClr));
    // the spinner's host is disabled while it turns
    QVERIFY(!dlg->spinner()->parentWidget()->isEnabled());

    QTRY_VERIFY_WITH_TIMEOUT(!dlg->isVisible(), 3000);
    QVERIFY(!dlg->spinner()->isSpinning());
    QVERIFY(dlg->spinner()->parentWidget()->isEnabled());
}

void TstQtWaitDialog::modalMessageReturnsWhenStopped()
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
    QVERIFY(!dlg->spinner()->isSpinning());
}

void TstQtWaitDialog::dialogIsCentredOnTheRegisteredWindow()
{
    QWidget window;
    window.setGeometry(40, 30, 800, 500);
    QtWaitDialog *dlg = QtWaitDialog::Instance();
    dlg->SetParentWidget(&window);
    dlg->ShowWaitMessage("x", 0, false);
    QCOMPARE(dlg->pos(), QPoint(40 + 250, 30 + 200));
    dlg->Stop();
}

LARK_TEST_MAIN(TstQtWaitDialog)
#include "tst_qtwaitdialog.moc"
