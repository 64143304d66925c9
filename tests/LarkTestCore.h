#ifndef LARKTESTCORE_H
#define LARKTESTCORE_H

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QTest>

#include <functional>

class QAbstractItemModel;
class QStandardItemModel;

// What every test executable needs, widgets or not.
namespace LarkTest {

// Offscreen platform unless the caller chose otherwise.
void prepareEnvironment();

// Removes conf/ and download/ beside the test executable, so that a test starts as a
// first start of the program would and leaves nothing for the next one.
void cleanAppDirs();

// A whole file, or nothing when it cannot be read; writeFile replaces what was there.
QByteArray readFile(const QString &path);
bool writeFile(const QString &path, const QByteArray &bytes);

// A folder its user cannot write, for as long as this object lives. Root ignores
// permission bits, so for root it is a tmpfs mounted read-only over the folder;
// anyone else gets the bits taken away. Not ready when root may not mount.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString &path);
    ~ReadOnlyFolder();
    bool isReady() const { return m_bReady; }

private:
    QString m_strPath;
    bool m_bMounted = false;
    bool m_bReady = false;
};

// Calls write(path) where a writer must fail: on a full disk (a 64 KiB tmpfs, filled
// up after path was given the line "original") and in a folder that was removed.
// Empty when both calls returned false and the file on the full disk is still whole
// with nothing left beside it, else what went wrong; "-" where mounting is not allowed.
QString diskFaults(const std::function<bool(const QString &path)> &write);

template <class App, class Test>
int runTest(int argc, char **argv)
{
    prepareEnvironment();
    App app(argc, argv);
    cleanAppDirs();
    int rc;
    {
        Test test;
        rc = QTest::qExec(&test, argc, argv);
    }
    cleanAppDirs();
    return rc;
}

// a table model's cells, rows joined by ';' and cells by '|'; fillModel makes the
// model hold such a text, four columns a row
QString modelCells(const QAbstractItemModel *model);
void fillModel(QStandardItemModel *model, const QString &cells);

// length bytes (all when negative) of the file at path from offset at, "(missing)" when
// it cannot be opened or has no such offset
QByteArray fileBytes(const QString &path, qint64 at = 0, qint64 length = -1);

// the first child of parent of type T whose object name, text or title is key, or nullptr
template <class T>
T *find(const QObject *parent, const QString &key)
{
    for (T *w : parent->findChildren<T *>())
        if (w->objectName() == key || w->property("text").toString() == key || w->property("title").toString() == key)
            return w;
    return nullptr;
}

// the child of parent of type T whose "id" property is id (the rows of the pages' strips)
template <class T>
T *byId(const QObject *parent, int id)
{
    for (T *w : parent->findChildren<T *>())
        if (w->property("id").isValid() && w->property("id").toInt() == id)
            return w;
    return nullptr;
}

// the item texts of a combo box, in order
template <class Box>
QStringList itemTexts(const Box *box)
{
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts << box->itemText(i);
    return texts;
}

} // namespace LarkTest

// the check of diskFaults, skipped where it cannot run
#define LARK_VERIFY_DISK_FAULTS(write) \
    do { \
        const QString fault = LarkTest::diskFaults(write); \
        if (fault == "-") \
            QSKIP("mounting a tmpfs is not allowed here"); \
        QVERIFY2(fault.isEmpty(), qPrintable(fault)); \
    } while (false)

// main() of a test class that needs no widgets
#define LARK_TEST_GUILESS_MAIN(Class) \
    int main(int argc, char **argv) { return LarkTest::runTest<QCoreApplication, Class>(argc, argv); }

#endif // LARKTESTCORE_H
