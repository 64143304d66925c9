#include "LarkTest.h"
#include "WaitingSpinnerWidget.h"

#include <QtTest>

class TstWaitingSpinnerWidget : public QObject
{
    Q_OBJECT
private slots:
    // while it turns, the window under it takes no input
    void startDisablesTheParentAndTurns()
    {
        QWidget host;
        host.resize(200, 100);
        host.show();
        WaitingSpinnerWidget *spinner = new WaitingSpinnerWidget(&host, true, true);
        spinner->setRevolutionsPerSecond(5.0);
        spinner->start();
        QVERIFY(spinner->isVisible());
        QVERIFY(!host.isEnabled());
        QTRY_VERIFY(spinner->currentCounter() > 0);
        spinner->stop();
        QVERIFY(!spinner->isVisible());
        QVERIFY(host.isEnabled());
    }
};

LARK_TEST_MAIN(TstWaitingSpinnerWidget)
#include "tst_waitingspinnerwidget.moc"
