#ifndef AUTOREPLYRUNNER_H
#define AUTOREPLYRUNNER_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QVector>

#include "ReplyMatcher.h"
#include "ReplyRule.h"

class LinkTap;
class QTextCodec;

// Reply rules at work on one link: every received chunk goes through the matcher, and
// each firing writes its reply through the tap, at once or after the rule's delay.
// Counts are of firings (a delayed reply is counted when the match happens).
// Replies still waiting for their delay are dropped when the rules change, when the
// runner is switched off and when the link closes: they answered a conversation that
// is over.
class AutoReplyRunner : public QObject
{
    Q_OBJECT
public:
    explicit AutoReplyRunner(QObject *parent = nullptr);

    void setTap(LinkTap *tap);
    void setCodec(const QByteArray &codecName);
    void setRules(const QList<ReplyRule> &rules);
    QList<ReplyRule> rules() const { return m_rules; }
    void setActive(bool active);
    bool isActive() const { return m_bActive; }

    int fireCount(int row) const { return m_counts.value(row); }
    QString problem(int row) const { return m_matcher.problem(row); }

public slots:
    void feed(const QByteArray &bytes);
    void resetCounts();
    void linkClosed();

signals:
    void fired(int row, int count);
    // a reply that could not be written (no link open), or a rule that stopped
    void problemFound(int row, const QString &text);

private:
    void rebuild();
    void cancelPending();
    void writeReply(int row, const QByteArray &bytes);

    QPointer<LinkTap> m_tap;
    QTextCodec *m_codec = nullptr;
    QList<ReplyRule> m_rules;
    QVector<QByteArray> m_replies;
    QVector<int> m_counts;
    ReplyMatcher m_matcher;
    QElapsedTimer m_clock;
    QObject *m_pending = nullptr; // parent of the delayed replies' timers
    bool m_bActive = false;
};

#endif // AUTOREPLYRUNNER_H
