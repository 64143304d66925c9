#ifndef RECVVIEWTEXT_H
#define RECVVIEWTEXT_H

#include <QByteArray>
#include <QString>

// The text rules of a receive view, free of any widget: what a plain-text document
// gives back, where a bounded view cuts its front, how a long paragraph is broken for
// the view, and where a slice of waiting text ends. QtRecvViewFeeder applies them to
// its view; a cut or a form computed here is what the view shows.
class RecvViewText
{
public:
    // The one plain-text rule: text as QTextDocument::toPlainText gives it back once
    // inserted as plain text. Every line or paragraph break (CR LF, CR, LF, U+2028,
    // U+2029, the frame marks U+FDD0 and U+FDD1) becomes one LF, a no-break space a
    // blank.
    static QString plainTextOf(const QString &text);
    // The one cut rule: where a tail of at most maxChars characters of text starts:
    // at a line start if one lies close (within a quarter of maxChars), else after a
    // blank (hex bytes stay whole), else exactly. Paragraph and line separators count
    // as line ends, so the rule reads a document's raw text as well as received text.
    static int tailStart(const QString &text, int maxChars);
    // How far the view's last paragraph and its last line run, in characters.
    struct ViewRun {
        int paragraph = 0;
        int line = 0;
    };
    // The view's form of text when its paragraphs are bound to maxLine characters. The
    // line ends inside a paragraph become line separators while the paragraph holds
    // fewer than maxLine characters, so that the view keeps about a paragraph per
    // appended piece rather than one per line: the document pays for every paragraph
    // far more than for a line inside one, and the lines read the same. Past the bound
    // the next line end ends the paragraph. A line longer than the bound (running hex)
    // gets a paragraph separator after its first blank at or past the bound (or, with
    // no blank within 64 more, after the character there). run is where the view's
    // last paragraph and line stand before text, and is left where they stand after.
    static QString viewForm(const QString &text, int maxLine, ViewRun &run);

    // How much of the front of text makes a slice of about budget characters: slices
    // end after a line, since a line split over two slices would be laid out twice, and
    // a line longer than the whole budget goes in alone.
    static int sliceLength(const QString &text, int budget);

    // What a terminal shows for the text fed to it with carriage returns honoured:
    // "\r\n" ends a line, and of each line only what follows its last "\r" stays (a
    // single trailing "\r" is forgiven). Every line that is left gets one "\n", the
    // unfinished last one too; lines left empty vanish.
    static QString terminalForm(const QString &text);
    // the rest of one line after its carriage returns: a return wipes the line
    static QString lastCRText(const QString &line);

    // What a view's text saves as in a file of that name: the text in the named codec
    // (UTF-8 without such a codec) for a name ending in "txt", else the text read back
    // as hexadecimal (raw bytes). A view taken in ASCII or with log tags goes through
    // the same lenient conversion: what is not hex text yields what it makes of it.
    static QByteArray saveBytes(const QString &fileName, const QString &viewText, const QByteArray &codecName);
};

#endif // RECVVIEWTEXT_H
