#ifndef CAPTURELOG_H
#define CAPTURELOG_H

#include <QByteArray>
#include <QDateTime>
#include <QString>

class QTextCodec;

// One line of a readable capture log (.log), written as UTF-8:
//
//   RX 2026-11-25 17:30:01.123 +12.345 T hello\r\n
//   TX 2026-11-25 17:30:01.200 +12.422 H 68 65 6C 6C 6F
//
// direction, local time with milliseconds, seconds since the capture started, then
// the chunk as text in the page's codec ("T") or as hexadecimal ("H"). In text, a
// backslash and the control characters are written as \\ \r \n \t and \xNN, so one
// chunk stays one line. A chunk the codec cannot carry unchanged (a broken multibyte
// sequence) is written in hexadecimal even in text mode: parsing a line always gives
// back exactly the bytes that arrived.
class CaptureLog
{
public:
    struct Entry {
        bool sent = false;
        QDateTime time;
        qint64 sinceStartMs = 0;
        QByteArray bytes;
    };

    // the line with its '\n'; codec null means hexadecimal
    static QByteArray formatLine(const Entry &entry, QTextCodec *codec);
    // the same line appended to `out`, the time given as its text (CaptureClock):
    // a capture writes every chunk this way, straight into what waits for the file
    static void appendLine(QByteArray *out, bool sent, const QByteArray &timeText, qint64 sinceStartMs,
                           const QByteArray &bytes, QTextCodec *codec);
    // false for a line that is not one of formatLine's (the codec is the one the
    // log was written with)
    static bool parseLine(const QByteArray &line, QTextCodec *codec, Entry *entry);
};

#endif // CAPTURELOG_H
