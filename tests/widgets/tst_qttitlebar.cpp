#include "LarkTest.h"
#include "QtTitleBar.h"

#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// A window with the bar on top, as the main window and the dialogs build it.
struct Framed {
    QWidget window;
    QtTitleBar *bar;
    explicit Framed(int flags)
    {
        bar = new QtTitleBar(&window, flags);
        QVBoxLayout *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(1, 1, 1, 1);
        layout->addWidget(bar);
        layout->addStretch();
        window.setGeometry(100, 100, 400, 200);
    }
};

QToolButton *buttonByTip(QWidget *bar, const QString &tip)
{
    for (QToolButton *btn : bar->findChildren<QToolButton *>()) {
        if (btn->toolTip() == tip)
            return btn;
    }
    return nullptr;
}

void sendMouse(QWidget *w, QEvent::Type type, const QPoint &local, const QPoint &global,
               Qt::MouseButton button = Qt::LeftButton)
{
    const Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
    QMouseEvent ev(type, local, global, type == QEvent::MouseMove ? Qt::NoButton : button, buttons, Qt::NoModifier);
    QApplication::sendEvent(w, &ev);
}

} // namespace

class TstQtTitleBar : public QObject
{
    Q_OBJECT

private slots:
    void draggingTheBarMovesItsParent()
    {
        Framed f(15);
        f.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f.window));
        // pos() includes the window system's frame; the bar works in those terms too
        const QPoint start = f.window.pos();
        sendMouse(f.bar, QEvent::MouseButtonPress, QPoint(50, 10), QPoint(1000, 500));
        sendMouse(f.bar, QEvent::MouseMove, QPoint(80, 30), QPoint(1030, 520));
        QCOMPARE(f.window.pos(), start + QPoint(30, 20));
        sendMouse(f.bar, QEvent::MouseButtonRelease, QPoint(40, 30), QPoint(1030, 520));
        sendMouse(f.bar, QEvent::MouseMove, QPoint(10, 10), QPoint(700, 300));
        QCOMPARE(f.window.pos(), start + QPoint(30, 20));
        // the right button doesn't drag
        sendMouse(f.bar, QEvent::MouseButtonPress, QPoint(50, 10), QPoint(700, 300), Qt::RightButton);
        sendMouse(f.bar, QEvent::MouseMove, QPoint(80, 30), QPoint(750, 350));
        QCOMPARE(f.window.pos(), start + QPoint(30, 20));
    }

    void doubleClickTogglesMaximiseByTheMinimiseBit_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("toggles");
        QTest::newRow("main window, 15") << 15 << true;
        QTest::newRow("maximise button without minimise bit, 3") << 3 << false;
    }

    void doubleClickTogglesMaximiseByTheMinimiseBit()
    {
        QFETCH(int, flags);
        QFETCH(bool, toggles);
        Framed f(flags);
        f.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f.window));
        QToolButton *btnMax = buttonByTip(f.bar, "最大化");
        QTest::mouseDClick(f.bar, Qt::LeftButton, Qt::NoModifier, QPoint(60, 10));
        QCOMPARE(f.window.isMaximized(), toggles);
        QTest::mouseDClick(f.bar, Qt::LeftButton, Qt::NoModifier, QPoint(60, 10));
        QVERIFY(!f.window.isMaximized());
        if (btnMax) {
            btnMax->click();
            QVERIFY(f.window.isMaximized());
        }
    }

    void closeButtonOnlySignals()
    {
        Framed f(1);
        f.window.show();
        QSignalSpy closed(f.bar, SIGNAL(signalCloseWindow()));
        QTest::mouseClick(buttonByTip(f.bar, "关闭"), Qt::LeftButton);
        QCOMPARE(closed.count(), 1);
        QVERIFY(f.window.isVisible()); // closing is the owner's business
    }
};

LARK_TEST_MAIN(TstQtTitleBar)
#include "tst_qttitlebar.moc"
