#ifndef CAMERAPAGERIG_H
#define CAMERAPAGERIG_H

#include "CameraDebugWidget.h"
#include "ImageFormatConfig.h"
#include "ImageViewer.h"
#include "LarkTest.h"
#include "QextSerialPort.h"
#include "TcpServer.h"

#include <QtNetwork>
#include <QtTest>
#include <QtWidgets>
#include <unistd.h>

enum Link { Server, Client, Udp, Serial };

// The camera page and what it tells, set to a link through its own boxes. The serial
// link is opened under a /dev/tty name of this process, a link to the board's pty.
struct CameraPageRig : LarkTest::PageRig<CameraDebugWidget> {
    const QString tty = QString("ttyLarkCam%1").arg(getpid());

    ~CameraPageRig() { QFile::remove("/dev/" + tty); }

    QComboBox *links() { return child<QComboBox>("cbxProtocol"); }
    // entry e of the register strip: 2k is row k's address, 2k + 1 its value
    QLineEdit *field(int e) { return LarkTest::byId<QLineEdit>(page.formatConfig(), e); }
    QString button() { return child<QPushButton>("btnOpen")->text(); }
    // chooses the link and presses open: port is the page's own, or the server's for a
    // client; ptyPath, when given, is linked as the serial link's /dev/tty first
    bool start(Link l, const QString &port, bool jpeg = false, const QString &ptyPath = QString())
    {
        child<QRadioButton>(jpeg ? "JPEG数据" : "协议传输")->setChecked(true);
        child<QLineEdit>("edtPort")->setText(port);
        child<QComboBox>("cbxAddress")->setCurrentText("127.0.0.1");
        links()->setCurrentIndex(qMin(int(l), 2));
        if (l == Serial) {
            if (!ptyPath.isEmpty() && !QFile::link(ptyPath, "/dev/" + tty))
                return false;
            page.SltSerialportChanged({"ttyS99", tty});
            links()->setCurrentIndex(4);
        }
        press();
        return l != Serial || page.serialPort()->isOpen();
    }
};

#endif // CAMERAPAGERIG_H
