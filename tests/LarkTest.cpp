#include "LarkTest.h"

#include <QApplication>
#include <QDir>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <memory>
#include <vector>

namespace LarkTest {

void onNextModal(std::function<void(QWidget *)> handler, int timeoutMs)
{
    // Polls for the modal widget. A widget must be seen on two ticks in a row before
    // the handler runs, so the dialog's own event loop is running by then; and if the
    // handled widget is still up and modal half a second later (its answer was lost
    // because its loop was not entered yet), the handler runs again, a few times.
    struct State {
        QElapsedTimer elapsed;
        QPointer<QWidget> seen;
        QPointer<QWidget> handled;
        bool called = false;
        int handledTicks = 0;
        int retries = 0;
    };
    auto *timer = new QTimer(qApp);
    auto state = std::make_shared<State>();
    state->elapsed.start();
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, state, handler, timeoutMs]() {
        auto finish = [timer] {
            timer->stop();
            timer->deleteLater();
        };
        QWidget *w = QApplication::activeModalWidget();
        const bool up = w && w->isVisible();
        if (state->called) {
            if (!(state->handled && up && w == state->handled))
                finish();
            else if (++state->handledTicks >= 50 && state->retries < 5) {
                ++state->retries;
                state->handledTicks = 0;
                handler(w);
            }
            return;
        }
        if (up && w == state->seen) {
            state->called = true;
            state->handled = w;
            handler(w);
            return;
        }
        state->seen = up ? w : nullptr;
        if (state->elapsed.elapsed() > timeoutMs)
            finish();
    });
    timer->start();
}

bool chooseFileInDialog(QWidget *dialog, const QString &path)
{
    auto *fd = qobject_cast<QFileDialog *>(dialog);
    if (!fd)
        fd = dialog->findChild<QFileDialog *>();
    if (!fd)
        return false;
    if (auto *edit = fd->findChild<QLineEdit *>("fileNameEdit"))
        edit->setText(path);
    else
        fd->selectFile(path);
    QMetaObject::invokeMethod(fd, "accept");
    return true;
}

void answerNextFileDialog(const QString &path, const QString &filter)
{
    onNextModal([path, filter](QWidget *w) {
        auto *inner = qobject_cast<QFileDialog *>(w);
        if (!inner)
            inner = w->findChild<QFileDialog *>();
        auto *dialog = qobject_cast<QDialog *>(w);
        if (!inner || !dialog) {
            w->close();
            return;
        }
        if (!filter.isEmpty())
            inner->selectNameFilter(filter);
        for (int i = 0; i < 40 && dialog->isVisible(); ++i) {
            chooseFileInDialog(dialog, path);
            if (dialog->isVisible())
                QTest::qWait(50);
        }
        if (dialog->isVisible())
            dialog->reject();
    });
}

} // namespace LarkTest
