#ifndef QTFILEDIALOG_H
#define QTFILEDIALOG_H

#include <QDialog>
#include <QFileDialog>

class QtTitleBar;

// A file chooser in the program's own frame: Qt's non-native file dialog embedded
// under a title bar. Used on the stack: setAcceptMode, setNameFilter, exec, and on
// acceptance exitfile.
class QtFileDialog : public QDialog
{
    Q_OBJECT
public:
    explicit QtFileDialog(QWidget *parent = nullptr);

    void setNameFilter(const QString &filter);
    void setAcceptMode(QFileDialog::AcceptMode mode);
    void setFileMode(QFileDialog::FileMode mode);
    QStringList selectedFiles() const;

    // The chosen path. In save mode a name typed without suffix gets the suffix of the
    // selected filter ("data" with "*.txt" gives "data.txt"); a name with a suffix of
    // its own keeps it.
    QString exitfile() const;

    QFileDialog *fileDialog() const { return m_fileDialog; }

    // the suffix a filter such as "*.txt" or "文本 (*.txt *.log)" asks for, "" if none
    static QString suffixOfFilter(const QString &filter);

public slots:
    void onFileDialogFinished(int result);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void InitWidget();
    void adjustChildren();

    QtTitleBar *m_titleBar;
    QFileDialog *m_fileDialog;
};

#endif // QTFILEDIALOG_H
