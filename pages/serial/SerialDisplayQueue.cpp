#include "SerialDisplayQueue.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>

#include <climits>

namespace {

// Characters at which a plain-text insertion starts a new paragraph of the document.
// A carriage return directly followed by a line feed makes one break with it, so a
// slice never ends between the two: "\r" and "\n" inserted apart would make two.
bool endsLine(const QString &text, int i)
{
    switch (text.at(i).unicode()) {
    case '\n':
    case QChar::ParagraphSeparator:
    case 0xFDD0: // the document's frame markers
    case 0xFDD1:
        return true;
    case '\r':
        return i + 1 == text.size() || text.at(i + 1) != QLatin1Char('\n');
    default:
        return false;
    }
}

// the text as the document gives it back once inserted as plain text
QString asShown(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar &c : text) {
        switch (c.unicode()) {
        case '\r':
        case QChar::ParagraphSeparator:
        case QChar::LineSeparator:
        case 0xFDD0:
        case 0xFDD1:
            c = QLatin1Char('\n');
            break;
        case QChar::Nbsp:
            c = QLatin1Char(' ');
            break;
        default:
            break;
        }
    }
    return text;
}

} // namespace

SerialDisplayQueue::SerialDisplayQueue(QTextEdit *view, QObject *parent)
    : QObject(parent)
    , m_view(view)
    , m_nHeadShown(0)
    , m_bHeadOpened(false)
    , m_nSliceChars(DefaultSliceChars)
{
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    m_timer->setInterval(0);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(SltShowNextSlice()));
}

void SerialDisplayQueue::setSliceChars(int chars)
{
    m_nSliceChars = qMax(1, chars);
}

void SerialDisplayQueue::appendParagraph(const QString &text)
{
    const bool waiting = isPending();
    m_pending.enqueue(text);
    if (waiting)
        return; // behind what is still being shown, in order
    // the first slice goes in now, so that a block starts to show with the read that
    // brought it
    showSlice(m_nSliceChars);
    if (isPending())
        m_timer->start();
}

int SerialDisplayQueue::pendingChars() const
{
    int chars = 0;
    for (const QString &text : m_pending)
        chars += text.size();
    return chars - m_nHeadShown;
}

void SerialDisplayQueue::clear()
{
    m_timer->stop();
    m_pending.clear();
    m_nHeadShown = 0;
    m_bHeadOpened = false;
}

void SerialDisplayQueue::flush()
{
    m_timer->stop();
    while (isPending())
        showSlice(INT_MAX);
}

QString SerialDisplayQueue::plainText() const
{
    QString text = m_view->toPlainText();
    for (int i = 0; i < m_pending.size(); ++i) {
        if (i == 0 && m_bHeadOpened) {
            text += asShown(m_pending.at(0).mid(m_nHeadShown));
            continue;
        }
        if (!text.isEmpty())
            text += QLatin1Char('\n');
        text += asShown(m_pending.at(i));
    }
    return text;
}

void SerialDisplayQueue::SltShowNextSlice()
{
    showSlice(m_nSliceChars);
    if (isPending())
        m_timer->start();
}

// Inserts about budget characters, in one edit so that the view lays them out once.
void SerialDisplayQueue::showSlice(int budget)
{
    QScrollBar *bar = m_view->verticalScrollBar();
    const bool atBottom = bar->value() >= bar->maximum();
    QTextDocument *document = m_view->document();
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    bool inserted = false;
    while (isPending() && budget > 0) {
        const QString &head = m_pending.head();
        if (!m_bHeadOpened) {
            // what append does: a new paragraph unless the view is empty
            if (!document->isEmpty())
                cursor.insertBlock();
            m_bHeadOpened = true;
            --budget;
        }
        const int length = cutLength(head, m_nHeadShown, budget, !inserted);
        if (length > 0) {
            cursor.insertText(head.mid(m_nHeadShown, length));
            m_nHeadShown += length;
            budget -= length;
        }
        inserted = true;
        if (m_nHeadShown < head.size())
            break;
        m_pending.dequeue();
        m_nHeadShown = 0;
        m_bHeadOpened = false;
    }
    cursor.endEditBlock();
    if (atBottom)
        bar->setValue(bar->maximum());
}

// How much of text, from position from, goes into a slice with budget characters left.
// Slices end after a line: the view lays out a line as a whole whenever it changes,
// so a line split over two slices would be laid out twice. A line longer than a whole
// slice goes in alone (mayOverrun), since splitting it could only add work; otherwise
// it waits for the next slice.
int SerialDisplayQueue::cutLength(const QString &text, int from, int budget, bool mayOverrun)
{
    const int rest = text.size() - from;
    if (rest <= budget)
        return rest;
    for (int i = from + budget - 1; i >= from; --i) {
        if (endsLine(text, i))
            return i + 1 - from;
    }
    if (!mayOverrun)
        return 0;
    for (int i = from + budget; i < text.size(); ++i) {
        if (endsLine(text, i))
            return i + 1 - from;
    }
    return rest;
}
