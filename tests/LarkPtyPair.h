#ifndef LARKPTYPAIR_H
#define LARKPTYPAIR_H

#include <QByteArray>
#include <QProcess>
#include <QString>

// Two connected pseudo-terminals made by socat (pty,raw,echo=0 on both ends): the
// program under test opens one end as its serial port, the test plays the board on
// the other through a plain file descriptor.
class LarkPtyPair
{
public:
    LarkPtyPair();
    ~LarkPtyPair();

    bool start(int timeoutMs = 5000);
    void stop();

    // "/dev/pts/N" of the end the program opens, and its short name "pts/N"
    QString programPath() const { return m_programPath; }
    QString programShortName() const;
    QString boardPath() const { return m_boardPath; }

    // the board's side: raw, non-blocking file descriptor
    bool boardWrite(const QByteArray &data);
    QByteArray boardRead();
    // reads until at least n bytes came or the time ran out (event loop keeps running)
    QByteArray boardReadAtLeast(int n, int timeoutMs = 5000);

private:
    QProcess m_socat;
    QString m_programPath;
    QString m_boardPath;
    int m_boardFd = -1;
};

#endif // LARKPTYPAIR_H
