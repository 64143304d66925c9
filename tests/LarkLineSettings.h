#ifndef LARKLINESETTINGS_H
#define LARKLINESETTINGS_H

#include <QString>
#include <QStringList>
#include <functional>

class QSerialPort;
class QWidget;

namespace LarkTest {

// What the kernel holds for a tty as a program left it: "baud dataBits parity stopBits",
// e.g. "115200 8N1"; the rate is read as a number, so rates without a Bnnn constant
// (128000, 256000) read back as set. Empty when the tty cannot be opened.
QString lineSettings(const QString &ttyPath);

// Every option of a page's four serial boxes in turn, the others at their start
// values: open(), the settings, close(). One string per box, in the order baud, data
// bits, parity, stop bits, with the field each option changed. A pty keeps the rate
// and the stop bits but forces 8 bits without parity (and QSerialPort then keeps its
// old values), so those two come from frame(): the open port's own data bits and
// parity letter, e.g. "8N".
QStringList sweepSerialOptions(QWidget *page, const QString &ttyPath, const std::function<QString()> &frame,
                               const std::function<bool()> &open, const std::function<void()> &close);

// frame() of a QSerialPort's settings
QString serialFrame(const QSerialPort *port);

// the sweep of a page on QextSerialPort, whose open button is press
template <class QextPort>
QStringList sweepQextPage(QWidget *page, const QString &ttyPath, QextPort *port, const std::function<void()> &press)
{
    return sweepSerialOptions(
        page, ttyPath, [port] { return QString::number(port->dataBits()) + "NOESM"[port->parity()]; },
        [=] { press(); return port->isOpen(); }, [=] { if (port->isOpen()) press(); });
}

// what that sweep gives: every option as the boxes show it, but for
// the two rates without a POSIX constant, which leave the port at the rate it had
inline QStringList qextSerialSweep()
{
    return {"2400 4800 9600 19200 38400 57600 115200 115200 230400 230400 460800", "5 6 7 8", "N O E", "1 2"};
}

} // namespace LarkTest

#endif // LARKLINESETTINGS_H
