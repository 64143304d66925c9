#include "LarkTestCore.h"

#include <QDir>
#include <QFile>
#include <QStandardItemModel>
#include <QTemporaryDir>

#include <sys/mount.h>
#include <unistd.h>

namespace LarkTest {

void prepareEnvironment()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void cleanAppDirs()
{
    const QString base = QCoreApplication::applicationDirPath();
    QDir(base + "/conf").removeRecursively();
    QDir(base + "/download").removeRecursively();
}

QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size() && f.flush();
}

ReadOnlyFolder::ReadOnlyFolder(const QString &path)
    : m_strPath(path)
{
    QDir().mkpath(path);
    if (geteuid() == 0)
        m_bReady = m_bMounted = ::mount("tmpfs", path.toLocal8Bit(), "tmpfs", MS_RDONLY, "size=64k") == 0;
    else
        m_bReady = QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
}

ReadOnlyFolder::~ReadOnlyFolder()
{
    if (m_bMounted)
        ::umount(m_strPath.toLocal8Bit());
    QFile::setPermissions(m_strPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString diskFaults(const std::function<bool(const QString &path)> &write)
{
    QTemporaryDir dir;
    const QString full = dir.filePath("full");
    QDir().mkpath(full);
    if (::mount("tmpfs", QFile::encodeName(full).constData(), "tmpfs", 0, "size=64k") != 0)
        return "-";
    const QString target = full + "/target";
    writeFile(target, "original\n");
    QFile filler(full + "/filler");
    filler.open(QIODevice::WriteOnly);
    while (filler.write(QByteArray(4096, 'x')) > 0 && filler.flush()) {
    }
    filler.close();
    QString fault = write(target) ? "a write to a full disk succeeded; " : "";
    if (readFile(target) != "original\n")
        fault += "the file on the full disk changed; ";
    if (QDir(full).entryList(QDir::Files) != QStringList({"filler", "target"}))
        fault += "left on the full disk: " + QDir(full).entryList(QDir::Files).join(' ') + "; ";
    ::umount(QFile::encodeName(full).constData());
    // a folder that is not there any more is one that never was, for the writer
    if (write(dir.filePath("gone/target")))
        fault += "a write into a removed folder succeeded";
    return fault;
}

} // namespace LarkTest

QByteArray LarkTest::fileBytes(const QString &path, qint64 at, qint64 length)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly) || !f.seek(at))
        return "(missing)";
    return length < 0 ? f.readAll() : f.read(length);
}

QString LarkTest::modelCells(const QAbstractItemModel *model)
{
    QStringList rows;
    for (int r = 0; r < model->rowCount(); ++r) {
        QStringList row;
        for (int c = 0; c < model->columnCount(); ++c)
            row << model->index(r, c).data().toString();
        rows << row.join('|');
    }
    return rows.join(';');
}

void LarkTest::fillModel(QStandardItemModel *model, const QString &cells)
{
    const QStringList rows = cells.split(';');
    model->setRowCount(rows.size());
    model->setColumnCount(4);
    for (int r = 0; r < rows.size(); ++r)
        for (int c = 0; c < 4; ++c)
            model->setData(model->index(r, c), rows.at(r).split('|').value(c));
}
