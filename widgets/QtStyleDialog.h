#ifndef QTSTYLEDIALOG_H
#define QTSTYLEDIALOG_H

#include <QColor>
#include <QDialog>

class QStackedWidget;
class QtColorPanel;
class QtTabBar;
class QtTitleBar;

// The frameless dialog for the background colour, the text colour and the font of
// a view. The choice goes to the debug log only: no setting and no view changes.
class QtStyleDialog : public QDialog
{
    Q_OBJECT
public:
    explicit QtStyleDialog(QWidget *parent = nullptr, const QString &title = QString::fromUtf8("接收区设置"));

    QString title() const { return m_strTitle; }

public slots:
    void SltBackGroundChanged(int id, const QColor &color);
    void SltTextColorChanged(int id, const QColor &color);

private:
    void InitWidget();

    QString m_strTitle;
    QtTitleBar *m_titleBar;
    QtTabBar *m_tabBar;
    QStackedWidget *m_stackedWidget;
    QtColorPanel *m_panelBackground;
    QtColorPanel *m_panelText;
};

#endif // QTSTYLEDIALOG_H
