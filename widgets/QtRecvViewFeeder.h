#ifndef QTRECVVIEWFEEDER_H
#define QTRECVVIEWFEEDER_H

#include "QtCompactLog.h"
#include "RecvViewText.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

class QTextEdit;
class QTimer;

// Feeds received text into a page's receive view without letting a flood take the
// event loop, and keeps everything received since the last clear for saving.
//
// Text goes in as plain text, never as HTML: a board that prints "<b>" keeps its
// bytes. appendParagraph does what QTextEdit::append does (a new paragraph unless
// nothing has been shown yet); appendText runs on where the last text ended.
//
// What waits is drawn in slices: one edit of the document per turn, ending after a
// whole line, because the view lays out a line as one piece each time it changes (a
// line longer than a slice, such as hex text, therefore still goes in whole). With a
// delay of 0 the first slice goes in at once and the rest on the next turns of the
// event loop; with a delay, slices go in at most once per delay (text after a quiet
// spell at once, what follows gathers till the delay has passed) and the pause after
// a slice grows with what the slice cost. With a view bound, the view holds only the
// last characters (cut at a line start or after a blank where one lies close) while
// plainText still gives everything, kept compressed. With a view line bound, the
// lines of a paragraph stay in one paragraph of the view up to that bound, and a
// paragraph longer than that (running hex) is broken in the view alone, after a
// blank, so that the view never lays out one huge paragraph again for every change
// near it; plainText keeps it whole.
class QtRecvViewFeeder : public QObject
{
    Q_OBJECT
public:
    // lines of text of this size take some 20 ms to lay out on a modest machine
    static constexpr int DefaultSliceChars = 32 * 1024;

    explicit QtRecvViewFeeder(QTextEdit *view, QObject *parent = nullptr);

    // 0 (the default): the view keeps everything. With slack, the view may grow that
    // much past the bound before it is cut back to it: every cut at the front makes
    // the view place all its paragraphs anew, so a cut per frame cost as much as the
    // whole view each time.
    void setMaxViewChars(int chars, int slack = 0);
    void setDelay(int ms);
    void setSliceChars(int chars);
    // true: every slice leaves the view at its end; false (the default): the view
    // follows new text only while it is scrolled to the bottom, as append does
    void setFollowEnd(bool follow);
    // 0 (the default): paragraphs go into the view as they are
    void setViewLineChars(int chars);

    void appendParagraph(const QString &text);
    void appendText(const QString &text);

    // everything appended since the last clear, exactly as the view's plain text
    // reads once all is shown (and before any bound cut it)
    QString plainText() const { return m_log.text(); }
    const QtCompactLog &log() const { return m_log; }
    bool isPending() const { return !m_strPending.isEmpty(); }
    // empties the view, what waits and the kept text
    void clear();
    // shows all that waits, now
    void flush();

private slots:
    void SltShowSlice();

private:
    void enqueue(const QString &piece, bool paragraph);
    void showSlice(int budget);
    void trimView();

    QTextEdit *m_view;
    QTimer *m_timer;
    QtCompactLog m_log;
    QString m_strPending;
    int m_nMaxViewChars;
    int m_nViewSlack;
    int m_nDelay;
    // the least time from one slice to the next: the delay, or more after a costly slice
    int m_nPause;
    QElapsedTimer m_sinceSlice;
    int m_nSliceChars;
    bool m_bFollowEnd;
    int m_nViewLineChars;
    // where the view's last paragraph stands, for the line bound
    RecvViewText::ViewRun m_viewRun;
};

#endif // QTRECVVIEWFEEDER_H
