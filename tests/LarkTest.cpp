#include "LarkTest.h"

#include <QApplication>
#include <QDir>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QElapsedTimer>
#include <memory>
#include <vector>

namespace LarkTest {

namespace {
struct Entry {
    QString name;
    Factory factory;
};
std::vector<Entry> &registry()
{
    static std::vector<Entry> entries;
    return entries;
}
} // namespace

int registerTest(const char *name, Factory factory)
{
    registry().push_back({QString::fromLatin1(name), std::move(factory)});
    return int(registry().size());
}

void cleanAppDirs()
{
    const QString base = QCoreApplication::applicationDirPath();
    QDir(base + "/conf").removeRecursively();
    QDir(base + "/download").removeRecursively();
}

int runAll(int argc, char **argv)
{
    // LARK_TEST_CLASS=Name runs one class; the remaining arguments then go to it
    // (function names, -v2 ...). Without it every class runs with the options only.
    const QString only = qEnvironmentVariable("LARK_TEST_CLASS");
    int failed = 0;
    for (const Entry &e : registry()) {
        if (!only.isEmpty() && e.name != only)
            continue;
        cleanAppDirs();
        std::unique_ptr<QObject> obj(e.factory());
        const int rc = only.isEmpty() ? QTest::qExec(obj.get(), 1, argv) : QTest::qExec(obj.get(), argc, argv);
        if (rc != 0)
            ++failed;
    }
    cleanAppDirs();
    return failed == 0 ? 0 : 1;
}

void onNextModal(std::function<void(QWidget *)> handler, int timeoutMs)
{
    auto *timer = new QTimer(qApp);
    auto *elapsed = new QElapsedTimer;
    elapsed->start();
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, elapsed, handler, timeoutMs]() {
        QWidget *w = QApplication::activeModalWidget();
        if (w && w->isVisible()) {
            timer->stop();
            timer->deleteLater();
            delete elapsed;
            handler(w);
        } else if (elapsed->elapsed() > timeoutMs) {
            timer->stop();
            timer->deleteLater();
            delete elapsed;
        }
    });
    timer->start();
}

QString dataPath(const QString &name)
{
    return QString::fromLatin1(LARK_TEST_DATA_DIR) + "/" + name;
}

} // namespace LarkTest
