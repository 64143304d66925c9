#ifndef QTSENDBOXFILES_H
#define QTSENDBOXFILES_H

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

// The two small files a send box keeps in conf/: the single-send history and the
// multi-send table. Reading and writing are deliberately not symmetric:
// - the history is written one message per line but read back word by word, so a
//   message with blanks returns as several entries;
// - the table is written through the locale codec but read back as UTF-8.
// Bad lines are passed over without a trace; nothing here ever reports an error.
class QtSendBoxFiles
{
public:
    // words of the history file; a missing file gives an empty list
    static QStringList readHistory(const QString &path);
    // one entry per line; false when the file could not be opened
    static bool writeHistory(const QString &path, const QStringList &entries);

    // one line of the table as read from the file (raw bytes, line end included);
    // false for a line without "#"
    static bool parseMultiLine(const QByteArray &line, int &key, QString &text);
    // all records of the table file, a later line with the same key winning
    static QMap<int, QString> readMultiConfig(const QString &path);
    // every key in ascending order as "key#text\n"
    static bool writeMultiConfig(const QString &path, const QMap<int, QString> &data);
};

#endif // QTSENDBOXFILES_H
