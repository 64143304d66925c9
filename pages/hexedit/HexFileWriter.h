#ifndef HEXFILEWRITER_H
#define HEXFILEWRITER_H

#include <QString>

#include <functional>

// Writes the editor's bytes to a file safely: into a temporary file beside the target,
// flushed to disk, then renamed over it, so the target is either the old file or the
// whole new one and never a half-written mix. The new file keeps the permissions of
// the one it replaces. The bytes come from a reader in chunks, so a file far larger
// than memory streams through; runs of zero bytes are left as holes, so a sparse file
// stays sparse.
class HexFileWriter
{
public:
    // reader(offset, buffer, length) fills buffer with length bytes from offset
    using Reader = std::function<bool(qint64 offset, char *buffer, qint64 length)>;

    // an empty string on success, otherwise the message for the user; on failure the
    // target is untouched
    static QString write(const QString &path, qint64 size, const Reader &reader);

    static qint64 m_nChunkSize;
};

#endif // HEXFILEWRITER_H
