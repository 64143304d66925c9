#ifndef QTSERIALPORTFORM_H
#define QTSERIALPORTFORM_H

#include "SerialSettings.h"

#include <QObject>
#include <QString>

class LinkTap;
class QComboBox;
class QGridLayout;
class QPushButton;
class QWidget;
class StatusLabel;

// The port group every serial page shows, and the steps they share round it. It lays
// the labelled boxes "端口" (editable, so a port the system does not list, "pts/7",
// can be typed), "波特率", "校验位", "数据位", "停止位" into a grid from row 0 with
// their start values, and optionally a row of lamp and "打开串口" below them. A page
// without a port box (the camera page picks its port in the link box) and with a
// lamp and button of its own hands those in with setLampAndButton.
//
// What differs between pages stays with them: how the path is made, which port class
// opens it, the parity quirk of the PID page, and each page's close routine, which
// calls showClosed.
class QtSerialPortForm : public QObject
{
    Q_OBJECT
public:
    enum Row { PortRow = 1, OpenRow = 2 };

    QtSerialPortForm(QWidget *group, QGridLayout *grid, int rows, LinkTap *tap);

    void setLampAndButton(StatusLabel *lamp, QPushButton *button);
    // the controls under the names a page of its own keeps for them
    void share(QComboBox *&port, QComboBox *&baud, QComboBox *&parity, QComboBox *&dataBits,
               QComboBox *&stopBits, StatusLabel *&lamp, QPushButton *&button) const;

    // the boxes as a port takes them for the device at path
    SerialSettings settings(const QString &path) const;
    // "/dev/" followed by the port box's text, trimmed of nothing: an empty box
    // gives the bare "/dev/"
    QString portPath() const;

    // the port opened: button "关闭串口", lamp on, the tap opened with the name
    void showOpened(const QString &name);
    // the port closed, whoever closed it: button "打开串口", lamp off, the tap closed
    void showClosed();

    QComboBox *m_cbxPort = nullptr;
    QComboBox *m_cbxBaud = nullptr;
    QComboBox *m_cbxParity = nullptr;
    QComboBox *m_cbxDataBits = nullptr;
    QComboBox *m_cbxStopBits = nullptr;
    StatusLabel *m_statusLabel = nullptr;
    QPushButton *m_btnOpen = nullptr;

private:
    LinkTap *m_tap;
};

#endif // QTSERIALPORTFORM_H
