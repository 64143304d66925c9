#include "AutoReplyRunner.h"
#include "LinkTap.h"

#include <QTextCodec>
#include <QTimer>

AutoReplyRunner::AutoReplyRunner(QObject *parent)
    : QObject(parent)
    , m_codec(QTextCodec::codecForName("UTF-8"))
{
    m_clock.start();
    m_pending = new QObject(this);
}

void AutoReplyRunner::setTap(LinkTap *tap)
{
    if (m_tap)
        disconnect(m_tap, nullptr, this, nullptr);
    m_tap = tap;
    if (tap) {
        connect(tap, &LinkTap::received, this, &AutoReplyRunner::feed);
        connect(tap, &LinkTap::closed, this, &AutoReplyRunner::linkClosed);
    }
    m_matcher.reset();
}

void AutoReplyRunner::setCodec(const QByteArray &codecName)
{
    QTextCodec *codec = QTextCodec::codecForName(codecName);
    if (!codec || codec == m_codec)
        return;
    m_codec = codec;
    rebuild();
}

void AutoReplyRunner::setRules(const QList<ReplyRule> &rules)
{
    if (rules == m_rules)
        return;
    // a row keeps its count while its rule stays the same
    QVector<int> counts(rules.size(), 0);
    for (int i = 0; i < rules.size(); ++i) {
        const int old = m_rules.indexOf(rules.at(i));
        if (old >= 0)
            counts[i] = m_counts.value(old);
    }
    m_rules = rules;
    m_counts = counts;
    rebuild();
}

void AutoReplyRunner::rebuild()
{
    cancelPending();
    m_matcher.setRules(m_rules, m_codec);
    m_replies.clear();
    for (const ReplyRule &rule : m_rules)
        m_replies << rule.replyBytes(m_codec);
}

void AutoReplyRunner::setActive(bool active)
{
    if (active == m_bActive)
        return;
    m_bActive = active;
    cancelPending();
    m_matcher.reset();
}

void AutoReplyRunner::resetCounts()
{
    m_counts.fill(0);
    for (int i = 0; i < m_counts.size(); ++i)
        emit fired(i, 0);
}

void AutoReplyRunner::linkClosed()
{
    cancelPending();
    m_matcher.reset();
}

void AutoReplyRunner::cancelPending()
{
    delete m_pending;
    m_pending = new QObject(this);
}

void AutoReplyRunner::feed(const QByteArray &bytes)
{
    if (!m_bActive)
        return;
    const QVector<int> hits = m_matcher.feed(bytes, m_clock.elapsed());
    for (int row : hits) {
        const int count = ++m_counts[row];
        emit fired(row, count);
        const int delay = m_rules.at(row).delayMs;
        if (delay <= 0) {
            writeReply(row, m_replies.at(row));
        } else {
            const QByteArray reply = m_replies.at(row);
            QTimer::singleShot(delay, m_pending, [this, row, reply]() { writeReply(row, reply); });
        }
    }
    for (int row : m_matcher.takeStopped())
        emit problemFound(row, m_matcher.problem(row));
}

void AutoReplyRunner::writeReply(int row, const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return;
    if (!m_tap || m_tap->write(bytes) < 0)
        emit problemFound(row, "链接未打开，应答未发送");
}
