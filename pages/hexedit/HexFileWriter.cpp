#include "HexFileWriter.h"

#include <QSaveFile>

#include <cstring>

qint64 HexFileWriter::m_nChunkSize = 1 << 20;

namespace {

bool allZero(const char *data, qint64 length)
{
    return length > 0 && data[0] == 0 && std::memcmp(data, data + 1, size_t(length - 1)) == 0;
}

QString failed(const QString &path, const QString &reason)
{
    return QString("保存文件失败!\n%1\n%2").arg(path, reason);
}

} // namespace

QString HexFileWriter::write(const QString &path, qint64 size, const Reader &reader)
{
    // QSaveFile gives the temporary file the target's permissions and renames it over
    // the target only in commit(); any failure before that leaves the target alone
    QSaveFile file(path);
    // unbuffered: the chunks are large already, and a failed write keeps its reason
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failed(path, file.errorString());
    QByteArray chunk(int(qMin(size, m_nChunkSize)), Qt::Uninitialized);
    bool hole = false;
    for (qint64 offset = 0; offset < size; offset += chunk.size()) {
        const qint64 length = qMin<qint64>(chunk.size(), size - offset);
        if (!reader(offset, chunk.data(), length)) {
            file.cancelWriting();
            return failed(path, "读取数据失败");
        }
        hole = allZero(chunk.constData(), length);
        const bool ok = hole ? file.seek(offset + length) : file.write(chunk.constData(), length) == length;
        if (!ok) {
            const QString reason = file.errorString();
            file.cancelWriting();
            return failed(path, reason);
        }
    }
    // a trailing hole is not written at all: the size comes from resizing
    if (hole && !file.resize(size))
        return failed(path, file.errorString());
    if (!file.commit())
        return failed(path, file.errorString());
    return QString();
}
