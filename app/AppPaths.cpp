#include "AppPaths.h"
#include "LarkRelease.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace {
QString g_strProgramDir;
// the answer for the folder last asked about: the send boxes ask on every save
QString g_strCheckedDir;
bool g_bCheckedPortable = false;
} // namespace

QString AppPaths::programDir()
{
    return g_strProgramDir.isEmpty() ? QCoreApplication::applicationDirPath() : g_strProgramDir;
}

void AppPaths::setProgramDir(const QString &dir)
{
    g_strProgramDir = dir;
    g_strCheckedDir.clear();
}

bool AppPaths::isPortableDir(const QString &dir)
{
    const QString canonical = QFileInfo(dir).canonicalFilePath();
    if (!g_strCheckedDir.isEmpty() && canonical == g_strCheckedDir)
        return g_bCheckedPortable;

    bool portable = false;
    if (!canonical.isEmpty() && canonical != QFileInfo(LARK_INSTALL_FULL_BINDIR).canonicalFilePath()) {
        // Creating a file is the only test that holds for root, for read-only mounts
        // and for access lists alike; the permission bits say nothing to root.
        QTemporaryFile probe(canonical + "/.larkTools-probe-XXXXXX");
        portable = probe.open();
    }
    g_strCheckedDir = canonical;
    g_bCheckedPortable = portable;
    return portable;
}

QString AppPaths::dataDir(const QString &name)
{
    const QString dir = programDir();
    if (isPortableDir(dir))
        return dir + "/" + name;
    QStandardPaths::StandardLocation home = QStandardPaths::GenericDataLocation;
    if (name == "conf")
        home = QStandardPaths::GenericConfigLocation;
    else if (name == "download")
        home = QStandardPaths::GenericCacheLocation;
    return QStandardPaths::writableLocation(home) + "/larkTools/" + name;
}

QString AppPaths::firstExisting(const QString &inProgramDir, const QString &inDocDir)
{
    // an unpacked release, then a package under any prefix, then the one built for
    const QStringList candidates = {
        programDir() + "/" + inProgramDir,
        programDir() + "/../share/doc/larktools/" + inDocDir,
        QString(LARK_INSTALL_FULL_DOCDIR) + "/" + inDocDir,
    };
    for (const QString &path : candidates) {
        if (QFileInfo(path).isFile())
            return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    }
    return QString();
}

QString AppPaths::manualFile()
{
    return firstExisting("doc/manual/index.html", "manual/index.html");
}

QString AppPaths::licenseFile()
{
    return firstExisting("LICENSE", "copyright");
}
