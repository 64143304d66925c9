#include "QtRecvViewFeeder.h"

#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>

#include <climits>


QtRecvViewFeeder::QtRecvViewFeeder(QTextEdit *view, QObject *parent)
    : QObject(parent)
    , m_view(view)
    , m_nMaxViewChars(0)
    , m_nViewSlack(0)
    , m_nDelay(0)
    , m_nPause(0)
    , m_nSliceChars(DefaultSliceChars)
    , m_bFollowEnd(false)
    , m_nViewLineChars(0)
{
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
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
    m_nPause = m_nDelay;
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
    enqueue(text, !m_log.isEmpty());
}

void QtRecvViewFeeder::appendText(const QString &text)
{
    enqueue(text, false);
}

// The break before a paragraph is a paragraph separator, not a line feed, so that it
// cannot join a carriage return at the end of the text before it into one break. It
// goes in apart from the text, which then reaches the kept log without a copy.
void QtRecvViewFeeder::enqueue(const QString &piece, bool paragraph)
{
    if (piece.isEmpty() && !paragraph)
        return;
    if (paragraph)
        m_log.append(QStringLiteral("\n"));
    m_log.append(RecvViewText::plainTextOf(piece));
    const bool waiting = isPending();
    // Text inserted apart keeps its breaks apart: a carriage return that ended the last
    // piece and a line feed that starts this one are two breaks, not one CR LF.
    if (paragraph)
        m_strPending.append(QChar(QChar::ParagraphSeparator));
    else if (waiting && piece.at(0) == QLatin1Char('\n') && m_strPending.endsWith(QLatin1Char('\r')))
        m_strPending[m_strPending.size() - 1] = QChar(QChar::ParagraphSeparator);
    m_strPending.append(piece);
    if (waiting)
        return; // behind what is still being shown, in order
    // Slices go in at most once a pause: text after a quiet spell shows at once, text
    // that follows within the pause gathers until it ends. A board that prints a line
    // now and then is seen without delay, and a flood costs one edit and one repaint
    // a pause, not one a read.
    const qint64 left = m_sinceSlice.isValid() ? m_nPause - m_sinceSlice.elapsed() : 0;
    if (left > 0) {
        m_timer->start(int(left));
        return;
    }
    // the first slice goes in now, so that a block starts to show with the read that
    // brought it
    showSlice(m_nSliceChars);
    if (isPending())
        m_timer->start(m_nPause);
}

void QtRecvViewFeeder::clear()
{
    m_timer->stop();
    m_strPending.clear();
    m_log.clear();
    m_view->clear();
    m_viewRun = RecvViewText::ViewRun();
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
    // with a delay the next slice waits at least twice as long as this one took, so
    // that a flood never takes the event loop for itself
    if (m_nDelay > 0)
        m_nPause = qBound(m_nDelay, int(cost.elapsed()) * 2, 1000);
    if (isPending())
        m_timer->start(m_nPause);
}

// Inserts about budget characters in one edit, so that the view lays them out once.
void QtRecvViewFeeder::showSlice(int budget)
{
    QTextDocument *doc = m_view->document();
    // what the view holds before this slice, when all of it is to go
    int dropped = 0;
    if (m_nMaxViewChars > 0 && m_strPending.size() >= m_nMaxViewChars) {
        // all that stands in the view would be pushed out at once
        m_strPending.remove(0, RecvViewText::tailStart(m_strPending, m_nMaxViewChars));
        m_viewRun = RecvViewText::ViewRun();
        // A document that keeps an undo stack is emptied as before, so that the stack
        // never holds what was dropped. Others drop the old text only once the new
        // stands behind it: a view emptied first hid its scroll bar, and the bar's
        // going and coming back made the view lay out what it holds twice more.
        if (doc->isUndoRedoEnabled())
            m_view->clear();
        else
            dropped = doc->characterCount() - 1;
    }
    const int length = RecvViewText::sliceLength(m_strPending, budget);
    QScrollBar *bar = m_view->verticalScrollBar();
    const bool atBottom = bar->value() >= bar->maximum();

    QTextCursor cursor(doc);
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    if (m_nViewLineChars > 0)
        cursor.insertText(RecvViewText::viewForm(m_strPending.left(length), m_nViewLineChars, m_viewRun));
    else
        cursor.insertText(m_strPending.left(length));
    cursor.endEditBlock();
    if (dropped > 0) {
        cursor.setPosition(0);
        cursor.setPosition(dropped, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    }
    m_strPending.remove(0, length);
    trimView();

    if (m_bFollowEnd)
        m_view->moveCursor(QTextCursor::End);
    else if (atBottom)
        bar->setValue(bar->maximum());
    m_sinceSlice.start();
}

// Drops the oldest text beyond the bound, where the one cut rule puts the front of
// what stays. The document's raw text has a position per character, separators
// included, so the rule's index is a document position.
void QtRecvViewFeeder::trimView()
{
    if (m_nMaxViewChars <= 0)
        return;
    QTextDocument *doc = m_view->document();
    if (doc->characterCount() - 1 <= m_nMaxViewChars + m_nViewSlack)
        return;
    const int cut = RecvViewText::tailStart(doc->toRawText(), m_nMaxViewChars);
    QTextCursor cursor(doc);
    cursor.setPosition(0);
    cursor.setPosition(cut, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}




