#ifndef HEXDOCUMENT_H
#define HEXDOCUMENT_H

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QVector>

#include <functional>
#include <memory>

#include <QMap>

namespace Okteta {
class ArrayChangeMetricsList;
class PieceTableByteArrayModel;
}

// The file the editor shows: its bytes, the edits made to them, and whether they are
// saved. A file up to m_nMapThreshold is read into memory whole; a larger one is
// mapped, so it costs address space rather than memory, and only the pages looked at
// are read. The editor's view addresses at most 2 GiB, so a larger file comes in
// windows of m_nWindowSize bytes, each a piece table over its part of the map: edits
// are pieces beside the untouched bytes, and undo runs per window. A mapped file keeps
// its length: edits overwrite.
class HexDocument : public QObject
{
    Q_OBJECT
public:
    explicit HexDocument(QObject *parent = nullptr);
    ~HexDocument() override;

    // replaces the content by the file's; on failure nothing changes
    bool load(const QString &path);

    QString path() const { return m_strPath; }
    qint64 size() const;
    bool isMapped() const { return m_pMap != nullptr; }
    bool isModified() const { return m_bModified; }

    int windowCount() const { return m_windows.size(); }
    qint64 windowBase(int window) const { return qint64(window) * m_nWindow; }
    qint64 windowLength(int window) const;
    int windowAt(qint64 offset) const;
    // the window's model, made when first asked for; owned by the document
    Okteta::PieceTableByteArrayModel *model(int window);

    // the current bytes, edits included. Pages of the map read here are let go
    // afterwards, so a pass over a huge file does not stay resident.
    bool read(qint64 offset, char *buffer, qint64 length) const;
    // read() as a function, for the writer and the finder
    std::function<bool(qint64, char *, qint64)> reader() const
    {
        return [this](qint64 offset, char *buffer, qint64 length) { return read(offset, buffer, length); };
    }

    // the content is now what path holds: the modified mark clears, undo stays
    void markSaved(const QString &path);

    static qint64 m_nMapThreshold;
    static qint64 m_nWindowSize;

signals:
    void modifiedChanged(bool modified);
    // a load succeeded and the old models are about to go: views let go of them now
    void signalAboutToClear();

private slots:
    void SltChangesDone();
    void SltContentsChanged(const Okteta::ArrayChangeMetricsList &changes);
    void SltVersionChanged();

private:
    struct Window {
        Okteta::PieceTableByteArrayModel *model = nullptr;
        // the version that matches the file on disk, -1 once no version does
        int savedVersion = 0;
        // the bytes any edit has touched, start to end; reading takes the rest from
        // the file's bytes, since the model's own copy goes byte by byte. An edit that
        // moves bytes (insert, delete, swap) leaves only that slow copy.
        QMap<qint64, qint64> touched;
        bool reshaped = false;
    };

    void clear();
    static void touch(QMap<qint64, qint64> &touched, qint64 start, qint64 end);
    QByteArray raw(int window) const;
    void copyOriginal(qint64 offset, char *buffer, qint64 length) const;
    void release(qint64 offset, qint64 length) const;
    int indexOf(QObject *model) const;

    QString m_strPath;
    QByteArray m_byData;
    std::unique_ptr<QFile> m_file;
    uchar *m_pMap = nullptr;
    qint64 m_nSize = 0;
    qint64 m_nWindow = 0;
    QVector<Window> m_windows;
    bool m_bModified = false;
};

#endif // HEXDOCUMENT_H
