#ifndef PTYLINE_H
#define PTYLINE_H

#include <QProcess>
#include <QString>

// everything stty says of a tty's line
inline QString sttyOf(const QString &path)
{
    QProcess stty;
    stty.start("stty", {"-F", path, "-a"});
    stty.waitForFinished();
    return QString::fromLatin1(stty.readAllStandardOutput());
}

// The line of a pty as its driver holds it: the speed, and " cstopb" after it for two
// stop bits. A pty forces eight data bits and no parity, so nothing else reads back.
inline QString ptyLine(const QString &path)
{
    const QString all = sttyOf(path);
    return all.section(' ', 1, 1) + (all.contains(" cstopb") ? " cstopb" : "");
}

#endif // PTYLINE_H
