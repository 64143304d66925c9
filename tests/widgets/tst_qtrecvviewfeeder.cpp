#include "LarkTest.h"
#include "QtRecvViewFeeder.h"
#include "RecvViewText.h"

#include <QtWidgets>
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

class TstQtRecvViewFeeder : public QObject
{
    Q_OBJECT
private slots:
    void slicedParagraphsReadAsWholeAppendsWould_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QStringList>("paragraphs");
        QTest::addColumn<int>("slice");
        const QString crlf = lines("line %1 状态正常\r\n", 300);
        QTest::newRow("crlf lines after text") << "earlier" << QStringList{crlf, "tail"} << 64;
        // slice ends fall on every position of a "\r\n" somewhere in the text
        QTest::newRow("cr lf at every slice end") << "x" << QStringList{crlf} << 7;
        QTest::newRow("paragraph ends in cr") << "x" << QStringList{"ab\r", "\ncd\r\n", "\r"} << 2;
        QTest::newRow("characters outside the basic plane")
            << "" << QStringList{lines(QString("%1") + QString::fromUtf8("\xF0\x9F\x98\x80\xF0\xA0\x80\x80") + "\n", 100)}
            << 3;
        QTest::newRow("markup stays text") << "" << QStringList{lines("<b>%1</b>\n", 100), "<i>x</i>"} << 16;
        QTest::newRow("empty paragraphs") << "" << QStringList{"", "", "a", "", lines("%1\n", 50), ""} << 4;
        QTest::newRow("line longer than a slice")
            << "x" << QStringList{"short\n" + QString(500, 'h') + "\nend", QString(300, 'g')} << 64;
    }

    // The view ends with the same text and the same paragraphs as if each paragraph had
    // gone in whole, and while slices are pending, plainText already reads that way.
    void slicedParagraphsReadAsWholeAppendsWould()
    {
        QFETCH(QString, before);
        QFETCH(QStringList, paragraphs);
        QFETCH(int, slice);

        QTextEdit whole, sliced, bounded;
        // joined: lines joined into paragraphs of the view up to a bound, and long ones broken
        QtRecvViewFeeder queue(&sliced), joined(&bounded);
        joined.setViewLineChars(600); // longer than any line here
        for (QtRecvViewFeeder *feeder : {&queue, &joined}) {
            if (!before.isEmpty())
                feeder->appendParagraph(before);
            feeder->setSliceChars(slice);
            for (const QString &p : paragraphs)
                feeder->appendParagraph(p);
        }
        if (!before.isEmpty())
            appendWhole(&whole, before);
        for (const QString &p : paragraphs)
            appendWhole(&whole, p);
        QVERIFY(queue.isPending());
        QCOMPARE(queue.plainText(), whole.toPlainText());

        // part way: the view has begun, the rest reads on from it
        QVERIFY(sliced.toPlainText().size() > before.size());
        QMetaObject::invokeMethod(&queue, "SltShowSlice");
        QCOMPARE(queue.plainText(), whole.toPlainText());

        QTRY_VERIFY(!queue.isPending());
        QCOMPARE(sliced.toPlainText(), whole.toPlainText());
        QCOMPARE(blockTexts(sliced.document()), blockTexts(whole.document()));
        QCOMPARE(queue.plainText(), whole.toPlainText());
        QTRY_VERIFY(!joined.isPending());
        QCOMPARE(bounded.toPlainText(), whole.toPlainText());
        QCOMPARE(joined.plainText(), whole.toPlainText());
    }

    // The network page's way: text gathers for a few milliseconds, the view keeps only
    // its bound, and whatever the view dropped is still there for a save.
    void aBoundedViewHoldsTheTailWhilePlainTextKeepsEverything()
    {
        QTextEdit view;
        view.setReadOnly(true);
        QtRecvViewFeeder queue(&view);
        queue.setMaxViewChars(200);
        queue.setSliceChars(200);
        queue.setDelay(5);
        queue.setFollowEnd(true);

        QString all;
        for (int i = 0; i < 50; ++i) {
            const QString line = QString("[Tcp client c] line %1 ").arg(i);
            queue.appendParagraph(line);
            queue.appendText("0D 0A ");
            all += (all.isEmpty() ? "" : "\n") + line + "0D 0A ";
        }
        // the first text after a quiet spell is drawn at once, the rest waits for the delay
        QCOMPARE(view.toPlainText(), QString("[Tcp client c] line 0 "));
        QCOMPARE(queue.plainText(), all);
        QTRY_VERIFY(!queue.isPending());
        const QString shown = view.toPlainText();
        QVERIFY(shown.size() <= 200 && shown.size() > 150);
        QVERIFY2(all.endsWith(shown), qPrintable(shown));
        // the cut fell at a line start
        QVERIFY(shown.startsWith("[Tcp client c] line "));

        // a run of hex longer than the bound: the view is that run's tail, cut after a blank
        queue.appendText(QString("AB ").repeated(1000));
        QTRY_VERIFY(!queue.isPending());
        QCOMPARE(view.toPlainText(), QString("AB ").repeated(66));
        QCOMPARE(queue.plainText(), all + QString("AB ").repeated(1000));

        // flush shows what is pending at once; clear drops it for good
        queue.appendParagraph("flushed");
        queue.flush();
        QVERIFY(!queue.isPending() && view.toPlainText().endsWith("\nflushed"));
        queue.appendParagraph(lines("%1\n", 100));
        QVERIFY(queue.isPending());
        queue.clear();
        QCOMPARE(queue.plainText(), QString());
        queue.appendParagraph("fresh");
        QTRY_COMPARE(view.toPlainText(), QString("fresh"));
        QVERIFY(!queue.isPending()); // nothing dropped comes back with a later turn
    }

    // Lines joined into long paragraphs of the view: the bound still cuts the view at
    // the start of a line.
    void aBoundCutsJoinedLinesAtALineStart()
    {
        QTextEdit view;
        QtRecvViewFeeder queue(&view);
        queue.setViewLineChars(4000);
        queue.setMaxViewChars(480);
        QString all;
        for (int i = 0; i < 20; ++i) {
            const QString piece = lines(QString("chunk %1 line %2\r\n").arg(i), 20);
            queue.appendParagraph(piece);
            all += (all.isEmpty() ? "" : "\n") + RecvViewText::plainTextOf(piece);
            queue.flush();
        }
        QVERIFY(view.document()->blockCount() <= 3); // the lines of a piece share its paragraph
        const QString shown = view.toPlainText();
        QVERIFY(shown.size() <= 480);
        QVERIFY2(all.endsWith(shown), qPrintable(shown));
        QVERIFY2(all.at(all.size() - shown.size() - 1) == '\n', qPrintable(shown));
    }

    // Text that would push out all the view holds takes its place, leaving no older text
    // beside it, slack or not.
    void textPushingOutTheWholeViewTakesItsPlace()
    {
        QTextEdit view;
        view.setUndoRedoEnabled(false); // as the pages' views
        QtRecvViewFeeder queue(&view);
        queue.setMaxViewChars(200, 200);
        queue.appendParagraph(lines("old %1\n", 20));
        queue.flush();
        queue.appendParagraph(lines("new %1\n", 60));
        queue.flush();
        QVERIFY(lines("new %1\n", 60).endsWith(view.toPlainText()) && view.toPlainText().startsWith("new "));
    }
};

LARK_TEST_MAIN(TstQtRecvViewFeeder)
#include "tst_qtrecvviewfeeder.moc"
