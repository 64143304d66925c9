#ifndef QTRECVSAVEFORMAT_H
#define QTRECVSAVEFORMAT_H

#include <QByteArray>
#include <QString>

// How the serial and network pages save their receive view: the view text in the
// chosen text codec for a name ending in "txt", else the view read back as
// hexadecimal (raw bytes). Both pages write exactly the same files.
class QtRecvSaveFormat
{
public:
    static QByteArray saveBytes(const QString &fileName, const QString &viewText);
};

#endif // QTRECVSAVEFORMAT_H
