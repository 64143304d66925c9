#include "ReplyMatcher.h"

#include <QTextCodec>
#include <QTextDecoder>

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <limits>

// PCRE2's own step counter, not a clock: the same pattern stops at the same place on
// every machine, and far below the 200 ms a call may take (a catastrophic pattern on a
// full window stops after about 10 ms here).
static const uint32_t kMatchLimit = 2000000;
static const uint32_t kHeapLimitKb = 16 * 1024;

struct ReplyMatcher::Compiled
{
    ReplyRule rule;
    QString problem;
    bool usable = false;
    qint64 lastFired = std::numeric_limits<qint64>::min();
    // literal
    QByteArray bytes;
    QByteArrayMatcher matcher;
    QByteArray tail;
    // regular expression
    pcre2_code *code = nullptr;
    pcre2_match_data *data = nullptr;
    pcre2_match_context *context = nullptr;
    int lookbehind = 0;
    QString window;
    int searchFrom = 0; // where in the window the next match may start

    ~Compiled()
    {
        pcre2_match_data_free(data);
        pcre2_match_context_free(context);
        pcre2_code_free(code);
    }
};

ReplyMatcher::ReplyMatcher() = default;
ReplyMatcher::~ReplyMatcher() = default;

void ReplyMatcher::setRules(const QList<ReplyRule> &rules, QTextCodec *codec)
{
    m_codec = codec;
    m_rules.clear();
    m_anyRegex = false;
    for (const ReplyRule &rule : rules) {
        auto c = std::make_unique<Compiled>();
        c->rule = rule;
        c->problem = rule.problem();
        if (c->problem.isEmpty() && rule.matchKind != ReplyRule::MatchRegex) {
            c->bytes = rule.patternBytes(codec);
            c->matcher.setPattern(c->bytes);
            c->usable = true;
        } else if (c->problem.isEmpty()) {
            int err = 0;
            PCRE2_SIZE offset = 0;
            c->code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(rule.pattern.utf16()), PCRE2_SIZE(rule.pattern.size()),
                                    PCRE2_UTF | PCRE2_MATCH_INVALID_UTF, &err, &offset, nullptr);
            if (!c->code) {
                PCRE2_UCHAR msg[256];
                pcre2_get_error_message(err, msg, 256);
                c->problem = QString("正则表达式第 %1 个字符：%2").arg(offset + 1).arg(QString::fromUtf16(msg));
            } else {
                pcre2_jit_compile(c->code, PCRE2_JIT_COMPLETE | PCRE2_JIT_PARTIAL_HARD); // optional speed-up
                uint32_t behind = 0;
                pcre2_pattern_info(c->code, PCRE2_INFO_MAXLOOKBEHIND, &behind);
                c->lookbehind = int(behind);
                c->data = pcre2_match_data_create_from_pattern(c->code, nullptr);
                c->context = pcre2_match_context_create(nullptr);
                pcre2_set_match_limit(c->context, kMatchLimit);
                pcre2_set_heap_limit(c->context, kHeapLimitKb);
                c->usable = true;
                m_anyRegex = true;
            }
        }
        m_rules.push_back(std::move(c));
    }
    reset();
}

void ReplyMatcher::reset()
{
    for (auto &c : m_rules) {
        c->tail.clear();
        c->window.clear();
        c->searchFrom = 0;
    }
    m_decoder.reset(m_codec ? m_codec->makeDecoder() : QTextCodec::codecForName("UTF-8")->makeDecoder());
}

QString ReplyMatcher::problem(int rule) const
{
    return rule >= 0 && rule < int(m_rules.size()) ? m_rules[size_t(rule)]->problem : QString();
}

QVector<int> ReplyMatcher::takeStopped()
{
    QVector<int> out;
    out.swap(m_stopped);
    return out;
}

bool ReplyMatcher::fires(Compiled &c, qint64 nowMs)
{
    if (c.rule.minIntervalMs > 0 && c.lastFired != std::numeric_limits<qint64>::min()
        && nowMs - c.lastFired < c.rule.minIntervalMs)
        return false;
    c.lastFired = nowMs;
    return true;
}

QVector<int> ReplyMatcher::feed(const QByteArray &chunk, qint64 nowMs)
{
    QVector<int> out;
    if (chunk.isEmpty())
        return out;
    // decoded once for every regular expression; the decoder keeps split characters
    const QString text = m_anyRegex ? m_decoder->toUnicode(chunk) : QString();
    for (size_t i = 0; i < m_rules.size(); ++i) {
        Compiled &c = *m_rules[i];
        if (!c.usable || !c.rule.enabled)
            continue;
        if (c.code)
            feedRegex(int(i), c, text, nowMs, out);
        else
            feedLiteral(int(i), c, chunk, nowMs, out);
    }
    return out;
}

void ReplyMatcher::feedLiteral(int index, Compiled &c, const QByteArray &chunk, qint64 nowMs, QVector<int> &out)
{
    const int len = c.bytes.size();
    const QByteArray joined = c.tail.isEmpty() ? chunk : c.tail + chunk;
    int from = 0;
    for (int at; (at = c.matcher.indexIn(joined, from)) >= 0;) {
        from = at + len;
        if (fires(c, nowMs))
            out << index;
    }
    c.tail = joined.mid(qMax(from, joined.size() - (len - 1)));
}

void ReplyMatcher::feedRegex(int index, Compiled &c, const QString &text, qint64 nowMs, QVector<int> &out)
{
    c.window += text;
    const auto *subject = reinterpret_cast<PCRE2_SPTR>(c.window.utf16());
    const PCRE2_SIZE size = PCRE2_SIZE(c.window.size());
    PCRE2_SIZE offset = PCRE2_SIZE(c.searchFrom);
    PCRE2_SIZE keepFrom = size;
    while (offset <= size) {
        const int rc = pcre2_match(c.code, subject, size, offset, PCRE2_PARTIAL_HARD, c.data, c.context);
        const PCRE2_SIZE *ov = pcre2_get_ovector_pointer(c.data);
        if (rc >= 0) {
            // an empty match says nothing arrived; it neither fires nor uses text
            if (ov[1] > ov[0]) {
                if (fires(c, nowMs))
                    out << index;
                offset = ov[1];
            } else {
                offset = ov[0] + 1;
            }
            keepFrom = size;
            continue;
        }
        if (rc == PCRE2_ERROR_PARTIAL) {
            keepFrom = ov[0];
        } else if (rc != PCRE2_ERROR_NOMATCH) {
            PCRE2_UCHAR msg[256];
            pcre2_get_error_message(rc, msg, 256);
            c.problem = QString("正则表达式回溯过多，已停用（%1）").arg(QString::fromUtf16(msg));
            c.usable = false;
            c.window.clear();
            c.searchFrom = 0;
            m_stopped << index;
            return;
        }
        break;
    }
    // Keep what a lookbehind may still look at, even text a match used; the next search
    // starts at keepFrom, so that text is only looked back at, never matched again.
    const PCRE2_SIZE behind = PCRE2_SIZE(c.lookbehind);
    PCRE2_SIZE cut = keepFrom > behind ? keepFrom - behind : 0;
    cut = qMax(cut, size > PCRE2_SIZE(RegexWindow) ? size - PCRE2_SIZE(RegexWindow) : PCRE2_SIZE(0));
    c.window.remove(0, int(cut));
    c.searchFrom = int(qMax(keepFrom, cut) - cut);
}
