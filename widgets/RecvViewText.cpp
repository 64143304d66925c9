#include "RecvViewText.h"

namespace {

// Characters that begin a break of the document, a carriage return whatever follows it.
bool breaksHere(QChar c)
{
    switch (c.unicode()) {
    case '\n':
    case '\r':
    case QChar::ParagraphSeparator:
    case 0xFDD0:
    case 0xFDD1:
        return true;
    default:
        return false;
    }
}

// Characters at which a plain-text insertion starts a new paragraph of the document.
// A carriage return directly followed by a line feed makes one break with it, so a
// slice never ends between the two: "\r" and "\n" inserted apart would make two.
bool endsLine(const QString &text, int i)
{
    if (text.at(i) == QLatin1Char('\r'))
        return i + 1 == text.size() || text.at(i + 1) != QLatin1Char('\n');
    // the lines the view keeps inside a paragraph end in a line separator
    return breaksHere(text.at(i)) || text.at(i) == QChar(QChar::LineSeparator);
}

} // namespace

QString RecvViewText::plainTextOf(const QString &text)
{
    QString out;
    out.reserve(text.size());
    const QChar *src = text.constData();
    const int n = text.size();
    for (int i = 0; i < n; ++i) {
        switch (src[i].unicode()) {
        case '\r':
            if (i + 1 < n && src[i + 1].unicode() == '\n')
                ++i;
            out.append(QLatin1Char('\n'));
            break;
        case QChar::LineSeparator:
        case QChar::ParagraphSeparator:
        case 0xFDD0:
        case 0xFDD1:
            out.append(QLatin1Char('\n'));
            break;
        case QChar::Nbsp:
            out.append(QLatin1Char(' '));
            break;
        default:
            out.append(src[i]);
            break;
        }
    }
    return out;
}

int RecvViewText::tailStart(const QString &text, int maxChars)
{
    const int size = text.size();
    if (maxChars <= 0)
        return size;
    if (size <= maxChars)
        return 0;
    const int start = size - maxChars;
    if (endsLine(text, start - 1))
        return start;
    const int slack = qMax(1, maxChars / 4);
    for (int i = start; i < size && i - start < slack; ++i) {
        if (endsLine(text, i))
            return i + 1;
    }
    // from the character before the cut, so that a cut just after a blank stays
    const int blank = text.indexOf(QLatin1Char(' '), start - 1);
    if (blank >= 0 && blank - start < 16)
        return blank + 1;
    return start;
}

QString RecvViewText::viewForm(const QString &text, int maxLine, ViewRun &run)
{
    const QChar *src = text.constData();
    const int n = text.size();
    QString out;
    int copied = 0; // text before this index is in out already
    int para = run.paragraph;
    int line = run.line;
    auto breakAt = [&](int from, int to, QChar mark) {
        if (out.isEmpty())
            out.reserve(n + n / maxLine + 1);
        out.append(src + copied, from - copied);
        out.append(mark);
        copied = to;
    };
    for (int i = 0; i < n; ++i) {
        const ushort c = src[i].unicode();
        if (c == '\n' || c == '\r') {
            const int from = i;
            if (c == '\r' && i + 1 < n && src[i + 1].unicode() == '\n')
                ++i; // one break, as the document makes it
            line = 0;
            if (para < maxLine) {
                breakAt(from, i + 1, QChar(QChar::LineSeparator));
                ++para;
            } else {
                breakAt(from, i + 1, QChar(QChar::ParagraphSeparator));
                para = 0;
            }
            continue;
        }
        if (c == QChar::ParagraphSeparator || c == 0xFDD0 || c == 0xFDD1) {
            para = line = 0;
            continue;
        }
        ++para;
        ++line;
        if (line < maxLine || (c != ' ' && line < maxLine + 64))
            continue;
        if (i + 1 < n && breaksHere(src[i + 1]))
            continue; // the line ends here anyway
        breakAt(i + 1, i + 1, QChar(QChar::ParagraphSeparator));
        para = line = 0;
    }
    run.paragraph = para;
    run.line = line;
    if (copied == 0)
        return text;
    out.append(src + copied, n - copied);
    return out;
}

int RecvViewText::sliceLength(const QString &text, int budget)
{
    if (text.size() <= budget)
        return text.size();
    for (int i = budget - 1; i >= 0; --i) {
        if (endsLine(text, i))
            return i + 1;
    }
    for (int i = budget; i < text.size(); ++i) {
        if (endsLine(text, i))
            return i + 1;
    }
    return text.size();
}
