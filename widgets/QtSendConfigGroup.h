#ifndef QTSENDCONFIGGROUP_H
#define QTSENDCONFIGGROUP_H

#include <QGroupBox>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;
class QtSendBoxWidget;

// The "发送区设置" group of the serial and network pages, which steers the page's send
// box: single or multi page, auto-send period, ASCII or HEX, new line, auto send.
class QtSendConfigGroup : public QGroupBox
{
    Q_OBJECT
public:
    QtSendConfigGroup(QWidget *parent);

    // wires every control to sendBox; the box may uncheck "自动发送" itself
    void bindSendBox(QtSendBoxWidget *sendBox);

    QComboBox *m_cbxSendOption;
    QLineEdit *m_edtAutoInterval;
    QRadioButton *m_rbtnSendAscii;
    QRadioButton *m_rbtnSendHex;
    QCheckBox *m_chkSendNewLine;
    QCheckBox *m_chkAutoSend;

public slots:
    void SltChangeSendPage(int index);
    void SltChangeAutoInterval();

private:
    QtSendBoxWidget *m_sendBox;
};

#endif // QTSENDCONFIGGROUP_H
