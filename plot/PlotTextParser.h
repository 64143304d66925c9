#ifndef PLOTTEXTPARSER_H
#define PLOTTEXTPARSER_H

#include "PlotBatch.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

class QTextCodec;

// Reads lines of numbers. A line ends at LF, CR LF or CR. Its fields are separated by
// comma, semicolon, tab or blanks: chosen, or in automatic mode the first of those
// found in the line. A bare number goes to the channel of its position ("CH1", "CH2",
// ...); "name:value" and "name=value" go to the channel of that name. A line with a
// field that is not a number is counted as unreadable and plots nothing, so that
// values never land in the wrong channel; empty lines are not counted.
//
// Works on bytes: digits are the same in every codec the program offers, and only a
// channel name is decoded, once, the first time it is seen.
class PlotTextParser
{
public:
    enum Separator { Auto, Comma, Semicolon, Tab, Blank };
    // a line longer than this without an end is unreadable: memory stays bounded
    static constexpr int MaxLineLength = 64 * 1024;
    // channel names kept; values of later names go to channel MaxNames, which has no
    // name and which no plot shows
    static constexpr int MaxNames = 64;

    explicit PlotTextParser(QTextCodec *codec = nullptr);
    void setCodec(QTextCodec *codec) { m_codec = codec; }
    void setSeparator(Separator separator) { m_separator = separator; }
    Separator separator() const { return m_separator; }

    void feed(const QByteArray &bytes, PlotBatch &out);
    // the channel names, in the order channels were first seen, MaxNames at most
    const QStringList &names() const { return m_names; }
    // the channel of a name that comes from elsewhere than the line (a script's plot),
    // made as a "name:value" field of a line would make it
    int channelNamed(const QString &name);
    qint64 goodLines() const { return m_nGood; }
    qint64 badLines() const { return m_nBad; }
    void reset();

private:
    void parseLine(const char *b, const char *e, PlotBatch &out);
    int channelFor(const char *b, const char *e);
    int positional(int index);

    QTextCodec *m_codec;
    Separator m_separator = Auto;
    QByteArray m_pending;
    bool m_bOverlong = false;
    QStringList m_names;
    QHash<QByteArray, int> m_byName;
    QVector<int> m_positional;
    qint64 m_nGood = 0;
    qint64 m_nBad = 0;
};

#endif // PLOTTEXTPARSER_H
