#include "QtTerminalWidget.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "RecvViewText.h"

#include <QEvent>
#include <QFont>
#include <QScrollBar>
#include <QTextCursor>
#include <QTime>

QtTerminalWidget::QtTerminalWidget(QWidget *parent)
    : QTextBrowser(parent)
    , m_bEnableCR(true)
{
    document()->setUndoRedoEnabled(false);
    setReadOnly(true);
    // Received text needs no kerning or ligatures, and skipping the shaper where a
    // script allows it roughly halves the cost of laying out each line.
    QFont f = font();
    f.setStyleStrategy(QFont::PreferNoShaping);
    setFont(f);

    QScrollBar *bar = verticalScrollBar();
    connect(bar, SIGNAL(valueChanged(int)), this, SLOT(SltScrollMoved(int)));
    connect(bar, SIGNAL(rangeChanged(int,int)), this, SLOT(SltScrollRangeChanged(int,int)));
}

// A view at its bottom stays there whatever moves the bottom. Writers follow new text
// when the bar stands at its maximum as they insert; but a relayout between two
// inserts (another skin's border and padding, a resize, the fold button) moves the
// maximum and leaves the bar just short of it, and from then on no insert followed
// until the user dragged the bar down again.
void QtTerminalWidget::SltScrollMoved(int value)
{
    m_bAtBottom = value >= verticalScrollBar()->maximum();
}

void QtTerminalWidget::SltScrollRangeChanged(int min, int max)
{
    Q_UNUSED(min)
    if (m_bAtBottom)
        verticalScrollBar()->setValue(max);
}

// The style sheets paint the view's background on the frame, round corners and all,
// and make the viewport see-through. Then every repaint of the text repainted the
// window, the page and the frame behind it too, and scrolling could not move the
// pixels already drawn but had to draw the whole view again, dozens of times a second
// while a board sends. The viewport lies inside the padding, clear of the corners, and
// its palette holds the sheet's background: filling itself with it looks the same and
// makes it opaque. A style sheet applied again turns the fill off again, hence here.
bool QtTerminalWidget::event(QEvent *e)
{
    const bool done = QTextBrowser::event(e);
    if (e->type() == QEvent::Polish || e->type() == QEvent::StyleChange)
        viewport()->setAutoFillBackground(true);
    return done;
}

bool QtTerminalWidget::isEnableCR() const
{
    return m_bEnableCR;
}

void QtTerminalWidget::setEnableCR(bool enable)
{
    m_bEnableCR = enable;
}

void QtTerminalWidget::moveCursorToEnd()
{
    moveCursor(QTextCursor::End);
}

void QtTerminalWidget::setTerminalText(const QString &strText)
{
    m_strTerminalText = strText;
    setPlainText(strText);
    moveCursorToEnd();
}

void QtTerminalWidget::clearTerminal()
{
    m_strTerminalText.clear();
    m_byRecvData.clear();
    clear();
}

void QtTerminalWidget::insertRecvData(const QByteArray &byData, bool hexShow, bool showLog)
{
    if (hexShow) {
        // hex text lives in the document only; the byte history never sees it
        QString prefix;
        if (showLog)
            prefix = QTime::currentTime().toString("\n[hh:mm:ss.zzz]") + " Hex >\n";
        insertPlainText(prefix + NumberTool::byteToHex(byData));
    } else {
        if (showLog && (m_byRecvData.isEmpty() || m_byRecvData.endsWith('\n'))) {
            // a header only at the start of a fresh line of received data
            m_byRecvData.append((QTime::currentTime().toString("\n[hh:mm:ss.zzz]") + " ASCII >\n").toLatin1());
        }
        m_byRecvData.append(byData);
        if (m_byRecvData.size() > MaxRecvHistory)
            m_byRecvData.remove(0, m_byRecvData.size() - MaxRecvHistory);
        // decoding the whole history each time shows a character split across two
        // calls whole once its tail arrives
        setPlainText(MyApp::toUnicode(m_byRecvData));
    }
    moveCursorToEnd();
}

void QtTerminalWidget::insertTerminalText(const QString &strText)
{
    if (!m_bEnableCR) {
        moveCursorToEnd();
        insertPlainText(strText);
        moveCursorToEnd();
        return;
    }
    m_strTerminalText.append(strText);
    setPlainText(RecvViewText::terminalForm(m_strTerminalText));
    moveCursorToEnd();
}

QString QtTerminalWidget::getLastCRText(QString text)
{
    return RecvViewText::lastCRText(text);
}
