#ifndef MYAPP_H
#define MYAPP_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// Process-wide start-up sequence, text codec and skin index. Never instantiated.
class MyApp
{
public:
    static int m_nTextCodecIndex; // 1 GB18030, anything else UTF-8
    static int m_nSkinStyle;      // 0 dark, 1 light

    static void InitApp();
    static void CheckDirs(const QStringList &dirs);
    static void ResetConfig();

    static QByteArray getTextCodec();
    // encodes toward bytes despite its name
    static QByteArray strToUnicode(const QString &text);
    static QString toUnicode(const QByteArray &data);
};

#endif // MYAPP_H
