#ifndef IMAGEFORMATCONFIG_H
#define IMAGEFORMATCONFIG_H

#include <QMap>
#include <QWidget>

class QButtonGroup;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QStandardItemModel;
class QTimer;
class QtPageBar;
class DataManagerWidget;
class RegisterObj;

// The register strip under the camera image: paged write rows (8 a page) and read
// rows (4 a page), one send button a row, auto send of the write list, and the
// answers of the board put into the read rows.
class ImageFormatConfig : public QWidget
{
    Q_OBJECT
public:
    explicit ImageFormatConfig(QWidget *parent = nullptr);
    ~ImageFormatConfig() override;

    QSize sizeHint() const override;

    void setAutoSend(bool bOk);
    void setAutoSendDelay(int delay);
    void SetRegValue(unsigned short regId, unsigned int value);

signals:
    void signalReadWriteReg(const QString &strAddr, const QString &strValue, int regId);
    void autoSendFinished();

public slots:
    void SltClearInput();

private slots:
    void SltButtonGroupClicked(int index);
    void SltMultiChangePage(int index);
    void SltBtnMultiClicked();
    void SltRefreshRegData(int index);
    void SltChangeDataPage(int index);
    void SltAddDataPage(int maxPage);
    void SltDeletPage(int curr, int max);
    void SltChangeRWType(int index);
    void SltLineEditChanged(const QString &strText);
    void sltAutoSendData();

private:
    void InitWidget();
    void setWriteRegValue(int page);
    void setReadRegValue(int page);
    void setModelHeader();
    void addRegisterData(int row, RegisterObj *reg);
    void setRowIndex();

    QLineEdit *m_lineEdits[24];
    QPushButton *m_sendButtons[12];
    QButtonGroup *m_btnGroup;
    QRadioButton *m_rbWrite;
    QRadioButton *m_rbRead;
    QButtonGroup *m_rwGroup;
    QtPageBar *m_pageBar;
    int m_writePage;
    int m_writeMaxPage;
    int m_readPage;
    int m_readMaxPage;
    QStandardItemModel *m_model;
    DataManagerWidget *m_dataManager;
    QMap<int, RegisterObj *> m_writeRegs;
    QMap<int, RegisterObj *> m_readRegs;
    QTimer *m_autoTimer;
    int m_nAutoIndex;
};

#endif // IMAGEFORMATCONFIG_H
