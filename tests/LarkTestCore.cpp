#include "LarkTestCore.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

namespace LarkTest {

void prepareEnvironment()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QString dir = QString("/tmp/runtime-lark-%1").arg(getuid());
        QDir().mkpath(dir);
        QFile::setPermissions(dir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", dir.toLocal8Bit());
    }
}

void cleanAppDirs()
{
    const QString base = QCoreApplication::applicationDirPath();
    QDir(base + "/conf").removeRecursively();
    QDir(base + "/download").removeRecursively();
}

} // namespace LarkTest
