#ifndef SERIALPAGERIG_H
#define SERIALPAGERIG_H

#include "LarkTest.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QextSerialPort.h"
#include "QtRecvViewFeeder.h"
#include "QtTerminalWidget.h"
#include "SerialportWidget.h"

#include <QtTest>
#include <QtWidgets>

// The serial page and what it tells, opened through its own button.
struct SerialPageRig : LarkTest::PageRig<SerialportWidget> {
    QSignalSpy counts{&page, SIGNAL(signalRefresCounts(int))};

    // a first start in GB18030; each page appends its new line to the process-wide one
    static void reset()
    {
        LarkTest::cleanAppDirs();
        NumberTool::m_newLine.clear();
        MyApp::m_nTextCodecIndex = 1;
    }
    // lists the port of that short name ("pts/3") and opens it
    bool openOn(const QString &shortName)
    {
        page.SltSerialportChanged({shortName});
        press();
        return page.serialport()->isOpen();
    }
    // what the view shows once the reads of this display frame have gone in
    QString shown() const { return page.recvFeeder()->flush(), page.terminal()->toPlainText(); }
};

#endif // SERIALPAGERIG_H
