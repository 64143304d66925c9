#include "QtRecvViewFeeder.h"

#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>

#include <climits>

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
    return breaksHere(text.at(i));
}

} // namespace

QtRecvViewFeeder::QtRecvViewFeeder(QTextEdit *view, QObject *parent)
    : QObject(parent)
    , m_view(view)
    , m_nMaxViewChars(0)
    , m_nViewSlack(0)
    , m_nDelay(0)
    , m_nSliceChars(DefaultSliceChars)
    , m_bFollowEnd(false)
    , m_nViewLineChars(0)
{
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    m_timer->setInterval(0);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(SltShowSlice()));
}

void QtRecvViewFeeder::setMaxViewChars(int chars, int slack)
{
    m_nMaxViewChars = qMax(0, chars);
    m_nViewSlack = qMax(0, slack);
}

void QtRecvViewFeeder::setDelay(int ms)
{
    m_nDelay = qMax(0, ms);
    m_timer->setInterval(m_nDelay);
}

void QtRecvViewFeeder::setSliceChars(int chars)
{
    m_nSliceChars = qMax(1, chars);
}

void QtRecvViewFeeder::setFollowEnd(bool follow)
{
    m_bFollowEnd = follow;
}

void QtRecvViewFeeder::setViewLineChars(int chars)
{
    m_nViewLineChars = qMax(0, chars);
}

void QtRecvViewFeeder::appendParagraph(const QString &text)
{
    // the break is a paragraph separator, not a line feed, so that it cannot join a
    // carriage return at the end of the text before it into one break
    if (m_log.isEmpty())
        enqueue(text);
    else
        enqueue(QChar(QChar::ParagraphSeparator) + text);
}

void QtRecvViewFeeder::appendText(const QString &text)
{
    enqueue(text);
}

void QtRecvViewFeeder::enqueue(const QString &piece)
{
    if (piece.isEmpty())
        return;
    m_log.append(plainTextOf(piece));
    const bool waiting = isPending();
    // Text inserted apart keeps its breaks apart: a carriage return that ended the last
    // piece and a line feed that starts this one are two breaks, not one CR LF.
    if (waiting && piece.at(0) == QLatin1Char('\n') && m_strPending.endsWith(QLatin1Char('\r')))
        m_strPending[m_strPending.size() - 1] = QChar(QChar::ParagraphSeparator);
    m_strPending.append(piece);
    if (waiting)
        return; // behind what is still being shown, in order
    if (m_nDelay > 0) {
        if (!m_timer->isActive())
            m_timer->start();
        return;
    }
    // the first slice goes in now, so that a block starts to show with the read that
    // brought it
    showSlice(m_nSliceChars);
    if (isPending())
        m_timer->start();
}

void QtRecvViewFeeder::clear()
{
    m_timer->stop();
    m_strPending.clear();
    m_log.clear();
    m_view->clear();
    m_viewRun = ViewRun();
}

void QtRecvViewFeeder::flush()
{
    m_timer->stop();
    while (isPending())
        showSlice(INT_MAX);
}

void QtRecvViewFeeder::SltShowSlice()
{
    QElapsedTimer cost;
    cost.start();
    showSlice(m_nSliceChars);
    if (!isPending())
        return;
    // with a delay the next slice waits at least twice as long as this one took, so
    // that a flood never takes the event loop for itself
    if (m_nDelay > 0)
        m_timer->setInterval(qBound(m_nDelay, int(cost.elapsed()) * 2, 1000));
    m_timer->start();
}

// Inserts about budget characters in one edit, so that the view lays them out once.
void QtRecvViewFeeder::showSlice(int budget)
{
    if (m_nMaxViewChars > 0 && m_strPending.size() >= m_nMaxViewChars) {
        // all that stands in the view would be pushed out at once
        m_strPending.remove(0, tailStart(m_strPending, m_nMaxViewChars));
        m_view->clear();
        m_viewRun = ViewRun();
    }
    const int length = sliceLength(m_strPending, budget);
    QScrollBar *bar = m_view->verticalScrollBar();
    const bool atBottom = bar->value() >= bar->maximum();

    QTextCursor cursor(m_view->document());
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    if (m_nViewLineChars > 0)
        cursor.insertText(viewForm(m_strPending.left(length), m_nViewLineChars, m_viewRun));
    else
        cursor.insertText(m_strPending.left(length));
    cursor.endEditBlock();
    m_strPending.remove(0, length);
    trimView();

    if (m_bFollowEnd)
        m_view->moveCursor(QTextCursor::End);
    else if (atBottom)
        bar->setValue(bar->maximum());
}

// Drops the oldest text beyond the bound: whole lines when the cut falls near a line's
// end, else after a blank inside a long paragraph such as running hex.
void QtRecvViewFeeder::trimView()
{
    if (m_nMaxViewChars <= 0)
        return;
    QTextDocument *doc = m_view->document();
    const int total = doc->characterCount() - 1;
    if (total <= m_nMaxViewChars + m_nViewSlack)
        return;
    const int excess = total - m_nMaxViewChars;
    const QTextBlock block = doc->findBlock(excess);
    int cut = excess;
    const int blockEnd = block.position() + block.length();
    if (block.next().isValid() && blockEnd - excess <= m_nMaxViewChars / 4) {
        cut = blockEnd;
    } else {
        const QString text = block.text();
        const int inBlock = excess - block.position();
        const int lineEnd = text.indexOf(QChar(QChar::LineSeparator), qMax(0, inBlock - 1));
        const int blank = text.indexOf(QLatin1Char(' '), qMax(0, inBlock - 1));
        if (lineEnd >= 0 && lineEnd - inBlock < m_nMaxViewChars / 4)
            cut = block.position() + lineEnd + 1;
        else if (blank >= 0 && blank - inBlock < 16)
            cut = block.position() + blank + 1;
    }
    QTextCursor cursor(doc);
    cursor.setPosition(0);
    cursor.setPosition(cut, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

QString QtRecvViewFeeder::plainTextOf(const QString &text)
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

int QtRecvViewFeeder::tailStart(const QString &text, int maxChars)
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

QString QtRecvViewFeeder::viewForm(const QString &text, int maxLine, ViewRun &run)
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

// Slices end after a line: a line split over two slices would be laid out twice. A
// line longer than the whole budget goes in alone, since splitting it could only add
// work.
int QtRecvViewFeeder::sliceLength(const QString &text, int budget)
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
