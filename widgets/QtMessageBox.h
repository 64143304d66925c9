#ifndef QTMESSAGEBOX_H
#define QTMESSAGEBOX_H

#include <QDialog>

class QLabel;
class QPushButton;
class QtTitleBar;

// The program's frameless message box. The statics ask one question and return 1
// for the OK button and 0 for everything else; Return and Space answer "no" on
// purpose, so that a key hit while typing never confirms anything.
class QtMessageBox : public QDialog
{
    Q_OBJECT
public:
    enum MessboxType {
        Infomation = 0,
        Warning = 1,
        Question = 2,
        Message = 3,
        Remind = 4,
        DeleteConfirm = 5,
    };

    explicit QtMessageBox(QWidget *parent = nullptr, MessboxType type = Infomation);

    static int infomation(const QString &text, const QString &title = QString::fromUtf8("提示"));
    static int warning(const QString &text, const QString &title = QString::fromUtf8("提示"));
    static int question(const QString &text, const QString &title = QString::fromUtf8("提示"));
    static int remind(const QString &text, const QString &title = QString::fromUtf8("提示"));
    // the text may carry rich text, e.g. the name to be deleted in bold
    static int deleteConfirm(const QString &text, const QString &title = QString::fromUtf8("提示"));

    void setMessage(const QString &text, const QString &title);

    MessboxType type() const { return m_type; }
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void InitWidget();
    static int showBox(MessboxType type, const QString &text, const QString &title);

    MessboxType m_type;
    QtTitleBar *m_titleBar;
    QLabel *m_labIcon;
    QLabel *m_labText;
};

#endif // QTMESSAGEBOX_H
