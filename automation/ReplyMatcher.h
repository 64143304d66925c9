#ifndef REPLYMATCHER_H
#define REPLYMATCHER_H

#include <QByteArray>
#include <QByteArrayMatcher>
#include <QList>
#include <QString>
#include <QVector>

#include <memory>

#include "ReplyRule.h"

class QTextCodec;
class QTextDecoder;

// Finds the rules' patterns in a received stream that arrives in chunks of any size.
//
// A literal pattern (text or hex) keeps the last length-1 bytes of the stream that no
// match used, so a pattern split over chunks is found once it is complete, and bytes
// of one match never count for the next.
//
// Regular expressions see the received text decoded in the page's codec (one decoder,
// so a character split over chunks is whole). Each keeps a window of text where a match
// may still start: a partial match at the end keeps its start (and what its lookbehind
// needs), anything else is dropped, and the window never holds more than RegexWindow
// characters. A regular expression whose
// backtracking exceeds a fixed budget (about 100 ms of work at worst on a window) is
// stopped, disabled until the rules are set again, and reported by problem().
class ReplyMatcher
{
public:
    static constexpr int RegexWindow = 4096;

    ReplyMatcher();
    ~ReplyMatcher();

    // compiles the rules; rules with a problem() are kept but never fire
    void setRules(const QList<ReplyRule> &rules, QTextCodec *codec);
    // forget every partial match (a new link, or a codec change)
    void reset();

    // The rules that fire for this chunk, one entry per firing, in rule order. nowMs is
    // a monotonic clock, used for each rule's minimum interval.
    QVector<int> feed(const QByteArray &chunk, qint64 nowMs);

    int ruleCount() const { return m_rules.size(); }
    // why a rule does not fire (bad pattern, stopped regular expression), or empty
    QString problem(int rule) const;
    // the rules whose regular expression was stopped since the last call
    QVector<int> takeStopped();

private:
    struct Compiled;
    bool fires(Compiled &c, qint64 nowMs);
    void feedLiteral(int index, Compiled &c, const QByteArray &chunk, qint64 nowMs, QVector<int> &out);
    void feedRegex(int index, Compiled &c, const QString &text, qint64 nowMs, QVector<int> &out);

    std::vector<std::unique_ptr<Compiled>> m_rules;
    QTextCodec *m_codec = nullptr;
    std::unique_ptr<QTextDecoder> m_decoder;
    bool m_anyRegex = false;
    QVector<int> m_stopped;
};

#endif // REPLYMATCHER_H
