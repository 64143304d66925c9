#ifndef SIMPROCESS_H
#define SIMPROCESS_H

#include <QProcess>
#include <QTest>

// The built larksim as a separate process, and what it prints.
struct SimProcess {
    QProcess proc;
    QByteArray out;

    ~SimProcess() { stop(); }
    bool start(const QStringList &args)
    {
        proc.start(LARKSIM_PATH, args);
        return proc.waitForStarted(5000);
    }
    // the first printed line that begins with prefix, less the prefix; null after 5 s
    QString waitFor(const QString &prefix)
    {
        QString found;
        (void)QTest::qWaitFor([&] {
            out += proc.readAllStandardOutput();
            const QStringList lines = QString::fromUtf8(out).split('\n');
            for (int i = 0; i + 1 < lines.size() && found.isNull(); ++i) // the last is not yet whole
                if (lines[i].startsWith(prefix))
                    found = lines[i].mid(prefix.size()) + "";
            return !found.isNull() || proc.state() == QProcess::NotRunning;
        }, 5000);
        return found;
    }
    QString ptyName() { return waitFor("larksim: pty ").section(' ', 0, 0); }
    quint16 serverPort() { return quint16(waitFor("larksim: tcp server on port ").toUInt()); }
    // Ctrl+C; true when it ended cleanly
    bool stop()
    {
        if (proc.state() == QProcess::NotRunning)
            return proc.exitStatus() == QProcess::NormalExit && proc.exitCode() == 0;
        proc.terminate();
        return proc.waitForFinished(5000) && proc.exitStatus() == QProcess::NormalExit && proc.exitCode() == 0;
    }
};

#endif // SIMPROCESS_H
