#include "QtSerialConfigLists.h"

#include <QComboBox>

void QtSerialConfigLists::fill(QComboBox *baud, QComboBox *parity, QComboBox *dataBits, QComboBox *stopBits)
{
    baud->addItems({"2400", "4800", "9600", "19200", "38400", "57600", "115200",
                    "128000", "230400", "256000", "460800"});
    baud->setCurrentIndex(6);
    dataBits->addItems({"5", "6", "7", "8"});
    dataBits->setCurrentIndex(3);
    stopBits->addItems({"1", "2"});
    stopBits->setCurrentIndex(0);
    parity->addItems({"无", "奇", "偶"});
    parity->setCurrentIndex(0);
}
