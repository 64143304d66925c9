#include "QtSendBoxFiles.h"

#include <QFile>
#include <QSaveFile>
#include <QTextStream>

QStringList QtSendBoxFiles::readHistory(const QString &path)
{
    QStringList words;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return words;
    // the stream keeps the locale codec, as the writer does
    QTextStream in(&file);
    while (!in.atEnd()) {
        QString word;
        in >> word;
        if (!word.isEmpty())
            words << word;
    }
    file.close();
    return words;
}

// The lists are written as the program ends, when nobody can be told of a failure:
// written beside and renamed over, so a full disk keeps the lists of the last run.
bool QtSendBoxFiles::writeHistory(const QString &path, const QStringList &entries)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream out(&file);
    for (const QString &entry : entries)
        out << entry << "\n";
    out.flush();
    // Qt's commit renames even when the buffered last write failed: flush first
    if (!file.flush())
        file.cancelWriting();
    return file.commit();
}

bool QtSendBoxFiles::parseMultiLine(const QByteArray &line, int &key, QString &text)
{
    // a NUL ends the text, as it would for a C string
    QString str = QString::fromUtf8(line.constData(), int(qstrnlen(line.constData(), uint(line.size()))));
    if (str.endsWith('\n'))
        str.remove('\n');
    const QStringList parts = str.split('#', Qt::KeepEmptyParts);
    if (parts.size() < 2)
        return false;
    key = parts.at(0).toInt(); // not a number: key 0, which no row shows
    text = str.mid(parts.at(0).size() + 1);
    return true;
}

QMap<int, QString> QtSendBoxFiles::readMultiConfig(const QString &path)
{
    QMap<int, QString> data;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return data;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.isEmpty())
            break; // a read error: atEnd would never come
        int key = 0;
        QString text;
        if (parseMultiLine(line, key, text))
            data[key] = text;
    }
    file.close();
    return data;
}

bool QtSendBoxFiles::writeMultiConfig(const QString &path, const QMap<int, QString> &data)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream out(&file);
    for (auto it = data.constBegin(); it != data.constEnd(); ++it)
        out << it.key() << "#" << it.value() << "\n";
    out.flush();
    // Qt's commit renames even when the buffered last write failed: flush first
    if (!file.flush())
        file.cancelWriting();
    return file.commit();
}
