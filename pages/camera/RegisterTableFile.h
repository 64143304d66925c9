#ifndef REGISTERTABLEFILE_H
#define REGISTERTABLEFILE_H

#include <QStringList>

class QAbstractItemModel;
class QIODevice;

// The register table's file: GB18030 comma-separated text, a header line, then one
// line per model row with a comma after every cell. It knows nothing of what the
// columns mean.
class RegisterTableFile
{
public:
    // the four column titles of the table, also its file's header line
    static QStringList headers();

    // The rows of a file into the first four columns of model. The header line is never
    // looked at (a file without one loses its first row); every later line keeps its
    // row, one with fewer than four fields leaves the row as it was, and rows past the
    // model's end fall away.
    static void read(QIODevice &file, QAbstractItemModel *model);

    // The header and every row of model from where file stands. Nothing is truncated:
    // written over a longer file, the old tail stays behind the new lines and a later
    // import reads it too, which users' files depend on.
    static void write(QIODevice &file, const QAbstractItemModel *model);

    // read and write on the named file; false when it cannot be opened (for save also
    // when the disk lacks the room the table grows by, or a write fails). save opens the
    // file read-write, not truncated, as write requires.
    static bool load(const QString &path, QAbstractItemModel *model);
    static bool save(const QString &path, const QAbstractItemModel *model);
};

#endif // REGISTERTABLEFILE_H
