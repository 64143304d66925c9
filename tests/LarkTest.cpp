#include "LarkTest.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <memory>

namespace LarkTest {

QTimer *onNextModal(std::function<void(QWidget *)> handler, int timeoutMs)
{
    // A widget must be seen on two ticks in a row before the handler runs, so that the
    // dialog's own event loop is running by then; if it is still up and modal half a
    // second later (its answer was lost), the handler runs again, a few times.
    struct State {
        QElapsedTimer elapsed;
        QPointer<QWidget> seen;
        bool called = false;
        int ticks = 0;
        int retries = 0;
    };
    auto *timer = new QTimer(qApp);
    auto state = std::make_shared<State>();
    state->elapsed.start();
    QObject::connect(timer, &QTimer::timeout, timer, [timer, state, handler, timeoutMs]() {
        QWidget *w = QApplication::activeModalWidget();
        if (w && !w->isVisible())
            w = nullptr;
        if (state->called && state->seen && w == state->seen) {
            if (++state->ticks >= 50 && state->retries < 5) {
                ++state->retries;
                state->ticks = 0;
                handler(w);
            }
        } else if (!state->called && w && w == state->seen) {
            state->called = true;
            handler(w);
        } else if (state->called || state->elapsed.elapsed() > timeoutMs) {
            timer->stop();
            timer->deleteLater();
        } else {
            state->seen = w;
        }
    });
    timer->start(10);
    return timer;
}

QString modalText(const std::function<void()> &action, const QString &key)
{
    auto text = std::make_shared<QStringList>();
    QPointer<QTimer> watcher = onNextModal([text, key](QWidget *box) {
        text->clear();
        for (QLabel *l : box->findChildren<QLabel *>())
            if (!l->text().isEmpty())
                *text << l->text();
        key.isEmpty() ? (void)box->close() : click(box, key);
    });
    action();
    // a box the action opened is closed by now: a later one is another's
    if (watcher) {
        watcher->stop();
        watcher->deleteLater();
    }
    return text->join(": ");
}

QWidget *inGroup(const QObject *parent, const QString &title, int row)
{
    auto *group = find<QGroupBox>(parent, title);
    auto *grid = group ? qobject_cast<QGridLayout *>(group->layout()) : nullptr;
    QLayoutItem *item = grid ? grid->itemAtPosition(row, 1) : nullptr;
    return item ? item->widget() : nullptr;
}

void answerNextFileDialog(const QString &path, const QString &filter)
{
    onNextModal([path, filter](QWidget *w) {
        auto *fd = qobject_cast<QFileDialog *>(w);
        if (!fd)
            fd = w->findChild<QFileDialog *>();
        auto *dialog = qobject_cast<QDialog *>(w);
        if (!fd || !dialog) {
            w->close();
            return;
        }
        if (!filter.isEmpty())
            fd->selectNameFilter(filter);
        // selectFile() alone leaves the name field empty while it has focus, so the
        // dialog would refuse; and a dialog still loading its folder may drop it
        for (int i = 0; i < 40 && dialog->isVisible(); ++i) {
            if (auto *edit = fd->findChild<QLineEdit *>("fileNameEdit"))
                edit->setText(path);
            else
                fd->selectFile(path);
            QMetaObject::invokeMethod(fd, "accept");
            if (dialog->isVisible())
                QTest::qWait(50);
        }
        if (dialog->isVisible())
            dialog->reject();
    });
}

bool showExposed(QWidget *w, const QSize &size)
{
    if (size.isValid())
        w->resize(size);
    w->show();
    return QTest::qWaitForWindowExposed(w);
}

void click(QWidget *parent, const QString &key)
{
    for (QAbstractButton *b : parent->findChildren<QAbstractButton *>())
        if (b->text() == key || b->objectName() == key)
            return QTest::mouseClick(b, Qt::LeftButton);
    QTest::qFail(qPrintable("no button " + key), __FILE__, __LINE__);
}

PaintCounter::PaintCounter(QWidget *watched) { watched->installEventFilter(this); }

bool PaintCounter::eventFilter(QObject *, QEvent *e)
{
    if (e->type() == QEvent::Paint) {
        ++count;
        if (onPaint)
            onPaint();
    }
    return false;
}

} // namespace LarkTest
