#include "LarkTest.h"
#include "SerialDisplayQueue.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QtTest>

namespace {

// what the view held before paragraphs went in in slices: each one appended whole,
// as plain text
void appendWhole(QTextEdit *view, const QString &text)
{
    if (!Qt::mightBeRichText(text)) {
        view->append(text);
        return;
    }
    QTextCursor cursor(view->document());
    cursor.movePosition(QTextCursor::End);
    if (!view->document()->isEmpty())
        cursor.insertBlock();
    cursor.insertText(text);
}

QStringList blockTexts(const QTextDocument *document)
{
    QStringList texts;
    for (QTextBlock b = document->begin(); b.isValid(); b = b.next())
        texts << b.text();
    return texts;
}

QString lines(const QString &line, int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += line.arg(i);
    return text;
}

} // namespace

class TstSerialDisplayQueue : public QObject
{
    Q_OBJECT
private slots:
    void slicedParagraphsReadAsWholeAppendsWould_data();
    void slicedParagraphsReadAsWholeAppendsWould();
    void slicesEndAfterALineUnlessTheLineIsLongerThanASlice();
    void clearDropsWhatIsNotShownAndFlushShowsTheRest();
    void aFollowedViewKeepsFollowingWhileSlicesGoIn();
};

void TstSerialDisplayQueue::slicedParagraphsReadAsWholeAppendsWould_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QStringList>("paragraphs");
    QTest::addColumn<int>("slice");
    const QString crlf = lines("line %1 状态正常\r\n", 300);
    QTest::newRow("crlf lines into an empty view") << QString() << QStringList{crlf} << 64;
    QTest::newRow("crlf lines after text") << "earlier" << QStringList{crlf, "tail"} << 64;
    // slice ends fall on every position of a "\r\n" somewhere in the text
    QTest::newRow("cr lf at every slice end") << "x" << QStringList{crlf} << 7;
    QTest::newRow("lone carriage returns") << "x" << QStringList{lines("progress %1\r", 200)} << 9;
    QTest::newRow("paragraph ends in cr") << "x" << QStringList{"ab\r", "\ncd\r\n", "\r"} << 2;
    QTest::newRow("separators the document knows")
        << "x"
        << QStringList{lines(QString("a%1") + QChar(QChar::ParagraphSeparator) + "b" + QChar(QChar::LineSeparator)
                                 + "c" + QChar(QChar::Nbsp) + "d" + QChar(0xFDD0) + "e" + QChar(0xFDD1) + "\n",
                             50)}
        << 5;
    QTest::newRow("characters outside the basic plane")
        << "" << QStringList{lines(QString("%1") + QString::fromUtf8("\xF0\x9F\x98\x80\xF0\xA0\x80\x80") + "\n", 100)}
        << 3;
    QTest::newRow("markup stays text") << "" << QStringList{lines("<b>%1</b>\n", 100), "<i>x</i>"} << 16;
    QTest::newRow("empty paragraphs") << "" << QStringList{"", "", "a", "", lines("%1\n", 50), ""} << 4;
    QTest::newRow("line longer than a slice")
        << "x" << QStringList{"short\n" + QString(500, 'h') + "\nend", QString(300, 'g')} << 64;
    QTest::newRow("log tags between chunks")
        << "" << QStringList{"[12:00:00.000] ASCII >", crlf, "[12:00:00.001] HEX >", "61 62 "} << 100;
}

// The view ends with the same text and the same paragraphs as if each paragraph had
// gone in whole, and while slices are pending, plainText already reads that way.
void TstSerialDisplayQueue::slicedParagraphsReadAsWholeAppendsWould()
{
    QFETCH(QString, before);
    QFETCH(QStringList, paragraphs);
    QFETCH(int, slice);

    QTextEdit whole;
    whole.setReadOnly(true);
    QTextEdit sliced;
    sliced.setReadOnly(true);
    if (!before.isEmpty()) {
        appendWhole(&whole, before);
        appendWhole(&sliced, before);
    }
    for (const QString &p : paragraphs)
        appendWhole(&whole, p);

    SerialDisplayQueue queue(&sliced);
    queue.setSliceChars(slice);
    for (const QString &p : paragraphs)
        queue.appendParagraph(p);
    QVERIFY(queue.isPending());
    QCOMPARE(queue.plainText(), whole.toPlainText());

    // part way: the view has begun, the rest reads on from it
    QVERIFY(sliced.toPlainText().size() > before.size());
    QMetaObject::invokeMethod(&queue, "SltShowNextSlice");
    QCOMPARE(queue.plainText(), whole.toPlainText());

    QTRY_VERIFY(!queue.isPending());
    QCOMPARE(sliced.toPlainText(), whole.toPlainText());
    QCOMPARE(blockTexts(sliced.document()), blockTexts(whole.document()));
    QCOMPARE(queue.plainText(), whole.toPlainText());
}

void TstSerialDisplayQueue::slicesEndAfterALineUnlessTheLineIsLongerThanASlice()
{
    QTextEdit view;
    SerialDisplayQueue queue(&view);
    queue.setSliceChars(10);
    // the first slice goes in with the call: whole lines up to the budget
    queue.appendParagraph("abc\ndef\nghijkl\n" + QString(25, 'L') + "\nz");
    QCOMPARE(view.toPlainText(), QString("abc\ndef\n"));
    QCOMPARE(queue.pendingChars(), 7 + 26 + 1);
    // the next slices, one turn each: a line that fits no slice goes alone, whole
    QList<int> pending;
    while (queue.isPending()) {
        QMetaObject::invokeMethod(&queue, "SltShowNextSlice");
        pending << queue.pendingChars();
    }
    QCOMPARE(pending, (QList<int>{26 + 1, 1, 0}));
    QCOMPARE(view.toPlainText(), "abc\ndef\nghijkl\n" + QString(25, 'L') + "\nz");

    // small text while nothing is pending shows at once, in the same call
    queue.appendParagraph("next");
    QVERIFY(!queue.isPending());
    QVERIFY(view.toPlainText().endsWith("z\nnext"));
}

void TstSerialDisplayQueue::clearDropsWhatIsNotShownAndFlushShowsTheRest()
{
    QTextEdit view;
    SerialDisplayQueue queue(&view);
    queue.setSliceChars(8);
    const QString text = lines("%1\n", 100);
    queue.appendParagraph(text);
    queue.appendParagraph("after");
    QVERIFY(queue.isPending());
    view.clear();
    queue.clear();
    QVERIFY(!queue.isPending());
    QCOMPARE(queue.plainText(), QString());
    // nothing of the dropped paragraphs comes back later
    queue.appendParagraph("fresh");
    QCOMPARE(view.toPlainText(), QString("fresh"));

    queue.appendParagraph(text);
    queue.appendParagraph("after");
    queue.flush();
    QVERIFY(!queue.isPending());
    QCOMPARE(view.toPlainText(), "fresh\n" + text + "\nafter");
}

void TstSerialDisplayQueue::aFollowedViewKeepsFollowingWhileSlicesGoIn()
{
    QTextEdit view;
    view.setReadOnly(true);
    view.resize(300, 200);
    view.show();
    SerialDisplayQueue queue(&view);
    queue.setSliceChars(256);
    queue.appendParagraph(lines("line %1\n", 400));
    QTRY_VERIFY(!queue.isPending());
    QScrollBar *bar = view.verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());

    // scrolled up by the user: the view stays where it is
    bar->setValue(0);
    queue.appendParagraph(lines("more %1\n", 400));
    QTRY_VERIFY(!queue.isPending());
    QCOMPARE(bar->value(), 0);
}

LARK_TEST_MAIN(TstSerialDisplayQueue)
#include "tst_serialdisplayqueue.moc"
