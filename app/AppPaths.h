#ifndef APPPATHS_H
#define APPPATHS_H

#include <QString>

// Where this copy of the program keeps what it writes. A copy in a folder its user
// can write (an unpacked release, a build folder) keeps conf/ and download/ beside the
// executable, as it always has, and the updater may overwrite it. A copy the package
// manager installed, or any copy in a folder its user cannot write, keeps them in the
// user's XDG folders instead: conf/ under the config home, download/ under the cache
// home, each in a folder "larkTools". Never instantiated.
class AppPaths
{
public:
    // The executable's folder, or the one a test put in its place.
    static QString programDir();
    // The folder called name ("conf", "download") that this copy uses; not created.
    static QString dataDir(const QString &name);
    static QString confDir() { return dataDir("conf"); }
    static QString downloadDir() { return dataDir("download"); }

    // True when a copy in dir owns that folder: it can create a file there and dir is
    // not where the package installs programs (root can write there, but the files of
    // a package belong to its package manager).
    static bool isPortableDir(const QString &dir);
    static bool isPortable() { return isPortableDir(programDir()); }

    // The manual's start page and the license text of this copy, or empty when
    // neither a portable copy nor an installed package brought one.
    static QString manualFile();
    static QString licenseFile();

    // A folder standing in for the executable's, so that a test can run the program's
    // start-up against a read-only one; empty goes back to the executable's.
    static void setProgramDir(const QString &dir);

private:
    static QString firstExisting(const QString &inProgramDir, const QString &inDocDir);
};

#endif // APPPATHS_H
