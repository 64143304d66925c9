#ifndef QTTERMINALWIDGET_H
#define QTTERMINALWIDGET_H

#include <QByteArray>
#include <QTextBrowser>

// Read-only receive view. Three feeds: plain replacement, a carriage-return aware
// text feed, and a byte feed (hex or text, optionally time-tagged) whose text history
// is bounded so that every call renders at most that much again.
class QtTerminalWidget : public QTextBrowser
{
    Q_OBJECT
public:
    static constexpr int MaxRecvHistory = 20480;

    explicit QtTerminalWidget(QWidget *parent = nullptr);

    bool isEnableCR() const;
    void setEnableCR(bool enable);
    // what a terminal leaves on a line after carriage returns: a return wipes the line
    QString getLastCRText(QString text);

    QByteArray recvHistory() const { return m_byRecvData; }

public slots:
    void setTerminalText(const QString &strText);
    void insertTerminalText(const QString &strText);
    void clearTerminal();
    void insertRecvData(const QByteArray &byData, bool hexShow = true, bool showLog = true);

protected:
    bool event(QEvent *e) override;

private slots:
    void SltScrollMoved(int value);
    void SltScrollRangeChanged(int min, int max);

private:
    void moveCursorToEnd();

    QString m_strTerminalText;
    bool m_bEnableCR;
    QByteArray m_byRecvData;
    // the user left the view at its end: it follows the end wherever that moves
    bool m_bAtBottom = true;
};

#endif // QTTERMINALWIDGET_H
