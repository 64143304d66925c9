#include "RecvViewText.h"
#include "NumberTool.h"

#include <QStringList>
#include <QTextCodec>
#include <algorithm>

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

// Characters the document gives back as something else: every break but the line feed
// itself becomes one, a no-break space a blank.
inline bool convertedHere(QChar c)
{
    const ushort u = c.unicode();
    if (u < 0xA0)
        return u == '\r';
    return u == QChar::Nbsp || u == QChar::LineSeparator || u == QChar::ParagraphSeparator || u == 0xFDD0
        || u == 0xFDD1;
}

} // namespace

QString RecvViewText::plainTextOf(const QString &text)
{
    // Most received text (hex above all) holds nothing to convert: it comes back shared,
    // with no copy. Where something is converted, the rest is copied in runs.
    const QChar *src = text.constData();
    const int n = text.size();
    int i = 0;
    while (i < n && !convertedHere(src[i]))
        ++i;
    if (i == n)
        return text;
    QString out(n, Qt::Uninitialized);
    QChar *dst = out.data();
    std::copy(src, src + i, dst);
    QChar *d = dst + i;
    for (; i < n; ++i) {
        const QChar c = src[i];
        if (!convertedHere(c)) {
            *d++ = c;
            continue;
        }
        if (c.unicode() == '\r' && i + 1 < n && src[i + 1].unicode() == '\n')
            ++i;
        *d++ = c.unicode() == QChar::Nbsp ? QLatin1Char(' ') : QLatin1Char('\n');
    }
    out.resize(int(d - dst));
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

QByteArray RecvViewText::saveBytes(const QString &fileName, const QString &viewText, const QByteArray &codecName)
{
    if (!fileName.endsWith("txt"))
        return NumberTool::hexStrToByteArray(viewText);
    QTextCodec *codec = QTextCodec::codecForName(codecName);
    return codec ? codec->fromUnicode(viewText) : viewText.toUtf8();
}

QString RecvViewText::terminalForm(const QString &text)
{
    QString result;
    for (const QString &piece : text.split("\r\n", Qt::KeepEmptyParts, Qt::CaseSensitive)) {
        const QString line = lastCRText(piece);
        if (!line.isEmpty())
            result.append(line + "\n");
    }
    return result;
}

QString RecvViewText::lastCRText(const QString &line)
{
    if (line.isEmpty())
        return line;
    QStringList pieces = line.split("\r", Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (pieces.last().isEmpty())
        pieces.removeLast();
    return pieces.isEmpty() ? QString() : pieces.last();
}
