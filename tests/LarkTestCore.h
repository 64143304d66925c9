#ifndef LARKTESTCORE_H
#define LARKTESTCORE_H

#include <QCoreApplication>
#include <QString>
#include <QTest>

// What every test executable needs, widgets or not.
namespace LarkTest {

// Offscreen platform and a private runtime folder unless the caller chose otherwise.
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

} // namespace LarkTest

// main() of a test class that needs no widgets
#define LARK_TEST_GUILESS_MAIN(Class) \
    int main(int argc, char **argv) { return LarkTest::runTest<QCoreApplication, Class>(argc, argv); }

namespace LarkTest {
// length bytes (all when negative) of the file at path from offset at, "(missing)" when
// it cannot be opened or has no such offset
QByteArray fileBytes(const QString &path, qint64 at = 0, qint64 length = -1);
} // namespace LarkTest

#endif // LARKTESTCORE_H
