#ifndef SERIALDISPLAYQUEUE_H
#define SERIALDISPLAYQUEUE_H

#include <QObject>
#include <QQueue>
#include <QString>

class QTextEdit;
class QTimer;

// Puts received text into the receive view a bounded slice per turn of the event loop.
// Each call of appendParagraph stands for one append to the view: the text opens a new
// paragraph (unless the view is empty) and goes in as plain text, never as HTML. What
// fits one slice goes in at once; a larger text, such as a block held while display
// was stopped, starts at once and continues on later turns, and everything appended
// meanwhile waits behind it. The view ends up with the same text as if each paragraph
// had gone in whole.
// Slices end after whole lines, because the view lays out a line as one piece every
// time it changes. A single line longer than a slice therefore still goes in, and is
// laid out, in one turn: hex text, which has no line breaks, is such a line.
class SerialDisplayQueue : public QObject
{
    Q_OBJECT
public:
    // lines of text of this size take some 20 ms to lay out on a modest machine
    static constexpr int DefaultSliceChars = 32 * 1024;

    explicit SerialDisplayQueue(QTextEdit *view, QObject *parent = nullptr);

    void appendParagraph(const QString &text);

    bool isPending() const { return !m_pending.isEmpty(); }
    int pendingChars() const;
    // drops what is not shown yet, as clearing the view does
    void clear();
    // shows all that is pending now, in this turn
    void flush();
    // the view's plain text followed by what is pending, exactly as it will read once
    // shown; a save takes this without waiting for the view
    QString plainText() const;

    int sliceChars() const { return m_nSliceChars; }
    void setSliceChars(int chars);

private slots:
    void SltShowNextSlice();

private:
    void showSlice(int budget);
    static int cutLength(const QString &text, int from, int budget, bool mayOverrun);

    QTextEdit *m_view;
    QTimer *m_timer;
    // paragraphs not yet wholly shown; the head may be shown up to m_nHeadShown
    QQueue<QString> m_pending;
    int m_nHeadShown;
    bool m_bHeadOpened;
    int m_nSliceChars;
};

#endif // SERIALDISPLAYQUEUE_H
