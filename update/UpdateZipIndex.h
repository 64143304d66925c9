#ifndef UPDATEZIPINDEX_H
#define UPDATEZIPINDEX_H

#include <QByteArray>
#include <QString>
#include <QVector>

// The central directory of a zip exactly as stored, and each entry's data inflated no
// further than the size the directory states. Nothing here trusts the archive: every
// offset and length is checked against the bytes at hand, so a broken or hostile
// download is refused with a reason instead of being half unpacked or blowing up in
// memory (the zip reader grows its buffer without end for an understated size).
class UpdateZipIndex
{
public:
    struct Entry {
        QString name;          // as stored: leading "/" and "../" untouched
        quint16 flags = 0;
        quint16 method = 0;    // 0 stored, 8 deflated; others are refused by data()
        quint32 crc = 0;
        quint32 compressedSize = 0;
        quint32 size = 0;
        quint32 localOffset = 0;
    };

    // Reads the directory of archive, which must outlive the index (a mapped file
    // serves). False, with error(), when it does not hold together: no end record,
    // records outside the file or not where the end record puts them, a count that
    // disagrees, ZIP64 sizes.
    bool read(const QByteArray &archive);
    const QVector<Entry> &entries() const { return m_entries; }
    QString error() const { return m_error; }

    // The data of entry index into out: false when it is not exactly the stated size
    // with the stated CRC (a corrupt or lying entry), or its method is not known.
    bool data(int index, QByteArray *out) const;

private:
    QByteArray m_archive;
    QVector<Entry> m_entries;
    QString m_error;
};

#endif // UPDATEZIPINDEX_H
