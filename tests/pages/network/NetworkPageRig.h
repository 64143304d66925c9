#ifndef NETWORKPAGERIG_H
#define NETWORKPAGERIG_H

#include "LarkTest.h"
#include "NetworkToolWidget.h"
#include "QtSendBoxWidget.h"

#include <QtNetwork>
#include <QtTest>
#include <QtWidgets>

// The network page and what it tells, set to a mode through its own boxes.
struct NetworkPageRig : LarkTest::PageRig<NetworkToolWidget> {

    void setMode(int mode, const QString &port)
    {
        child<QComboBox>("cbxNetType")->setCurrentIndex(mode);
        child<QComboBox>("cbxAddress")->setCurrentText("127.0.0.1");
        child<QLineEdit>("edtPort")->setText(port);
    }
    void press() { QTest::mouseClick(child<QPushButton>("btnOpen"), Qt::LeftButton); }
    void open(int mode, const QString &port) { setMode(mode, port); press(); }
    quint16 startUdp() { open(2, "0"); return page.udpSocket()->localPort(); }
    // the send box's signal, as its send button emits it
    void send(const QByteArray &data) { QMetaObject::invokeMethod(page.sendBox(), "signalSendData", Q_ARG(QByteArray, data)); }
};

#endif // NETWORKPAGERIG_H
