#ifndef PLOTCSVWRITER_H
#define PLOTCSVWRITER_H

#include <QString>

class PlotSampleStore;

// Writes a recording as one CSV table in UTF-8: a header row, the time in seconds with
// microseconds, one column per channel, an empty cell where a record had no value.
// The file appears whole or not at all.
class PlotCsvWriter
{
public:
    // path gets ".csv" when it has another suffix or none
    static QString csvPath(const QString &path);
    // false with a sentence in *error; *written is the path actually written
    static bool write(const PlotSampleStore &store, const QString &path, QString *error, QString *written = nullptr);
};

#endif // PLOTCSVWRITER_H
