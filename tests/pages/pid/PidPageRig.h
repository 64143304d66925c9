#ifndef PIDPAGERIG_H
#define PIDPAGERIG_H

#include "LarkTest.h"
#include "PidDebugWidget.h"
#include "QtSerialPort.h"

#include <QtTest>
#include <QtWidgets>

#include <qcustomplot.h>

// The PID page's boxes as its user finds them: by group and row, buttons by text.
namespace PidPage {

inline QComboBox *channel(const QWidget *page) { return qobject_cast<QComboBox *>(LarkTest::inGroup(page, "PID值配置", 0)); }
// P, I, D, target and period of the selected channel
inline QLineEdit *edit(const QWidget *page, int k)
{
    return qobject_cast<QLineEdit *>(LarkTest::inGroup(page, "PID值配置", QList<int>{1, 2, 3, 5, 6}[k]));
}
// the five as "P|I|D|target|period"
inline QString shown(const QWidget *page)
{
    QStringList texts;
    for (int k = 0; k < 5; ++k)
        texts << edit(page, k)->text();
    return texts.join('|');
}
inline QPushButton *button(const QWidget *page, const QString &text) { return LarkTest::find<QPushButton>(page, text); }
// lists the port of that short name ("pts/3") and presses open
inline bool open(PidDebugWidget *page, const QString &shortName)
{
    page->SltSerialportChanged({shortName});
    button(page, "打开串口")->click();
    return page->serialPort()->isOpen();
}

} // namespace PidPage

#endif // PIDPAGERIG_H
