#ifndef QTSENDBOXWIDGET_H
#define QTSENDBOXWIDGET_H

#include "QtWidgetBase.h"

#include <QMap>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QTextEdit;
class QTimer;
class QtPageBar;

// The send area shared by the serial and network pages. It turns text into bytes
// and hands them to its owner by signalSendData; it knows nothing of the transport.
// The owner reports whether its device is open and owns the check boxes that steer
// it (new line, hex, auto send).
//
// pages is a set of bits: 1 single-send page, 2 multi-send page, 4 protocol page.
// The exact values 7 (serial page) and 3 (network page) choose the file names in
// conf/; other values keep no files.
class QtSendBoxWidget : public QtWidgetBase
{
    Q_OBJECT
public:
    enum PageKey { SinglePage = 1, MultiPage = 2, ProtocolPage = 4 };

    explicit QtSendBoxWidget(QWidget *parent = nullptr, int pages = 7);
    ~QtSendBoxWidget() override;

    void setDeviceStatus(bool open);
    void setAutoInterval(int msec);

    // the bytes of one message: "\n" becomes "\r\n" (in hex mode too), then hex text
    // or the text codec, then the new-line bytes if asked for
    static QByteArray makeSendData(const QString &text, bool hexSend, bool sendNewLine);

    int currentPage() const { return m_currentPage; }
    int autoRow() const { return m_autoRow; }
    QMap<int, QString> multiData() const { return m_multiData; }
    QString historyFile() const { return m_strHistoryFile; }
    QString multiConfigFile() const;
    QString loadFile() const { return m_strLoadFile; }
    QTimer *autoTimer() const { return m_autoTimer; }

    // the owner's "自动发送" box, unchecked here when sending has to stop; not owned
    QCheckBox *m_chkAutoSend;

signals:
    void signalSendData(QByteArray byCmd);

public slots:
    void setCurrentPage(int index);
    void setNewline(bool bCheck);
    void setHexSend(int index);
    void setAutoSend(bool bCheck);
    void SltAutoSendData();
    void SltSingleSendPage();
    void SltMultiChangePage(int index);
    void SltMultiBtnClicked(int index);
    void SltMultiEditFinished();
    void SltClearMultiEdit();
    void SltLoadDataFile();

public:
    // what follows the file dialog: read path into the single-send edit
    bool loadDataFile(const QString &path);

private:
    void InitSingelPage();
    void InitMultiPage();
    void InitProtocolPage();
    void SendDataToDevice(QString text);
    void stopAutoSend();
    void showEmptyTip(QWidget *edit);
    int multiKey(int row) const;

    void LoadQuitSendMsg(const QString &path);
    void SaveQuitSendMsg();
    void LoadMultiConfigData(const QString &path);
    void SaveMultiConfigData();

    int m_nPageFlags;
    QMap<int, QWidget *> m_pages;
    int m_currentPage;
    QStackedWidget *m_stackedWidget;

    QPushButton *m_btnSend;
    QString m_strHistoryFile;
    QTextEdit *m_edtSend;
    QComboBox *m_cbxHistory;
    QStringList m_sentList;
    QString m_strLoadFile;

    QLineEdit *m_edtMulti[10];
    QPushButton *m_btnMulti[10];
    QtPageBar *m_pageBar;
    int m_autoRow;
    QMap<int, QString> m_multiData;

    bool m_deviceOpen;
    bool m_hexSend;
    bool m_sendNewLine;
    QTimer *m_autoTimer;
};

#endif // QTSENDBOXWIDGET_H
