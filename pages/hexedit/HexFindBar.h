#ifndef HEXFINDBAR_H
#define HEXFINDBAR_H

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The editor's find and go-to bar, under the hex view: what to find (hex bytes or text
// in UTF-8 or GB18030), previous and next with wrapping, an offset to go to, and a line
// for what came of it. The page does the finding; the bar only asks and tells.
class HexFindBar : public QWidget
{
    Q_OBJECT
public:
    explicit HexFindBar(QWidget *parent = nullptr);

    QString findText() const;
    int findMode() const;
    bool wrap() const;
    QString gotoText() const;

    // text empty clears the line; an error shows red
    void showResult(const QString &text, bool error);

public slots:
    void SltFocusFind();
    void SltFocusGoto();

signals:
    void signalFind(bool backwards);
    void signalGoto(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private slots:
    void SltFindNext();
    void SltFindPrevious();
    void SltGoto();

private:
    void InitWidget();

    QComboBox *m_cbxMode = nullptr;
    QLineEdit *m_edtFind = nullptr;
    QPushButton *m_btnPrevious = nullptr;
    QPushButton *m_btnNext = nullptr;
    QCheckBox *m_chkWrap = nullptr;
    QLineEdit *m_edtGoto = nullptr;
    QPushButton *m_btnGoto = nullptr;
    QLabel *m_labResult = nullptr;
};

#endif // HEXFINDBAR_H
