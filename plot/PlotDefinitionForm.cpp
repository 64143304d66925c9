#include "PlotDefinitionForm.h"

#include <QLocale>

namespace {
// the text of a number that reads back as the same double
QString numberText(double v) { return QString::number(v, 'g', QLocale::FloatingPointShortest); }
QString hexText(const QByteArray &bytes) { return QString::fromLatin1(bytes.toHex(' ').toUpper()); }
}

bool PlotDefinitionForm::ChannelRow::operator==(const ChannelRow &o) const
{
    return name == o.name && offset == o.offset && type == o.type && bigEndian == o.bigEndian && scale == o.scale
        && add == o.add;
}

bool PlotDefinitionForm::operator==(const PlotDefinitionForm &o) const
{
    return name == o.name && start == o.start && end == o.end && lengthMode == o.lengthMode
        && fixedLength == o.fixedLength && lengthOffset == o.lengthOffset && lengthSize == o.lengthSize
        && lengthBigEndian == o.lengthBigEndian && lengthCounts == o.lengthCounts && maxLength == o.maxLength
        && checksum == o.checksum && checkFrom == o.checkFrom && checkAt == o.checkAt
        && checkBigEndian == o.checkBigEndian && channels == o.channels;
}

PlotDefinitionForm PlotDefinitionForm::fromDefinition(const PlotFrameDefinition &d)
{
    PlotDefinitionForm f;
    f.name = d.name;
    f.start = hexText(d.start);
    f.end = hexText(d.end);
    f.lengthMode = d.lengthMode;
    f.fixedLength = d.fixedLength;
    f.lengthOffset = d.lengthOffset;
    f.lengthSize = d.lengthSize;
    f.lengthBigEndian = d.lengthBigEndian;
    f.lengthCounts = d.lengthCounts;
    f.maxLength = d.maxLength;
    f.checksum = d.checksum;
    f.checkFrom = d.checkFrom;
    f.checkAt = d.checkAt;
    f.checkBigEndian = d.checkBigEndian;
    for (const PlotFrameDefinition::Channel &c : d.channels)
        f.channels.append({c.name, QString::number(c.offset), c.type, c.bigEndian, numberText(c.scale), numberText(c.add)});
    return f;
}

bool PlotDefinitionForm::toDefinition(PlotFrameDefinition *out, QString *error) const
{
    PlotFrameDefinition d;
    bool ok = true;
    d.name = name;
    d.start = PlotFrameDefinition::hexToBytes(start, &ok);
    if (!ok) {
        *error = QString("起始标志“%1”不是十六进制字节").arg(start);
        return false;
    }
    d.end = PlotFrameDefinition::hexToBytes(end, &ok);
    if (!ok) {
        *error = QString("结束标志“%1”不是十六进制字节").arg(end);
        return false;
    }
    d.lengthMode = lengthMode;
    d.fixedLength = fixedLength;
    d.lengthOffset = lengthOffset;
    d.lengthSize = lengthSize;
    d.lengthBigEndian = lengthBigEndian;
    d.lengthCounts = lengthCounts;
    d.maxLength = maxLength;
    d.checksum = checksum;
    d.checkFrom = checkFrom;
    d.checkAt = checkAt;
    d.checkBigEndian = checkBigEndian;
    for (int i = 0; i < channels.size(); ++i) {
        const ChannelRow &row = channels.at(i);
        PlotFrameDefinition::Channel c;
        // as a definition file names a channel left without a name
        c.name = row.name.trimmed().isEmpty() ? QString("CH%1").arg(i + 1) : row.name.trimmed();
        c.offset = row.offset.trimmed().toInt(&ok);
        if (!ok) {
            *error = QString("第%1个通道：位置“%2”应为整数").arg(i + 1).arg(row.offset);
            return false;
        }
        c.type = row.type;
        c.bigEndian = row.bigEndian;
        const QString *texts[] = {&row.scale, &row.add};
        double *numbers[] = {&c.scale, &c.add};
        const char *what[] = {"比例", "偏移"};
        for (int k = 0; k < 2; ++k) {
            *numbers[k] = texts[k]->trimmed().toDouble(&ok);
            if (!ok) {
                *error = QString("第%1个通道：%2“%3”应为数字").arg(i + 1).arg(what[k], *texts[k]);
                return false;
            }
        }
        d.channels.append(c);
    }
    const QString why = d.validate();
    if (!why.isEmpty()) {
        *error = why;
        return false;
    }
    *out = d;
    return true;
}

QString PlotDefinitionForm::preview(const PlotFrameDefinition &d)
{
    QVector<double> values;
    for (int i = 0; i < d.channels.size(); ++i)
        values << (i + 1) * d.channels.at(i).scale + d.channels.at(i).add;
    const QByteArray frame = d.buildFrame(values);
    const int shown = 48;
    return QString("示例帧 %1 字节（通道原始值 1、2、3…）：%2%3")
        .arg(frame.size())
        .arg(hexText(frame.left(shown)), frame.size() > shown ? " …" : "");
}
