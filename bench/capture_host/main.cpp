// A whole program that captures a serial port to a raw file the way the pages do
// (port -> tap -> capture writer), for tests that kill it: prints "ready", then the
// running count of received bytes after each read.
//   lark_capture_host PORT FILE
#include "CaptureWriter.h"
#include "LinkTap.h"
#include "QextSerialPort.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    QextSerialPort port(QString::fromLocal8Bit(argv[1]));
    if (!port.open(QIODevice::ReadWrite))
        return 1;
    LinkTap tap;
    CaptureWriter writer;
    writer.attach(&tap);
    if (!writer.start(QString::fromLocal8Bit(argv[2]), CaptureWriter::Raw))
        return 1;
    qint64 total = 0;
    QObject::connect(&port, &QIODevice::readyRead, [&] {
        const QByteArray bytes = port.readAll();
        tap.reportReceived(bytes);
        total += bytes.size();
        printf("%lld\n", total);
        fflush(stdout);
    });
    printf("ready\n");
    fflush(stdout);
    return app.exec();
}
