#ifndef SCRIPTLOOPMARKER_H
#define SCRIPTLOOPMARKER_H

#include <QString>

// Marks the loops of a script so that the one an interrupted call was stuck in can be
// named. The engine unwinds an interrupted call without any line (the error it makes
// afterwards has none, and its stack is empty), so the script tells on itself: each
// loop's test first calls probe(line) with the line of its keyword, which returns true.
//
// What is marked: the condition of `while` and `do … while`, and the middle part of a
// three-part `for` (an empty one becomes the probe alone). `for … in` / `for … of`
// run over a finite collection and are left alone. Every insertion stays on its line,
// so line numbers in errors are those of the source. Strings, template literals,
// comments and regular expression literals are skipped; a `/` after a value divides.
// A source this scanner misreads may not compile once marked: the caller then runs
// the original.
class ScriptLoopMarker
{
public:
    static QString mark(const QString &source, const QString &probe);
};

#endif // SCRIPTLOOPMARKER_H
