#ifndef QTRECVSAVEFORMAT_H
#define QTRECVSAVEFORMAT_H

#include <QByteArray>
#include <QPair>
#include <QString>

class QWidget;

// How the serial and network pages save what they received: the text in the chosen
// text codec for a name ending in "txt", else the text read back as hexadecimal (raw
// bytes). Both pages write exactly the same files and say the same words.
class QtRecvSaveFormat
{
public:
    // what a page shows after a save: text and level, an empty text when nothing
    // was done
    using Notice = QPair<QString, int>;

    static QByteArray saveBytes(const QString &fileName, const QString &viewText);

    // The whole save of "保存到文件": nothing for an empty text; without a file name,
    // the save dialog ("*.txt;;*.bin") asks for one, and a cancelled dialog or an
    // empty name ends it; then the file is written.
    static Notice save(QWidget *dialogParent, const QString &text, const QString &fileName = QString());
};

#endif // QTRECVSAVEFORMAT_H
