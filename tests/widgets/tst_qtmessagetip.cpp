#include "LarkTest.h"
#include "QtMessageTip.h"

#include <QElapsedTimer>
#include <QFontMetrics>
#include <QtTest>

// Timing tests measure with a lower bound only: a hide that comes early is the fault
// they look for, a late one is just a slow machine.
class TstQtMessageTip : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void instanceIsOneObject();
    void emptyMessageDoesNothing();
    void tipShowsAtThePositionAndHidesAfterTwoSeconds();
    void replacedToastShowsTheSecondForItsFullTime();
    void toastOfHundredMillisecondsDoesNotHideByItself();
    void pendingTipHideDoesNotTakeDownALaterToast();
    void toastIsCentredOnTheRegisteredWindow();
    void tipAndToastArePaintedInTheirColours();

private:
    QtMessageTip *tip() { return QtMessageTip::Instance(); }
};

void TstQtMessageTip::init()
{
    tip()->hide();
}

void TstQtMessageTip::cleanup()
{
    tip()->hide();
}

void TstQtMessageTip::instanceIsOneObject()
{
    QCOMPARE(QtMessageTip::Instance(), QtMessageTip::Instance());
    QVERIFY(tip()->windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(tip()->sizeHint(), QSize(120, 40));
}

void TstQtMessageTip::emptyMessageDoesNothing()
{
    tip()->ShowMessage("before", QPoint(10, 10));
    tip()->hide();
    tip()->ShowMessage(QString(), QPoint(300, 300));
    QVERIFY(!tip()->isVisible());
    QCOMPARE(tip()->text(), QString("before"));
    QCOMPARE(tip()->pos(), QPoint(10, 10));
}

void TstQtMessageTip::tipShowsAtThePositionAndHidesAfterTwoSeconds()
{
    const QString text = "当前设置超出范围！";
    tip()->ShowMessage(text, QPoint(100, 200));
    QElapsedTimer shown;
    shown.start();

    QVERIFY(tip()->isVisible());
    QCOMPARE(tip()->mode(), int(QtMessageTip::ToolTip));
    QCOMPARE(tip()->pos(), QPoint(100, 200));
    QFont font("Microsoft YaHei");
    font.setPixelSize(13);
    const QFontMetrics fm(font);
    QCOMPARE(tip()->size(), QSize(fm.horizontalAdvance(text) + 20, fm.height() + 25));

    QTRY_VERIFY_WITH_TIMEOUT(!tip()->isVisible(), 4000);
    QVERIFY2(shown.elapsed() >= 1800, qPrintable(QString::number(shown.elapsed())));
}

void TstQtMessageTip::replacedToastShowsTheSecondForItsFullTime()
{
    tip()->ShowToastMessage("first", 2000);
    QTest::qWait(500);
    tip()->ShowToastMessage("second", 2000);
    QElapsedTimer shown;
    shown.start();
    QCOMPARE(tip()->text(), QString("second"));
    QCOMPARE(tip()->mode(), int(QtMessageTip::Toast));

    QTRY_VERIFY_WITH_TIMEOUT(!tip()->isVisible(), 4000);
    // the first toast's time would have run out 1500 ms after the second was shown
    QVERIFY2(shown.elapsed() >= 1800, qPrintable(QString::number(shown.elapsed())));
    QVERIFY(tip()->text().isEmpty());
}

void TstQtMessageTip::toastOfHundredMillisecondsDoesNotHideByItself()
{
    tip()->ShowToastMessage("timed", 300);
    tip()->ShowToastMessage("stays", 100);
    QTest::qWait(800);
    QVERIFY(tip()->isVisible());
    QCOMPARE(tip()->text(), QString("stays"));
}

void TstQtMessageTip::pendingTipHideDoesNotTakeDownALaterToast()
{
    tip()->ShowMessage("tip", QPoint(0, 0));
    QTest::qWait(300);
    tip()->ShowToastMessage("toast", 2500);
    QElapsedTimer shown;
    shown.start();
    QTRY_VERIFY_WITH_TIMEOUT(!tip()->isVisible(), 5000);
    QVERIFY2(shown.elapsed() >= 2300, qPrintable(QString::number(shown.elapsed())));
}

void TstQtMessageTip::toastIsCentredOnTheRegisteredWindow()
{
    QWidget window;
    window.setGeometry(100, 80, 600, 400);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    tip()->SetParentWidget(&window);
    tip()->SetParentWidget(nullptr); // ignored: the window stays registered
    tip()->ShowToastMessage("配置已恢复！", 2000);

    const QRect r = tip()->geometry();
    QCOMPARE(r.x(), window.x() + (window.width() - r.width()) / 2);
    QCOMPARE(r.y(), window.y() + (window.height() - r.height()) / 2);
}

void TstQtMessageTip::tipAndToastArePaintedInTheirColours()
{
    const QString dir = qEnvironmentVariable("LARK_GRAB_DIR");

    tip()->ShowMessage("当前设置超出范围！", QPoint(20, 20));
    QImage img = tip()->grab().toImage();
    if (!dir.isEmpty())
        img.save(dir + "/tip.png");
    QCOMPARE(img.pixelColor(0, 0).alpha(), 0);                      // left of the arrow
    QCOMPARE(img.pixelColor(16, 6), QColor("#f03e10"));              // inside the arrow
    QCOMPARE(img.pixelColor(4, img.height() / 2 + 5), QColor("#f03e10"));

    tip()->ShowToastMessage("配置已恢复！", 2000);
    img = tip()->grab().toImage();
    if (!dir.isEmpty())
        img.save(dir + "/toast.png");
    QCOMPARE(img.pixelColor(0, 0).alpha(), 0);
    // the antialiased grey rim is lighter than the fill
    QVERIFY(qGray(img.pixel(2, img.height() / 2)) > qGray(QColor("#252526").rgb()));
    QCOMPARE(img.pixelColor(5, img.height() / 2), QColor("#252526"));
}

LARK_TEST_MAIN(TstQtMessageTip)
#include "tst_qtmessagetip.moc"
