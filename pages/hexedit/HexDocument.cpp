#include "HexDocument.h"

#include <Okteta/ArrayChangeMetricsList>
#include <Okteta/PieceTableByteArrayModel>

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>

qint64 HexDocument::m_nMapThreshold = qint64(256) << 20;
qint64 HexDocument::m_nWindowSize = qint64(1) << 30;

HexDocument::HexDocument(QObject *parent)
    : QObject(parent)
{
    m_windows.resize(1);
}

HexDocument::~HexDocument()
{
    clear();
}

bool HexDocument::load(const QString &path)
{
    std::unique_ptr<QFile> file(new QFile(path));
    if (!file->open(QIODevice::ReadOnly))
        return false;
    const qint64 size = file->size();
    uchar *map = size > m_nMapThreshold ? file->map(0, size) : nullptr;
    QByteArray data;
    // a file that cannot be mapped (a pipe, a special file) is read if it fits
    if (!map) {
        if (size >= INT_MAX)
            return false;
        data = file->readAll();
        if (file->error() != QFile::NoError)
            return false;
    }
    emit signalAboutToClear();
    clear();
    m_strPath = path;
    m_byData = data;
    m_nSize = map ? size : data.size();
    if (map) {
        // the mapping lives as long as the file object that made it
        m_file = std::move(file);
        m_pMap = map;
    }
    m_nWindow = m_nSize <= INT_MAX ? qMax<qint64>(m_nSize, 1) : m_nWindowSize;
    m_windows.resize(int((qMax<qint64>(m_nSize, 1) + m_nWindow - 1) / m_nWindow));
    if (m_bModified) {
        m_bModified = false;
        emit modifiedChanged(false);
    }
    return true;
}

void HexDocument::clear()
{
    for (Window &w : m_windows)
        delete w.model;
    m_windows.clear();
    m_windows.resize(1);
    m_pMap = nullptr;
    m_file.reset();
    m_byData.clear();
    m_nSize = 0;
    m_nWindow = 1;
}

qint64 HexDocument::size() const
{
    // one window may grow and shrink by insert and delete; several keep their places
    const Okteta::PieceTableByteArrayModel *model = m_windows.first().model;
    return m_windows.size() == 1 && model ? model->size() : m_nSize;
}

qint64 HexDocument::windowLength(int window) const
{
    return m_windows.size() == 1 ? size() : qMin(m_nWindow, m_nSize - windowBase(window));
}

int HexDocument::windowAt(qint64 offset) const
{
    return int(qBound<qint64>(0, offset / m_nWindow, m_windows.size() - 1));
}

QByteArray HexDocument::raw(int window) const
{
    if (!m_pMap)
        return m_byData;
    // the model reads through this array without a copy: it never writes into the
    // bytes it was given, so the array never detaches from the map
    const qint64 base = windowBase(window);
    return QByteArray::fromRawData(reinterpret_cast<const char *>(m_pMap + base), int(qMin(m_nWindow, m_nSize - base)));
}

Okteta::PieceTableByteArrayModel *HexDocument::model(int window)
{
    Window &w = m_windows[window];
    if (!w.model) {
        w.model = new Okteta::PieceTableByteArrayModel(raw(window), this);
        connect(w.model, SIGNAL(changesDone(QVector<Okteta::ByteArrayChange>, int, int)), this,
                SLOT(SltChangesDone()));
        connect(w.model, SIGNAL(revertedToVersionIndex(int)), this, SLOT(SltVersionChanged()));
        connect(w.model, SIGNAL(contentsChanged(Okteta::ArrayChangeMetricsList)), this,
                SLOT(SltContentsChanged(Okteta::ArrayChangeMetricsList)));
    }
    return w.model;
}

bool HexDocument::read(qint64 offset, char *buffer, qint64 length) const
{
    if (offset < 0 || length < 0 || offset + length > size())
        return false;
    while (length > 0) {
        const int window = windowAt(offset);
        const qint64 inWindow = offset - windowBase(window);
        const qint64 n = qMin(length, windowLength(window) - inWindow);
        const Window &w = m_windows.at(window);
        auto *bytes = reinterpret_cast<Okteta::Byte *>(buffer);
        if (w.reshaped) {
            w.model->copyTo(bytes, Okteta::Address(inWindow), Okteta::Size(n));
        } else {
            copyOriginal(offset, buffer, n);
            auto it = w.touched.upperBound(inWindow);
            if (it != w.touched.begin())
                --it;
            for (; it != w.touched.end() && it.key() < inWindow + n; ++it) {
                const qint64 from = qMax(it.key(), inWindow), to = qMin(it.value(), inWindow + n);
                if (from < to)
                    w.model->copyTo(bytes + (from - inWindow), Okteta::Address(from), Okteta::Size(to - from));
            }
        }
        release(offset, n);
        offset += n, buffer += n, length -= n;
    }
    return true;
}

void HexDocument::touch(QMap<qint64, qint64> &touched, qint64 start, qint64 end)
{
    // ranges that overlap or meet become one
    auto it = touched.upperBound(start);
    if (it != touched.begin() && std::prev(it).value() >= start)
        --it;
    while (it != touched.end() && it.key() <= end) {
        start = qMin(start, it.key());
        end = qMax(end, it.value());
        it = touched.erase(it);
    }
    touched.insert(start, end);
}

void HexDocument::SltContentsChanged(const Okteta::ArrayChangeMetricsList &changes)
{
    const int i = indexOf(sender());
    if (i < 0)
        return;
    for (const Okteta::ArrayChangeMetrics &m : changes) {
        if (m.type() == Okteta::ArrayChangeMetrics::Replacement && m.lengthChange() == 0)
            touch(m_windows[i].touched, m.offset(), qint64(m.offset()) + m.removeLength());
        else
            m_windows[i].reshaped = true;
    }
}

void HexDocument::copyOriginal(qint64 offset, char *buffer, qint64 length) const
{
    if (!m_pMap) {
        std::memcpy(buffer, m_byData.constData() + offset, size_t(length));
        return;
    }
    // the holes of a sparse file are zeros without a page of the map touched; where
    // the filesystem cannot tell, all of it counts as data
    const int fd = m_file->handle();
    const qint64 end = offset + length;
    for (qint64 at = offset; at < end;) {
        off_t data = lseek(fd, at, SEEK_DATA);
        data = data >= 0 ? qMin<qint64>(data, end) : errno == ENXIO ? end : at;
        std::memset(buffer + (at - offset), 0, size_t(data - at));
        if (data >= end)
            break;
        const off_t hole = lseek(fd, data, SEEK_HOLE);
        at = hole > data ? qMin<qint64>(hole, end) : end;
        std::memcpy(buffer + (data - offset), m_pMap + data, size_t(at - data));
    }
}

void HexDocument::release(qint64 offset, qint64 length) const
{
    if (!m_pMap)
        return;
    // only whole pages inside the range: a page half shown on screen stays
    const qint64 page = sysconf(_SC_PAGESIZE);
    const qint64 begin = (offset + page - 1) / page * page, end = (offset + length) / page * page;
    if (end > begin)
        madvise(m_pMap + begin, size_t(end - begin), MADV_DONTNEED);
}

void HexDocument::markSaved(const QString &path)
{
    m_strPath = path;
    for (Window &w : m_windows)
        w.savedVersion = w.model ? w.model->versionIndex() : 0;
    SltVersionChanged();
}

int HexDocument::indexOf(QObject *model) const
{
    for (int i = 0; i < m_windows.size(); ++i)
        if (m_windows.at(i).model == model)
            return i;
    return -1;
}

void HexDocument::SltChangesDone()
{
    // a change that lands at or below the saved version replaces it: no undo or redo
    // leads back to the saved bytes any more
    const int i = indexOf(sender());
    if (i >= 0 && m_windows.at(i).model->versionIndex() <= m_windows.at(i).savedVersion)
        m_windows[i].savedVersion = -1;
    SltVersionChanged();
}

void HexDocument::SltVersionChanged()
{
    bool modified = false;
    for (const Window &w : m_windows)
        modified = modified || (w.model && w.model->versionIndex() != w.savedVersion);
    if (modified != m_bModified) {
        m_bModified = modified;
        emit modifiedChanged(modified);
    }
}
