#include "PlotFrameDefinition.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>

#include <cmath>
#include <cstring>
#include <vector>

namespace {
const char *const s_lengthModes[] = {"fixed", "field", "end"};
const char *const s_lengthCounts[] = {"frame", "after-field", "payload"};

QString endianName(bool big) { return big ? "big" : "little"; }

int indexIn(const char *const *names, int count, const QString &name)
{
    for (int i = 0; i < count; ++i)
        if (name == QLatin1String(names[i]))
            return i;
    return -1;
}

QString bytesToHex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

// JSON reading with the path of the field in every message
struct Reader {
    QString error;
    bool fail(const QString &text)
    {
        if (error.isEmpty())
            error = text;
        return false;
    }
    int integer(const QJsonObject &o, const char *key, int fallback, const QString &where)
    {
        const QJsonValue v = o.value(key);
        if (v.isUndefined())
            return fallback;
        const double d = v.toDouble(std::nan(""));
        if (!v.isDouble() || d != std::floor(d) || std::fabs(d) > 1e9) {
            fail(QString("%1“%2”应为整数").arg(where, key));
            return fallback;
        }
        return int(d);
    }
    double number(const QJsonObject &o, const char *key, double fallback, const QString &where)
    {
        const QJsonValue v = o.value(key);
        if (v.isUndefined())
            return fallback;
        if (!v.isDouble()) {
            fail(QString("%1“%2”应为数字").arg(where, key));
            return fallback;
        }
        return v.toDouble();
    }
    QString text(const QJsonObject &o, const char *key, const QString &fallback, const QString &where)
    {
        const QJsonValue v = o.value(key);
        if (v.isUndefined())
            return fallback;
        if (!v.isString()) {
            fail(QString("%1“%2”应为文本").arg(where, key));
            return fallback;
        }
        return v.toString();
    }
    bool bigEndian(const QJsonObject &o, const QString &where)
    {
        const QString e = text(o, "endian", "little", where);
        if (e != "little" && e != "big")
            fail(QString("%1字节序“%2”未知（little 或 big）").arg(where, e));
        return e == "big";
    }
};
}

// The first key that stands twice in one object, or a null string. A definition with
// two "length" objects is a mistake worth naming; and Qt's JSON reader loses memory
// when a key repeats whose first value is an object, so such a text never reaches it.
static QString duplicateKey(const QByteArray &json)
{
    std::vector<std::pair<bool, QSet<QString>>> open; // (is an object, its keys)
    const int n = json.size();
    for (int i = 0; i < n; ++i) {
        const char c = json.at(i);
        if (c == '{' || c == '[') {
            open.emplace_back(c == '{', QSet<QString>());
        } else if ((c == '}' || c == ']') && !open.empty()) {
            open.pop_back();
        } else if (c == '"') {
            int j = i + 1;
            while (j < n && json.at(j) != '"')
                j += json.at(j) == '\\' ? 2 : 1;
            const QByteArray raw = json.mid(i, j + 1 - i);
            i = j;
            int k = j + 1;
            while (k < n && (json.at(k) == ' ' || json.at(k) == '\t' || json.at(k) == '\n' || json.at(k) == '\r'))
                ++k;
            if (k >= n || json.at(k) != ':' || open.empty() || !open.back().first)
                continue;
            // "\u0061" and "a" are one key to the reader
            const QString key = raw.contains('\\')
                ? QJsonDocument::fromJson("[" + raw + "]").array().at(0).toString()
                : QString::fromUtf8(raw.mid(1, raw.size() - 2));
            if (open.back().second.contains(key))
                return key;
            open.back().second.insert(key);
        }
    }
    return QString();
}

QStringList PlotFrameDefinition::typeNames()
{
    return {"u8", "i8", "u16", "i16", "u32", "i32", "f32", "f64"};
}

int PlotFrameDefinition::typeSize(ValueType type)
{
    static const int sizes[] = {1, 1, 2, 2, 4, 4, 4, 8};
    return sizes[type];
}

quint32 PlotFrameDefinition::readUnsigned(int size, bool bigEndian, const uchar *p)
{
    quint32 v = 0;
    for (int i = 0; i < size; ++i)
        v |= quint32(p[bigEndian ? size - 1 - i : i]) << (8 * i);
    return v;
}

void PlotFrameDefinition::writeUnsigned(int size, bool bigEndian, quint32 value, uchar *p)
{
    for (int i = 0; i < size; ++i)
        p[bigEndian ? size - 1 - i : i] = uchar(value >> (8 * i));
}

double PlotFrameDefinition::readValue(ValueType type, bool bigEndian, const uchar *p)
{
    switch (type) {
    case U8:
        return p[0];
    case I8:
        return qint8(p[0]);
    case U16:
        return quint16(readUnsigned(2, bigEndian, p));
    case I16:
        return qint16(readUnsigned(2, bigEndian, p));
    case U32:
        return readUnsigned(4, bigEndian, p);
    case I32:
        return qint32(readUnsigned(4, bigEndian, p));
    case F32: {
        const quint32 bits = readUnsigned(4, bigEndian, p);
        float f;
        std::memcpy(&f, &bits, 4);
        return f;
    }
    case F64: {
        const quint64 bits = quint64(readUnsigned(4, bigEndian, p + (bigEndian ? 4 : 0)))
            | quint64(readUnsigned(4, bigEndian, p + (bigEndian ? 0 : 4))) << 32;
        double d;
        std::memcpy(&d, &bits, 8);
        return d;
    }
    }
    return 0;
}

void PlotFrameDefinition::writeValue(ValueType type, bool bigEndian, double value, uchar *p)
{
    switch (type) {
    case U8:
    case I8:
        p[0] = uchar(qint64(std::llround(value)));
        return;
    case U16:
    case I16:
        writeUnsigned(2, bigEndian, quint32(qint64(std::llround(value))), p);
        return;
    case U32:
    case I32:
        writeUnsigned(4, bigEndian, quint32(qint64(std::llround(value))), p);
        return;
    case F32: {
        const float f = float(value);
        quint32 bits;
        std::memcpy(&bits, &f, 4);
        writeUnsigned(4, bigEndian, bits, p);
        return;
    }
    case F64: {
        quint64 bits;
        std::memcpy(&bits, &value, 8);
        writeUnsigned(4, bigEndian, quint32(bits), p + (bigEndian ? 4 : 0));
        writeUnsigned(4, bigEndian, quint32(bits >> 32), p + (bigEndian ? 0 : 4));
        return;
    }
    }
}

QByteArray PlotFrameDefinition::hexToBytes(const QString &text, bool *ok)
{
    static const QRegularExpression prefixes("0[xX]"), spacing("[\\s,]"), hex("^[0-9A-Fa-f]*$");
    QString digits = text;
    digits.remove(prefixes).remove(spacing);
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1());
    *ok = digits.size() % 2 == 0 && hex.match(digits).hasMatch();
    return *ok ? bytes : QByteArray();
}

int PlotFrameDefinition::minimumLength() const
{
    int head = start.size();
    if (lengthMode == LengthField)
        head = qMax(head, lengthOffset + lengthSize);
    return head + PlotChecksum::size(checksum) + end.size();
}

qint64 PlotFrameDefinition::lengthFromField(quint32 field) const
{
    switch (lengthCounts) {
    case CountsFrame:
        return field;
    case CountsAfterField:
        return qint64(lengthOffset) + lengthSize + field;
    case CountsPayload:
        return qint64(lengthOffset) + lengthSize + field + PlotChecksum::size(checksum) + end.size();
    }
    return field;
}

QString PlotFrameDefinition::validate() const
{
    if (start.isEmpty() || start.size() > 16)
        return "起始标志应为 1 到 16 个字节的十六进制";
    if (end.size() > 16)
        return "结束标志最多 16 个字节";
    if (maxLength < 1 || maxLength > MaxFrameLength)
        return QString("最大帧长应在 1 到 %1 之间").arg(MaxFrameLength);
    const int ck = PlotChecksum::size(checksum);
    switch (lengthMode) {
    case FixedLength:
        if (fixedLength < minimumLength() || fixedLength > MaxFrameLength)
            return QString("固定帧长 %1 放不下起始标志、校验和结束标志（至少 %2）").arg(fixedLength).arg(minimumLength());
        break;
    case LengthField:
        if (lengthSize != 1 && lengthSize != 2 && lengthSize != 4)
            return "长度字段应为 1、2 或 4 个字节";
        if (lengthOffset < 0 || lengthOffset + lengthSize > maxLength)
            return "长度字段的位置超出了最大帧长";
        break;
    case UntilEndMarker:
        if (end.isEmpty())
            return "以结束标志定帧长时需要结束标志";
        break;
    }
    if (checkFrom < 0 || checkAt < -1)
        return "校验的起点和位置不能为负";
    if (ck > 0) {
        const int room = lengthMode == FixedLength ? fixedLength : maxLength;
        const int at = checkAt >= 0 ? checkAt : room - end.size() - ck;
        if (checkFrom > at)
            return "校验范围的起点在校验值之后";
        if (checkAt >= 0 && checkAt + ck > room)
            return "校验值的位置超出了帧长";
    }
    if (channels.isEmpty() || channels.size() > MaxChannels)
        return QString("通道数应在 1 到 %1 之间").arg(MaxChannels);
    for (int i = 0; i < channels.size(); ++i) {
        const Channel &c = channels.at(i);
        if (c.offset < 0 || c.offset + typeSize(c.type) > qMin(maxLength, lengthMode == FixedLength ? fixedLength : maxLength))
            return QString("第%1个通道“%2”的位置 %3 超出了帧长").arg(i + 1).arg(c.name).arg(c.offset);
        if (!std::isfinite(c.scale) || c.scale == 0 || !std::isfinite(c.add))
            return QString("第%1个通道“%2”的比例不能为 0").arg(i + 1).arg(c.name);
    }
    return QString();
}

QByteArray PlotFrameDefinition::toJson() const
{
    QJsonObject length{{"mode", s_lengthModes[lengthMode]}};
    if (lengthMode == FixedLength)
        length.insert("bytes", fixedLength);
    if (lengthMode == LengthField) {
        length.insert("offset", lengthOffset);
        length.insert("size", lengthSize);
        length.insert("endian", endianName(lengthBigEndian));
        length.insert("counts", s_lengthCounts[lengthCounts]);
    }
    QJsonObject check{{"type", PlotChecksum::names().at(checksum)}};
    if (checksum != PlotChecksum::None) {
        check.insert("from", checkFrom);
        check.insert("at", checkAt >= 0 ? QJsonValue(checkAt) : QJsonValue("end"));
        check.insert("endian", endianName(checkBigEndian));
    }
    QJsonArray list;
    for (const Channel &c : channels) {
        QJsonObject o{{"name", c.name}, {"offset", c.offset}, {"type", typeNames().at(c.type)}};
        if (typeSize(c.type) > 1)
            o.insert("endian", endianName(c.bigEndian));
        if (c.scale != 1)
            o.insert("scale", c.scale);
        if (c.add != 0)
            o.insert("add", c.add);
        list.append(o);
    }
    QJsonObject root{{"name", name}, {"start", bytesToHex(start)}, {"length", length},
                     {"maxLength", maxLength}, {"checksum", check}, {"channels", list}};
    if (!end.isEmpty())
        root.insert("end", bytesToHex(end));
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

bool PlotFrameDefinition::fromJson(const QByteArray &json, PlotFrameDefinition *out, QString *error)
{
    const QString twice = duplicateKey(json);
    if (!twice.isNull()) {
        *error = QString("“%1”出现了两次").arg(twice);
        return false;
    }
    QJsonParseError perr;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &perr);
    if (perr.error != QJsonParseError::NoError) {
        *error = QString("不是有效的 JSON（第 %1 个字节处：%2）").arg(perr.offset).arg(perr.errorString());
        return false;
    }
    if (!doc.isObject()) {
        *error = "帧定义应是一个 JSON 对象";
        return false;
    }
    const QJsonObject root = doc.object();
    Reader r;
    PlotFrameDefinition d;
    bool ok = true;
    d.name = r.text(root, "name", QString(), "");
    d.start = hexToBytes(r.text(root, "start", QString(), ""), &ok);
    if (!ok)
        r.fail("起始标志“start”不是十六进制字节");
    d.end = hexToBytes(r.text(root, "end", QString(), ""), &ok);
    if (!ok)
        r.fail("结束标志“end”不是十六进制字节");
    d.maxLength = r.integer(root, "maxLength", d.maxLength, "");

    const QJsonObject length = root.value("length").toObject();
    const QString mode = r.text(length, "mode", "fixed", "长度：");
    const int m = indexIn(s_lengthModes, 3, mode);
    if (m < 0)
        r.fail(QString("长度方式“%1”未知（fixed、field 或 end）").arg(mode));
    d.lengthMode = LengthMode(qMax(0, m));
    d.fixedLength = r.integer(length, "bytes", 0, "长度：");
    d.lengthOffset = r.integer(length, "offset", 0, "长度：");
    d.lengthSize = r.integer(length, "size", 1, "长度：");
    d.lengthBigEndian = r.bigEndian(length, "长度：");
    const QString counts = r.text(length, "counts", "frame", "长度：");
    const int c = indexIn(s_lengthCounts, 3, counts);
    if (c < 0)
        r.fail(QString("长度“counts”的“%1”未知（frame、after-field 或 payload）").arg(counts));
    d.lengthCounts = LengthCounts(qMax(0, c));

    const QJsonObject check = root.value("checksum").toObject();
    const QString type = r.text(check, "type", "none", "校验：");
    const int t = PlotChecksum::typeFromName(type);
    if (t < 0)
        r.fail(QString("校验方式“%1”未知（%2）").arg(type, PlotChecksum::names().join("、")));
    d.checksum = PlotChecksum::Type(qMax(0, t));
    d.checkFrom = r.integer(check, "from", 0, "校验：");
    d.checkAt = check.value("at").isString() && check.value("at").toString() == "end" ? -1 : r.integer(check, "at", -1, "校验：");
    d.checkBigEndian = r.bigEndian(check, "校验：");

    const QJsonValue channels = root.value("channels");
    if (!channels.isArray())
        r.fail("缺少通道列表“channels”");
    const QJsonArray list = channels.toArray();
    for (int i = 0; i < list.size() && i <= MaxChannels; ++i) {
        const QString where = QString("第%1个通道：").arg(i + 1);
        const QJsonObject o = list.at(i).toObject();
        if (!list.at(i).isObject()) {
            r.fail(where + "应是一个 JSON 对象");
            break;
        }
        Channel ch;
        ch.name = r.text(o, "name", QString("CH%1").arg(i + 1), where).trimmed();
        if (ch.name.isEmpty())
            ch.name = QString("CH%1").arg(i + 1);
        ch.offset = r.integer(o, "offset", -1, where);
        if (!o.contains("offset"))
            r.fail(where + "缺少位置“offset”");
        const QString tn = r.text(o, "type", "u8", where);
        const int ti = typeNames().indexOf(tn);
        if (ti < 0)
            r.fail(QString("%1类型“%2”未知（%3）").arg(where, tn, typeNames().join(' ')));
        ch.type = ValueType(qMax(0, ti));
        ch.bigEndian = r.bigEndian(o, where);
        ch.scale = r.number(o, "scale", 1, where);
        ch.add = r.number(o, "add", 0, where);
        d.channels.append(ch);
    }
    if (r.error.isEmpty())
        r.error = d.validate();
    if (!r.error.isEmpty()) {
        *error = r.error;
        return false;
    }
    *out = d;
    return true;
}

bool PlotFrameDefinition::save(const QString &path, QString *error) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(toJson()) < 0 || !file.commit()) {
        *error = QString("无法写入 %1：%2").arg(path, file.errorString());
        return false;
    }
    return true;
}

bool PlotFrameDefinition::load(const QString &path, PlotFrameDefinition *out, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QString("无法打开 %1：%2").arg(path, file.errorString());
        return false;
    }
    // a definition is a few hundred bytes; anything huge is not one
    if (file.size() > 1024 * 1024) {
        *error = QString("%1 太大，不是帧定义文件").arg(path);
        return false;
    }
    QString why;
    if (!fromJson(file.readAll(), out, &why)) {
        *error = QString("%1：%2").arg(QFileInfo(path).fileName(), why);
        return false;
    }
    return true;
}

QByteArray PlotFrameDefinition::buildFrame(const QVector<double> &values) const
{
    const int ck = PlotChecksum::size(checksum);
    int body = minimumLength() - ck - end.size();
    for (const Channel &c : channels)
        body = qMax(body, c.offset + typeSize(c.type));
    if (checkAt >= 0)
        body = qMax(body, checkAt + ck);
    int total = lengthMode == FixedLength ? fixedLength : body + (checkAt >= 0 ? 0 : ck) + end.size();
    QByteArray frame(total, 0);
    uchar *p = reinterpret_cast<uchar *>(frame.data());
    std::memcpy(p, start.constData(), size_t(start.size()));
    if (lengthMode == LengthField) {
        const qint64 field = total - lengthFromField(0);
        writeUnsigned(lengthSize, lengthBigEndian, quint32(field), p + lengthOffset);
    }
    for (int i = 0; i < channels.size() && i < values.size(); ++i) {
        const Channel &c = channels.at(i);
        writeValue(c.type, c.bigEndian, (values.at(i) - c.add) / c.scale, p + c.offset);
    }
    if (!end.isEmpty())
        std::memcpy(p + total - end.size(), end.constData(), size_t(end.size()));
    if (ck > 0) {
        const int at = checkPosition(total);
        writeUnsigned(ck, checkBigEndian, PlotChecksum::compute(checksum, p + checkFrom, at - checkFrom), p + at);
    }
    return frame;
}
