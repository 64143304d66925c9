#ifndef LARKTEST_H
#define LARKTEST_H

#include <QObject>
#include <QString>
#include <functional>

class QWidget;

// Test classes of one area share one executable: each registers itself here with
// LARK_TEST(ClassName) and the common main runs them one after the other.
namespace LarkTest {

using Factory = std::function<QObject *()>;
int registerTest(const char *name, Factory factory);
int runAll(int argc, char **argv);

// Removes conf/ and download/ beside the test executable, so that every test class
// starts as a first start of the program would.
void cleanAppDirs();

// Calls handler with the next modal widget that becomes active (checked every 10 ms,
// for at most timeoutMs); a test that opens a modal dialog closes it through this.
void onNextModal(std::function<void(QWidget *)> handler, int timeoutMs = 5000);

// Answers an open or save file dialog (a QFileDialog, or a dialog holding one) with
// path as a user would: typed into the name field, then accepted. selectFile() alone
// leaves the field empty while it has focus, so the dialog would refuse.
bool chooseFileInDialog(QWidget *dialog, const QString &path);

// Answers the next modal file dialog with path (and the name filter, if given) through
// chooseFileInDialog, again while the dialog still loads its folder; a dialog that
// never takes the answer is rejected, so the test fails instead of hanging.
void answerNextFileDialog(const QString &path, const QString &filter = QString());

// Path of a file under tests/data.
QString dataPath(const QString &name);

} // namespace LarkTest

#define LARK_TEST(Class) \
    static const int lark_test_registered_##Class = \
        LarkTest::registerTest(#Class, [] { return static_cast<QObject *>(new Class); });

#endif // LARKTEST_H
