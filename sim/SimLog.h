#ifndef SIMLOG_H
#define SIMLOG_H

#include <QString>

// One line to stdout, flushed at once: tests and scripts read what the simulator
// prints (the pty name, the port) while it runs.
class SimLog
{
public:
    static void line(const QString &text);
    static void error(const QString &text); // "larksim: error: ..." on stderr
};

#endif // SIMLOG_H
