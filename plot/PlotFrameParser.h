#ifndef PLOTFRAMEPARSER_H
#define PLOTFRAMEPARSER_H

#include "PlotBatch.h"
#include "PlotFrameDefinition.h"

#include <QByteArray>

// Cuts a byte stream into the frames a definition describes and reads their values.
// It resynchronises after anything wrong: garbage is skipped up to the next start
// marker, and a frame that fails (length out of range, wrong end marker, wrong check)
// gives up only its first byte, so that a real frame hidden behind a false marker is
// still found. Memory stays bounded by the definition's maximum length.
class PlotFrameParser
{
public:
    struct Counts {
        qint64 good = 0;
        qint64 badChecksum = 0;
        qint64 dropped = 0;      // length out of range, end marker missing or wrong
        qint64 skippedBytes = 0; // bytes that were in no frame
    };

    explicit PlotFrameParser(const PlotFrameDefinition &definition = PlotFrameDefinition());
    void setDefinition(const PlotFrameDefinition &definition);
    const PlotFrameDefinition &definition() const { return m_def; }

    // channel i of every record is the definition's channel i
    void feed(const QByteArray &bytes, PlotBatch &out);
    const Counts &counts() const { return m_counts; }
    void reset();

private:
    enum Step { Done, Wait, Next };
    Step tryFrame(const uchar *p, int avail, PlotBatch &out, int *used);

    PlotFrameDefinition m_def;
    int m_ckSize = 0;
    QByteArray m_buf;
    int m_pos = 0;
    Counts m_counts;
};

#endif // PLOTFRAMEPARSER_H
