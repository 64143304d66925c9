#include "RegisterTableFile.h"

#include <QAbstractItemModel>
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QIODevice>
#include <QTextStream>

static const char *s_fileCodec = "GB18030";

QStringList RegisterTableFile::headers()
{
    return QStringList() << "寄存器编号" << "寄存器地址" << "寄存器值" << "描述";
}

void RegisterTableFile::read(QIODevice &file, QAbstractItemModel *model)
{
    QTextStream in(&file);
    in.setCodec(s_fileCodec);
    in.readLine();
    for (int row = 0; !in.atEnd(); ++row) {
        const QStringList fields = in.readLine().split(',', Qt::KeepEmptyParts);
        if (fields.size() < 4)
            continue;
        for (int column = 0; column < 4; ++column)
            model->setData(model->index(row, column), fields.at(column), Qt::EditRole);
    }
}

void RegisterTableFile::write(QIODevice &file, const QAbstractItemModel *model)
{
    QTextStream out(&file);
    out.setCodec(s_fileCodec);
    for (const QString &header : headers())
        out << header << ",";
    out << Qt::endl;
    const int rows = model->rowCount();
    const int columns = model->columnCount();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            out << model->index(row, column).data(Qt::DisplayRole).toString() << ",";
        out << Qt::endl;
    }
}

bool RegisterTableFile::load(const QString &path, QAbstractItemModel *model)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    read(file, model);
    return true;
}

bool RegisterTableFile::save(const QString &path, const QAbstractItemModel *model)
{
    // Written in place, without truncation, as the format has always been (an older,
    // longer file keeps its tail). So that a full disk cannot leave half a new table
    // over the old one, the table is made first and refused when the disk lacks the
    // room it grows by.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    write(buffer, model);
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    const qint64 growth = bytes.size() - file.size();
    if (growth > 0 && QStorageInfo(QFileInfo(path).absolutePath()).bytesAvailable() < growth + 4096)
        return false;
    return file.write(bytes) == bytes.size() && file.flush();
}
