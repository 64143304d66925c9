#include "LarkLineSettings.h"

#include <QComboBox>
#include <QFile>
#include <QSerialPort>
#include <QWidget>

// termios2 rather than termios: its c_ospeed is the rate itself, also for rates that
// only BOTHER can carry
#include <asm/termbits.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

QString LarkTest::lineSettings(const QString &ttyPath)
{
    const int fd = ::open(QFile::encodeName(ttyPath).constData(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return QString();
    struct termios2 tio;
    const bool ok = ::ioctl(fd, TCGETS2, &tio) == 0;
    ::close(fd);
    if (!ok)
        return QString();
    const tcflag_t size = tio.c_cflag & CSIZE;
    const int bits = size == CS5 ? 5 : size == CS6 ? 6 : size == CS7 ? 7 : 8;
    const char parity = !(tio.c_cflag & PARENB) ? 'N' : (tio.c_cflag & PARODD) ? 'O' : 'E';
    return QString("%1 %2%3%4").arg(tio.c_ospeed).arg(bits).arg(parity).arg(tio.c_cflag & CSTOPB ? 2 : 1);
}

QString LarkTest::serialFrame(const QSerialPort *port)
{
    return QString::number(port->dataBits()) + "NNEOSM"[qBound(0, int(port->parity()), 5)];
}

QStringList LarkTest::sweepSerialOptions(QWidget *page, const QString &ttyPath, const std::function<QString()> &frame,
                                         const std::function<bool()> &open, const std::function<void()> &close)
{
    QStringList result;
    const char *names[] = {"cbxBaud", "cbxDataBits", "cbxParity", "cbxStopBits"};
    for (int b = 0; b < 4; ++b) {
        QComboBox *box = page->findChild<QComboBox *>(names[b]);
        const int start = box->currentIndex();
        QStringList fields;
        for (int i = 0; i < box->count(); ++i) {
            box->setCurrentIndex(i);
            const QString line = open() ? lineSettings(ttyPath) : QString("closed");
            const QString bitsAndParity = frame();
            close();
            // "115200 8N1": the rate or the stop bits
            fields << (b == 0 ? line.section(' ', 0, 0) : b == 3 ? line.right(1) : bitsAndParity.mid(b - 1, 1));
        }
        box->setCurrentIndex(start);
        result << fields.join(' ');
    }
    return result;
}
