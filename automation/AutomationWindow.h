#ifndef AUTOMATIONWINDOW_H
#define AUTOMATIONWINDOW_H

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QPair>
#include <QVector>

#include "ReplyRule.h"

class AutoReplyRunner;
#include "LinkTap.h"
class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QTableWidget;
class QTimer;
class QtTabBar;
class QtTitleBar;
class ScriptRuntime;

// Reply rules and a script for one page's link, in a frameless window of their own.
// Received bytes come from the tap before any display rule; replies and send() go out
// through the tap, so the page counts and shows them as its own. Closing the window
// switches the rules off and stops the script: nothing answers on a link whose window
// is out of sight; Escape does not close it. File choices go through the Slt* slots;
// loadRules, saveRules, loadScript and saveScript do the work after the choice. With
// state files set, the rules and the script are kept there across runs.
class AutomationWindow : public QDialog
{
    Q_OBJECT
public:
    enum Column { ColEnabled, ColMatch, ColPattern, ColReplyAs, ColReply, ColDelay, ColInterval, ColCount, ColumnCount };

    AutomationWindow(LinkTap *tap, const QString &pageName, QWidget *parent = nullptr);
    ~AutomationWindow() override;

    QList<ReplyRule> rules() const;
    void setRules(const QList<ReplyRule> &rules);
    bool loadRules(const QString &path);
    bool saveRules(const QString &path);
    bool loadScript(const QString &path);
    bool saveScript(const QString &path);
    // loads what the files hold, and saves there on close and destruction
    void setStateFiles(const QString &rulesPath, const QString &scriptPath);
    void saveState();

    LinkTap *tap() const { return m_tap; }
    AutoReplyRunner *runner() const { return m_runner; }
    ScriptRuntime *runtime() const { return m_runtime; }
    QTableWidget *table() const { return m_table; }
    QPlainTextEdit *editor() const { return m_edtScript; }
    QPlainTextEdit *logView() const { return m_edtLog; }
    QString rulesMessage() const;
    QString scriptState() const;
    void setCurrentTab(int index);

signals:
    // plot(name, value) of the script
    void plotValue(const QString &name, double value);

public slots:
    void SltAddRule();
    void SltDeleteRule();
    void SltMoveRuleUp();
    void SltMoveRuleDown();
    void SltLoadRules();
    void SltSaveRules();
    void SltRulesEdited();
    void SltRulesSwitched(bool on);
    void SltRuleFired(int row, int count);
    void SltRuleProblem(int row, const QString &text);
    void SltOpenScript();
    void SltSaveScript();
    void SltRunScript();
    void SltStopScript();
    void SltScriptLog(const QString &text);
    void SltFlushLog();
    void SltScriptStarted();
    void SltScriptFinished(const QString &reason);
    void SltCursorMoved();

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void InitWidget();
    QWidget *InitRulesPage();
    QWidget *InitScriptPage();
    void addRuleRow(int row, const ReplyRule &rule);
    ReplyRule ruleAt(int row) const;
    void moveRule(int from, int to);
    void showRulesMessage(const QString &text, bool error);
    void applyCodec();
    QString askFile(bool save, const QString &filter);

    QPointer<LinkTap> m_tap;
    QString m_strPage;
    AutoReplyRunner *m_runner;
    ScriptRuntime *m_runtime;
    QtTitleBar *m_titleBar;
    QtTabBar *m_tabBar;
    QStackedWidget *m_stackedWidget;
    QCheckBox *m_chkRulesOn;
    QTableWidget *m_table;
    QLabel *m_labRules;
    QPlainTextEdit *m_edtScript;
    QPlainTextEdit *m_edtLog;
    QTimer *m_logTimer;
    QVector<QPair<int, QString>> m_logPending; // ms of the day, line
    int m_nLogDropped = 0;
    QLabel *m_labScriptFile;
    QLabel *m_labScriptState;
    QLabel *m_labCursor;
    QPushButton *m_btnRun;
    QPushButton *m_btnStop;
    QString m_strScriptFile;
    QString m_strStateRules;
    QString m_strStateScript;
    bool m_bFilling = false;
};

#endif // AUTOMATIONWINDOW_H
