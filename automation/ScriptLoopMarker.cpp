#include "ScriptLoopMarker.h"

#include <QMap>
#include <QStringList>
#include <QVector>

namespace {

bool isIdentifierChar(QChar c)
{
    return c.isLetterOrNumber() || c == '_' || c == '$';
}

// words after which a '/' begins a regular expression, although they are identifiers
bool endsNoValue(const QString &word)
{
    static const QStringList words = {"return", "typeof", "case", "do", "else", "in", "of", "new", "delete",
                                      "void", "instanceof", "throw", "yield", "await"};
    return words.contains(word);
}

struct LoopParen {
    int depth; // paren depth inside the for's parentheses
    int line;
    int firstSemicolon = -1;
};

} // namespace

QString ScriptLoopMarker::mark(const QString &s, const QString &probe)
{
    QMap<int, QString> inserts; // position in s, text put before it
    QVector<LoopParen> fors;
    const int n = s.size();
    int line = 1;
    int depth = 0;
    bool valueBefore = false;
    QChar lastSignificant;
    QString pendingKeyword; // "while" or "for" waiting for its '('
    int pendingLine = 0;

    auto skipTo = [&](int i, QChar end, bool regex) {
        // past the closing `end`, escapes honoured; a class [...] may hold the regex's end
        bool inClass = false;
        while (i < n) {
            const QChar c = s.at(i);
            if (c == '\n')
                ++line;
            if (c == '\\') {
                i += 2;
                continue;
            }
            if (regex && c == '[')
                inClass = true;
            else if (regex && c == ']')
                inClass = false;
            else if (c == end && !inClass)
                return i + 1;
            else if (regex && c == '\n')
                return i + 1; // not a regular expression after all
            ++i;
        }
        return n;
    };

    int i = 0;
    while (i < n) {
        const QChar c = s.at(i);
        const QChar next = i + 1 < n ? s.at(i + 1) : QChar();
        if (c == '\n') {
            ++line;
            ++i;
            continue;
        }
        if (c.isSpace()) {
            ++i;
            continue;
        }
        if (c == '/' && next == '/') {
            while (i < n && s.at(i) != '\n')
                ++i;
            continue;
        }
        if (c == '/' && next == '*') {
            const int end = s.indexOf("*/", i + 2);
            const int stop = end < 0 ? n : end + 2;
            line += s.midRef(i, stop - i).count('\n');
            i = stop;
            continue;
        }
        const bool opensLoop = c == '(' && !pendingKeyword.isEmpty();
        const QString keyword = pendingKeyword;
        pendingKeyword.clear();
        if (c == '"' || c == '\'' || c == '`' || (c == '/' && !valueBefore)) {
            i = skipTo(i + 1, c, c == '/');
            valueBefore = true;
            lastSignificant = c;
            continue;
        }
        if (isIdentifierChar(c)) {
            int end = i;
            while (end < n && isIdentifierChar(s.at(end)))
                ++end;
            const QString word = s.mid(i, end - i);
            if ((word == "while" || word == "for") && lastSignificant != '.') {
                pendingKeyword = word;
                pendingLine = line;
            }
            valueBefore = !endsNoValue(word) && word != "while" && word != "for";
            lastSignificant = s.at(end - 1);
            i = end;
            continue;
        }
        if (c == '(') {
            ++depth;
            if (opensLoop && keyword == "while")
                inserts[i + 1] += probe + QString("(%1), ").arg(pendingLine);
            else if (opensLoop)
                fors.append({depth, pendingLine});
        } else if (c == ')') {
            if (!fors.isEmpty() && fors.last().depth == depth)
                fors.removeLast();
            --depth;
        } else if (c == ';' && !fors.isEmpty() && fors.last().depth == depth) {
            LoopParen &f = fors.last();
            if (f.firstSemicolon < 0) {
                f.firstSemicolon = i;
            } else {
                const bool empty = s.midRef(f.firstSemicolon + 1, i - f.firstSemicolon - 1).trimmed().isEmpty();
                inserts[f.firstSemicolon + 1] += probe + QString(empty ? "(%1)" : "(%1), ").arg(f.line);
                // the third part and the ')' are no concern of the marker
                fors.removeLast();
            }
        }
        valueBefore = c == ')' || c == ']' || c == '}';
        lastSignificant = c;
        ++i;
    }

    QString out;
    out.reserve(n + inserts.size() * (probe.size() + 8));
    int from = 0;
    for (auto it = inserts.cbegin(); it != inserts.cend(); ++it) {
        out += s.midRef(from, it.key() - from);
        out += it.value();
        from = it.key();
    }
    out += s.midRef(from);
    return out;
}
