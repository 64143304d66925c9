#include "LarkTest.h"
#include "QtTitleBar.h"

#include <QTest>
#include <QtWidgets>

class TstQtTitleBar : public QObject
{
    Q_OBJECT

    QWidget window;
    QtTitleBar *bar = nullptr;

    // the window with the bar on top, as the main window and the dialogs build it
    void frame(int flags)
    {
        delete window.layout();
        delete bar;
        bar = new QtTitleBar(&window, flags);
        (new QVBoxLayout(&window))->addWidget(bar);
        window.showNormal();
        window.setGeometry(100, 100, 400, 200);
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }

private slots:
    // a double click maximises only a window that may be minimised and maximised
    void doubleClickTogglesMaximise_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("toggles");
        QTest::newRow("main window, 15") << 15 << true;
        QTest::newRow("maximise button without minimise bit, 3") << 3 << false;
    }

    void doubleClickTogglesMaximise()
    {
        QFETCH(int, flags);
        frame(flags);
        QTest::mouseDClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(60, 10));
        QTEST(window.isMaximized(), "toggles");
        QTest::mouseDClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(60, 10));
        QVERIFY(!window.isMaximized());
    }
};

LARK_TEST_MAIN(TstQtTitleBar)
#include "tst_qttitlebar.moc"
