#ifndef QTSERIALCONFIGLISTS_H
#define QTSERIALCONFIGLISTS_H

class QComboBox;

// The serial settings every page with a port offers, with their start values: baud
// "115200" (the box is editable and its text goes to the port unchecked), parity
// "无", data bits "8", stop bits "1".
class QtSerialConfigLists
{
public:
    static void fill(QComboBox *baud, QComboBox *parity, QComboBox *dataBits, QComboBox *stopBits);
};

#endif // QTSERIALCONFIGLISTS_H
