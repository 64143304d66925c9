#ifndef QTRECVCONFIGGROUP_H
#define QTRECVCONFIGGROUP_H

#include <QGroupBox>

class QCheckBox;
class QPushButton;
class QRadioButton;

// The "接收区设置" group of the serial and network pages: receive format, "停止显示",
// "日志模式", and the buttons that clear and save the receive view. The page reads the
// choices when data arrives and connects the two buttons.
class QtRecvConfigGroup : public QGroupBox
{
    Q_OBJECT
public:
    explicit QtRecvConfigGroup(QWidget *parent);

    QRadioButton *m_rbtnRecvAscii;
    QRadioButton *m_rbtnRecvHex;
    QCheckBox *m_chkStopShow;
    QCheckBox *m_chkLogMode;
    QPushButton *m_btnClearRecv;
    QPushButton *m_btnSaveFile;
};

#endif // QTRECVCONFIGGROUP_H
