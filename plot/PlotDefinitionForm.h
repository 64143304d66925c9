#ifndef PLOTDEFINITIONFORM_H
#define PLOTDEFINITIONFORM_H

#include "PlotFrameDefinition.h"

#include <QString>
#include <QVector>

// A frame definition as the form editor holds it: what a user types stays text (hex
// markers, channel offsets, scales) until it is read, choices are the definition's
// own enumerations. Reading gives the definition or the reason it cannot be one, in
// the words a definition file would get; a definition shown and read back is the
// same definition, fields its mode does not use included.
class PlotDefinitionForm
{
public:
    struct ChannelRow {
        QString name;
        QString offset;
        PlotFrameDefinition::ValueType type = PlotFrameDefinition::U8;
        bool bigEndian = false;
        QString scale = "1";
        QString add = "0";
        bool operator==(const ChannelRow &o) const;
    };

    QString name;
    QString start;
    QString end;
    PlotFrameDefinition::LengthMode lengthMode = PlotFrameDefinition::FixedLength;
    int fixedLength = 0;
    int lengthOffset = 0;
    int lengthSize = 1;
    bool lengthBigEndian = false;
    PlotFrameDefinition::LengthCounts lengthCounts = PlotFrameDefinition::CountsFrame;
    int maxLength = 1024;
    PlotChecksum::Type checksum = PlotChecksum::None;
    int checkFrom = 0;
    int checkAt = -1; // -1: last, before the end marker
    bool checkBigEndian = false;
    QVector<ChannelRow> channels;

    bool operator==(const PlotDefinitionForm &o) const;

    static PlotDefinitionForm fromDefinition(const PlotFrameDefinition &definition);
    // false leaves the reason in *error and *out untouched
    bool toDefinition(PlotFrameDefinition *out, QString *error) const;

    // one line for the form: the size of a frame the definition builds and that frame
    // in hex, its channels carrying the raw values 1, 2, 3, ...
    static QString preview(const PlotFrameDefinition &definition);
};

#endif // PLOTDEFINITIONFORM_H
