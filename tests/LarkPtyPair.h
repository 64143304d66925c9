#ifndef LARKPTYPAIR_H
#define LARKPTYPAIR_H

#include <QByteArray>
#include <QProcess>
#include <QString>

// Two connected pseudo-terminals made by socat (pty,raw,echo=0 on both ends): the
// program under test opens one end as its serial port, the test plays the board on
// the other through a raw, non-blocking file descriptor.
class LarkPtyPair
{
public:
    ~LarkPtyPair() { stop(); }

    bool start();
    void stop();

    // "/dev/pts/N" of the end the program opens, and its short name "pts/N"
    QString programPath() const { return m_programPath; }
    QString programShortName() const { return m_programPath.mid(5); }
    QString boardPath() const { return m_boardPath; }

    bool boardWrite(const QByteArray &data);
    // reads until at least n bytes came or 5 s passed (event loop keeps running)
    QByteArray boardReadAtLeast(int n);

private:
    QProcess m_socat;
    QString m_programPath;
    QString m_boardPath;
    int m_boardFd = -1;
};

#endif // LARKPTYPAIR_H
