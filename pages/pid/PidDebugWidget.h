#ifndef PIDDEBUGWIDGET_H
#define PIDDEBUGWIDGET_H

#include "PidChannelState.h"
#include "PidRangeTracker.h"
#include "QtWidgetBase.h"

#include <QByteArray>
#include <QStringList>
#include <QVector>

class GraphConfigWidget;
class LinkTap;
class QCheckBox;
class QComboBox;
class QCustomPlot;
class QLineEdit;
class QMouseEvent;
class QPushButton;
class QTimer;
class QtSerialPort;
class QtSerialPortForm;
struct PidReceivedFrame;
class StatusLabel;

// The PID tuning page: one serial port to a motor-control board, five channels of
// P, I, D, target and period, ten curves (target and actual per channel) and an
// export of what the plot holds. The run state is the start button's text, "启动"
// when stopped and "停止" when running; the page, the board's reports and closing
// the port all read and write it.
class PidDebugWidget : public QtWidgetBase
{
    Q_OBJECT

public:
    explicit PidDebugWidget(QWidget *parent = nullptr);
    ~PidDebugWidget() override;

    QStringList getCounts() override;
    LinkTap *linkTap() const override { return m_tap; }

    int getCheckSum(QByteArray frame);
    void SendCmdToSeriaport(unsigned char cmd, unsigned char channel, const QByteArray &payload);
    void ParseDataFromBuff();

    // the work of "导出数据" once a file name is known
    void ExportDataToFile(const QString &fileName);

    QCustomPlot *customPlot() const { return m_customPlot; }
    QtSerialPort *serialPort() const { return m_serialPort; }
    // opens the port at path ("/dev/…") with the settings the page shows, as its open
    // button would; true when the port is open afterwards
    bool reopenPort(const QString &path);

signals:
    void signalNotify(QString text, int level);

public slots:
    void SltSerialportChanged(const QStringList &ports);

private slots:
    void SltOpenSerialport();
    // a remote port whose session ended: closed as a pulled port is, with its notice
    void SltSerialportLost();
    void SltRecvFromSerialport(const QByteArray &data);
    void SltPlotMoveEvent(QMouseEvent *event);
    void SltComboPidChanged(int index);
    void SltGraphClicked(int index, bool checked);
    void SltBtnSendPidClicked();
    void SltBtnSendValueClicked();
    void SltBtnSendIntervalClicked();
    void SltBtnClearClicked();
    void SltBtnExportClicked();
    void SltBtnStartClicked();
    void SltBtnResetClicked();
    void SltPoltScale(int index);
    void SltReplotFrame();

private:
    void InitWidget();
    void InitPlot();
    void InitSerialPortConfig();
    void CloseSerialport();
    void SetLineEditInputFloat(QLineEdit *edit);
    void SetLineEditInputInt(QLineEdit *edit);
    // what one decoded frame does to the edits, the start button and the plot
    void ApplyFrame(const PidReceivedFrame &frame);
    void AddActualSample(int c, int actual);
    // one RecvActualValue as it reached the page: its channel, its time on the plot
    // and the two points it makes
    struct PendingSample {
        int channel;
        double key;
        double target;
        double actual;
    };
    // puts the samples received since the last frame on the curves, as if each had
    // been put there when it arrived
    void ApplyPendingSamples();
    bool CanApplyInBlocks(const QVector<PendingSample> &samples) const;
    void ApplySample(const PendingSample &sample);
    // the page's one write: the port's bytes and the tap; bytes taken or -1
    qint64 writeToPort(const QByteArray &bytes);

    // samples reach the curves and the plot is drawn once a frame
    QTimer *m_replotTimer;
    QVector<PendingSample> m_pendingSamples;
    QtSerialPortForm *m_portForm;
    QComboBox *m_cbxPortName;
    QComboBox *m_cbxBaudrate;
    QComboBox *m_cbxParity;
    QComboBox *m_cbxDataBits;
    QComboBox *m_cbxStopBits;
    QPushButton *m_btnOpen;
    StatusLabel *m_statusLabel;
    QLineEdit *m_edtP;
    QLineEdit *m_edtI;
    QLineEdit *m_edtD;
    QLineEdit *m_edtTarget;
    QLineEdit *m_edtPeriod;
    QComboBox *m_cbxChannel;
    QComboBox *m_cbxScale;
    QPushButton *m_btnSendPid;
    QPushButton *m_btnSendValue;
    QPushButton *m_btnSendInterval;
    QCustomPlot *m_customPlot;
    GraphConfigWidget *m_graphConfig;
    QCheckBox *m_chkStopShow;
    QPushButton *m_btnClear;
    QPushButton *m_btnExport;
    QPushButton *m_btnStart;
    QPushButton *m_btnReset;

    PidChannelState m_channels[5];
    qint64 m_startTime;
    QByteArray m_recvBuffer;
    QByteArray m_frameHeader;
    QtSerialPort *m_serialPort;
    // value ranges of the actual curves, graphs 5 to 9
    PidRangeTracker m_rangeTrackers[5];
    LinkTap *m_tap;
};

#endif // PIDDEBUGWIDGET_H
