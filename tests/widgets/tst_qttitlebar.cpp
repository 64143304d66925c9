#include "LarkTest.h"
#include "QtTitleBar.h"

#include <QLabel>
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

QLabel *logoLabel(QWidget *bar)
{
    for (QLabel *lab : bar->findChildren<QLabel *>()) {
        if (lab->objectName() != "winTitle")
            return lab;
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
    void flagsChooseTheButtons_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QStringList>("tips");
        QTest::newRow("main window") << 15
                                     << QStringList{"置顶窗口", "最小化窗口", "最大化", "关闭"};
        QTest::newRow("file dialog") << 7 << QStringList{"最小化窗口", "最大化", "关闭"};
        QTest::newRow("message box") << 1 << QStringList{"关闭"};
        QTest::newRow("everything") << 0xff
                                    << QStringList{"返回", "置顶窗口", "修改皮肤", "系统设置", "最小化窗口",
                                                   "最大化", "关闭"};
    }

    void flagsChooseTheButtons()
    {
        QFETCH(int, flags);
        QFETCH(QStringList, tips);
        Framed f(flags);
        f.window.show();
        QStringList got;
        // layout order is the order on screen
        QList<QToolButton *> buttons = f.bar->findChildren<QToolButton *>();
        std::sort(buttons.begin(), buttons.end(),
                  [](QToolButton *a, QToolButton *b) { return a->x() < b->x(); });
        for (QToolButton *btn : buttons) {
            got << btn->toolTip();
            QCOMPARE(btn->focusPolicy(), Qt::NoFocus);
        }
        QCOMPARE(got, tips);
        QCOMPARE(buttonByTip(f.bar, "关闭")->objectName(), QString("btnClose"));
        QCOMPARE(buttonByTip(f.bar, "关闭")->text(), QString(QChar(0xE68B)));
        // only the exact value 1 hides the logo
        QCOMPARE(logoLabel(f.bar)->isHidden(), flags == 1);
        QCOMPARE(f.bar->minimumHeight(), 30);
    }

    void checkWindowFlagNeedsAllBits_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("asked");
        QTest::addColumn<bool>("result");
        QTest::newRow("one bit present") << 15 << 4 << true;
        QTest::newRow("two bits present") << 15 << 6 << true;
        QTest::newRow("absent bit") << 15 << 16 << false;
        QTest::newRow("one of two bits absent") << 15 << 20 << false;
        QTest::newRow("message box has only bit 1") << 1 << 1 << true;
        QTest::newRow("message box has no minimise") << 1 << 4 << false;
    }

    void checkWindowFlagNeedsAllBits()
    {
        QFETCH(int, flags);
        QFETCH(int, asked);
        QFETCH(bool, result);
        QtTitleBar bar(nullptr, flags);
        QCOMPARE(bar.checkWindowFlag(QtTitleBar::QtWindowFlags(QFlag(asked))), result);
    }

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
        sendMouse(f.bar, QEvent::MouseMove, QPoint(40, 30), QPoint(990, 480));
        QCOMPARE(f.window.pos(), start + QPoint(-10, -20));

        sendMouse(f.bar, QEvent::MouseButtonRelease, QPoint(40, 30), QPoint(990, 480));
        sendMouse(f.bar, QEvent::MouseMove, QPoint(10, 10), QPoint(700, 300));
        QCOMPARE(f.window.pos(), start + QPoint(-10, -20));

        // the right button doesn't drag
        sendMouse(f.bar, QEvent::MouseButtonPress, QPoint(50, 10), QPoint(700, 300), Qt::RightButton);
        sendMouse(f.bar, QEvent::MouseMove, QPoint(80, 30), QPoint(750, 350));
        QCOMPARE(f.window.pos(), start + QPoint(-10, -20));
    }

    void doubleClickTogglesMaximiseByTheMinimiseBit_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("toggles");
        QTest::newRow("main window, 15") << 15 << true;
        QTest::newRow("file dialog, 7") << 7 << true;
        QTest::newRow("maximise button without minimise bit, 3") << 3 << false;
        QTest::newRow("message box, 1") << 1 << false;
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
        if (btnMax) {
            QCOMPARE(btnMax->text(), QString(QChar(toggles ? 0xE60B : 0xE60E)));
            QCOMPARE(btnMax->toolTip(), QString(toggles ? "还原窗口" : "最大化"));
            QCOMPARE(btnMax->font().pointSize(), toggles ? 15 : 9);
        }

        QTest::mouseDClick(f.bar, Qt::LeftButton, Qt::NoModifier, QPoint(60, 10));
        QVERIFY(!f.window.isMaximized());
        if (btnMax && toggles) {
            QCOMPARE(btnMax->text(), QString(QChar(0xE60E)));
            QCOMPARE(btnMax->toolTip(), QString("最大化窗口"));
            QCOMPARE(btnMax->font().pointSize(), 9);
        }
    }

    void maximiseButtonTogglesTheParent()
    {
        Framed f(15);
        f.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f.window));
        QToolButton *btnMax = buttonByTip(f.bar, "最大化");
        QVERIFY(btnMax);
        btnMax->click();
        QVERIFY(f.window.isMaximized());
        btnMax->click();
        QVERIFY(!f.window.isMaximized());
        QCOMPARE(btnMax->text(), QString(QChar(0xE60E)));
    }

    void closeButtonOnlySignals()
    {
        Framed f(15);
        f.window.show();
        QSignalSpy spy(f.bar, SIGNAL(signalCloseWindow()));
        QTest::mouseClick(buttonByTip(f.bar, "关闭"), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        // closing is the owner's business
        QVERIFY(f.window.isVisible());
    }

    void stayOnTopOnlyToggles()
    {
        Framed f(15);
        f.window.show();
        const Qt::WindowFlags before = f.window.windowFlags();
        QToolButton *btnTop = buttonByTip(f.bar, "置顶窗口");
        QCOMPARE(btnTop->objectName(), QString("btnTop"));
        QTest::mouseClick(btnTop, Qt::LeftButton);
        QVERIFY(btnTop->isChecked());
        QTest::mouseClick(btnTop, Qt::LeftButton);
        QVERIFY(!btnTop->isChecked());
        QCOMPARE(f.window.windowFlags(), before);
    }

    void nullLogoHidesTheLogo()
    {
        Framed f(15);
        QLabel *logo = logoLabel(f.bar);
        QVERIFY(!logo->isHidden());
        QPixmap pix(16, 16);
        pix.fill(Qt::red);
        f.bar->setWinLogo(pix);
        QVERIFY(!logo->isHidden());
        QCOMPARE(logo->pixmap()->size(), QSize(16, 16));
        f.bar->setWinLogo(QPixmap());
        QVERIFY(logo->isHidden());
    }

    void titleGoesToTheTitleLabel()
    {
        QtTitleBar bar(nullptr, 1);
        bar.setWinTitle("云雀多功能调试助手");
        QLabel *title = bar.findChild<QLabel *>("winTitle");
        QVERIFY(title);
        QCOMPARE(title->text(), QString("云雀多功能调试助手"));
    }

    void backButtonTradesPlacesWithTheLogo()
    {
        Framed f(15 | 128);
        QToolButton *back = buttonByTip(f.bar, "返回");
        QVERIFY(back);
        QCOMPARE(back->objectName(), QString("btnBack"));
        QLabel *logo = logoLabel(f.bar);
        QVERIFY(back->isHidden());

        f.bar->setBtnBackVisible(true);
        QVERIFY(!back->isHidden());
        QVERIFY(logo->isHidden());
        QSignalSpy spy(f.bar, SIGNAL(signalBtnBackClicked()));
        back->click();
        QCOMPARE(spy.count(), 1);

        f.bar->setBtnBackVisible(false);
        QVERIFY(back->isHidden());
        QVERIFY(!logo->isHidden());
    }

    void backVisibilityWithoutBackButtonLeavesTheLogo()
    {
        Framed f(15);
        f.bar->setBtnBackVisible(true);
        QVERIFY(!logoLabel(f.bar)->isHidden());
    }
};

LARK_TEST_MAIN(TstQtTitleBar)
#include "tst_qttitlebar.moc"
