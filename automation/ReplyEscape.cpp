#include "ReplyEscape.h"

#include <QTextCodec>

static int hexDigit(QChar c)
{
    const ushort u = c.unicode();
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'a' && u <= 'f')
        return u - 'a' + 10;
    if (u >= 'A' && u <= 'F')
        return u - 'A' + 10;
    return -1;
}

static QByteArray fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return QByteArray();
}

QByteArray ReplyEscape::fromText(const QString &text, QTextCodec *codec, QString *error)
{
    if (error)
        error->clear();
    QByteArray out;
    QString plain; // the run of ordinary characters, encoded as one piece so that the
                   // codec sees whole surrogate pairs
    auto flush = [&]() {
        if (plain.isEmpty())
            return;
        out += codec ? codec->fromUnicode(plain) : plain.toUtf8();
        plain.clear();
    };
    const int n = text.size();
    for (int i = 0; i < n; ++i) {
        const QChar c = text.at(i);
        if (c != QLatin1Char('\\')) {
            plain += c;
            continue;
        }
        const int at = i + 1; // 1-based column of the backslash, for the message
        if (i + 1 >= n)
            return fail(error, QString("第 %1 个字符：\\ 后缺少转义字符").arg(at));
        const QChar e = text.at(++i);
        char byte;
        switch (e.unicode()) {
        case 'r': byte = '\r'; break;
        case 'n': byte = '\n'; break;
        case 't': byte = '\t'; break;
        case '\\': byte = '\\'; break;
        case 'x': {
            const int hi = i + 1 < n ? hexDigit(text.at(i + 1)) : -1;
            const int lo = i + 2 < n ? hexDigit(text.at(i + 2)) : -1;
            if (hi < 0 || lo < 0)
                return fail(error, QString("第 %1 个字符：\\x 后应为两位十六进制数").arg(at));
            byte = char(hi << 4 | lo);
            i += 2;
            break;
        }
        default:
            return fail(error, QString("第 %1 个字符：未知的转义 \\%2（可用 \\r \\n \\t \\\\ \\xNN）").arg(at).arg(e));
        }
        flush();
        out += byte;
    }
    flush();
    return out;
}

QByteArray ReplyEscape::fromHex(const QString &text, QString *error)
{
    if (error)
        error->clear();
    QByteArray out;
    out.reserve(text.size() / 2);
    const int n = text.size();
    for (int i = 0; i < n; ++i) {
        if (text.at(i).isSpace())
            continue;
        const int hi = hexDigit(text.at(i));
        if (hi < 0)
            return fail(error, QString("第 %1 个字符：\"%2\" 不是十六进制数字").arg(i + 1).arg(text.at(i)));
        if (i + 1 >= n || text.at(i + 1).isSpace())
            return fail(error, QString("第 %1 个字符：十六进制字节应为两位").arg(i + 1));
        const int lo = hexDigit(text.at(i + 1));
        if (lo < 0)
            return fail(error, QString("第 %1 个字符：\"%2\" 不是十六进制数字").arg(i + 2).arg(text.at(i + 1)));
        out += char(hi << 4 | lo);
        ++i;
    }
    return out;
}
