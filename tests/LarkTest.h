#ifndef LARKTEST_H
#define LARKTEST_H

#include "LarkTestCore.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QString>
#include <functional>

class QTimer;
class QWidget;

// Helpers of tests that drive widgets.
namespace LarkTest {

// a QApplication at 96 dpi, so that sizes and fonts do not follow the test machine
class TestApplication : public QApplication
{
public:
    TestApplication(int &argc, char **argv)
        : QApplication(argc, argv)
    {
        setAttribute(Qt::AA_Use96Dpi, true);
    }
};

// Calls handler with the next modal widget that becomes active (checked every 10 ms,
// for at most timeoutMs); a test that opens a modal dialog closes it through this.
// Returns the watcher, which ends itself.
QTimer *onNextModal(std::function<void(QWidget *)> handler, int timeoutMs = 5000);

// Runs action, which returns once the box it opened is closed, answers that box with
// the button whose text or object name is key (closes it when key is empty), and gives
// its non-empty label texts joined by ": " (title first), or "" when no box came.
QString modalText(const std::function<void()> &action, const QString &key = QString());

// Answers the next modal file dialog (a QFileDialog, or a dialog holding one) with path
// and the name filter, if given, as a user would: typed into the name field, then
// accepted; a dialog that never takes the answer is rejected, so the test fails.
void answerNextFileDialog(const QString &path, const QString &filter = QString());

// Shows w, resized first when a size is given, and waits until the window system shows it.
bool showExposed(QWidget *w, const QSize &size = QSize());

// Clicks the first button under parent whose text or object name is key; fails the
// test when there is none.
void click(QWidget *parent, const QString &key);

// Counts the paint events of the widget it watches; onPaint runs at each, for what a
// test must see as it was painted.
struct PaintCounter : QObject {
    explicit PaintCounter(QWidget *watched);
    bool eventFilter(QObject *, QEvent *e) override;
    int count = 0;
    std::function<void()> onPaint;
};
} // namespace LarkTest

// main() of a test class that drives widgets
#define LARK_TEST_MAIN(Class) \
    int main(int argc, char **argv) { return LarkTest::runTest<LarkTest::TestApplication, Class>(argc, argv); }

namespace LarkTest {
// the widget in column 1 of a row of the grid of parent's group box with that title
QWidget *inGroup(const QObject *parent, const QString &title, int row);

// what every page's rig holds: the page, its notices, its children by name
template <class Page>
struct PageRig {
    Page page;
    QSignalSpy notify{&page, SIGNAL(signalNotify(QString, int))};
    template <class T>
    T *child(const QString &name) { return find<T>(&page, name); }
    void press() { child<QPushButton>("btnOpen")->click(); }
};
} // namespace LarkTest

#endif // LARKTEST_H
