#ifndef SERIALSETTINGS_H
#define SERIALSETTINGS_H

#include <QString>

class QextSerialPort;
class QtSerialPort;

// What a page opens a serial port with, as its five boxes give it: the device path,
// the baud text as a number (unchecked: the port refuses what it cannot do and keeps
// its previous rate, and the open still counts), data bits as a number, stop bits
// and parity as the index of their boxes (0 one, 1 two; 0 none, 1 odd, 2 even).
class SerialSettings
{
public:
    QString path;
    int baudRate = 0;
    int dataBits = 0;
    int stopBits = 0;
    int parity = 0;

    // Opens the device read-write, then applies the settings: the library takes them
    // only on an open port. A timeout under 0 leaves the port's own. Whether it opened.
    bool open(QextSerialPort *port, int timeoutMs = -1) const;
    // the same through the wrapper, which sets everything itself and only beeps on a
    // failure; whether it opened
    bool open(QtSerialPort *port) const;

    // the notices every serial page gives, with the port's name
    static QString openedText(const QString &name);
    static QString failedText(const QString &name);
    static QString closedText(const QString &name);
    static QString pulledText();
};

#endif // SERIALSETTINGS_H
