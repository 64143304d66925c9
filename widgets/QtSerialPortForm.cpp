#include "QtSerialPortForm.h"
#include "LinkTap.h"
#include "QtSerialConfigLists.h"
#include "StatusLabel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

QtSerialPortForm::QtSerialPortForm(QWidget *group, QGridLayout *grid, int rows, LinkTap *tap)
    : QObject(group)
    , m_tap(tap)
{
    auto addBox = [group](const char *name, bool editable) {
        QComboBox *box = new QComboBox(group);
        box->setObjectName(name);
        box->setEditable(editable);
        return box;
    };
    if (rows & PortRow)
        m_cbxPort = addBox("cbxPort", true);
    m_cbxBaud = addBox("cbxBaud", true);
    m_cbxParity = addBox("cbxParity", false);
    m_cbxDataBits = addBox("cbxDataBits", false);
    m_cbxStopBits = addBox("cbxStopBits", false);
    QtSerialConfigLists::fill(m_cbxBaud, m_cbxParity, m_cbxDataBits, m_cbxStopBits);

    const QStringList names = {"端口", "波特率", "校验位", "数据位", "停止位"};
    QComboBox *boxes[] = {m_cbxPort, m_cbxBaud, m_cbxParity, m_cbxDataBits, m_cbxStopBits};
    int row = 0;
    for (int i = 0; i < names.size(); ++i) {
        if (!boxes[i])
            continue;
        grid->addWidget(new QLabel(names.at(i), group), row, 0);
        grid->addWidget(boxes[i], row++, 1);
    }
    if (rows & OpenRow) {
        StatusLabel *lamp = new StatusLabel(group);
        lamp->setObjectName("statusLabel");
        QPushButton *button = new QPushButton("打开串口", group);
        button->setObjectName("btnOpen");
        grid->addWidget(lamp, row, 0);
        grid->addWidget(button, row, 1);
        setLampAndButton(lamp, button);
    }
}

void QtSerialPortForm::setLampAndButton(StatusLabel *lamp, QPushButton *button)
{
    m_statusLabel = lamp;
    m_btnOpen = button;
}

void QtSerialPortForm::share(QComboBox *&port, QComboBox *&baud, QComboBox *&parity, QComboBox *&dataBits,
                             QComboBox *&stopBits, StatusLabel *&lamp, QPushButton *&button) const
{
    port = m_cbxPort;
    baud = m_cbxBaud;
    parity = m_cbxParity;
    dataBits = m_cbxDataBits;
    stopBits = m_cbxStopBits;
    lamp = m_statusLabel;
    button = m_btnOpen;
}

SerialSettings QtSerialPortForm::settings(const QString &path) const
{
    SerialSettings s;
    s.path = path;
    s.baudRate = m_cbxBaud->currentText().toInt();
    s.dataBits = m_cbxDataBits->currentText().toInt();
    s.stopBits = m_cbxStopBits->currentIndex();
    s.parity = m_cbxParity->currentIndex();
    return s;
}

QString QtSerialPortForm::portPath() const
{
    return "/dev/" + (m_cbxPort ? m_cbxPort->currentText() : QString());
}

void QtSerialPortForm::showOpened(const QString &name)
{
    m_btnOpen->setText("关闭串口");
    m_statusLabel->setStatus(true);
    m_tap->reportOpened(name);
}

void QtSerialPortForm::showClosed()
{
    m_statusLabel->setStatus(false);
    m_btnOpen->setText("打开串口");
    m_tap->reportClosed();
}
