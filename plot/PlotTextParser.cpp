#include "PlotTextParser.h"

#include <QTextCodec>

#include <charconv>
#include <cmath>
#include <cstring>

namespace {
inline bool isBlank(char c) { return c == ' ' || c == '\t'; }

const char *trimFront(const char *b, const char *e)
{
    while (b < e && isBlank(*b))
        ++b;
    return b;
}

const char *trimBack(const char *b, const char *e)
{
    while (e > b && isBlank(e[-1]))
        --e;
    return e;
}

bool toNumber(const char *b, const char *e, double *out)
{
    if (b < e && *b == '+')
        ++b;
    if (b == e)
        return false;
    const auto r = std::from_chars(b, e, *out);
    return r.ec == std::errc() && r.ptr == e && std::isfinite(*out);
}
}

PlotTextParser::PlotTextParser(QTextCodec *codec)
    : m_codec(codec)
{
}

void PlotTextParser::reset()
{
    m_pending.clear();
    m_bOverlong = false;
    m_names.clear();
    m_byName.clear();
    m_positional.clear();
    m_nGood = m_nBad = 0;
}

void PlotTextParser::feed(const QByteArray &bytes, PlotBatch &out)
{
    const char *p = bytes.constData();
    const char *end = p + bytes.size();
    // a CR LF split between two reads ends the line at the CR and leaves an empty line,
    // which is skipped like every empty line
    while (p < end) {
        const char *nl = p;
        while (nl < end && *nl != '\n' && *nl != '\r')
            ++nl;
        if (nl == end) {
            if (m_bOverlong)
                break;
            m_pending.append(p, int(end - p));
            if (m_pending.size() > MaxLineLength) {
                m_pending.clear();
                m_bOverlong = true;
            }
            break;
        }
        if (m_bOverlong) {
            ++m_nBad;
            m_bOverlong = false;
        } else if (m_pending.isEmpty()) {
            parseLine(p, nl, out);
        } else {
            m_pending.append(p, int(nl - p));
            parseLine(m_pending.constData(), m_pending.constData() + m_pending.size(), out);
            m_pending.resize(0);
        }
        if (*nl == '\r' && nl + 1 < end && nl[1] == '\n')
            ++nl;
        p = nl + 1;
    }
}

void PlotTextParser::parseLine(const char *b, const char *e, PlotBatch &out)
{
    b = trimFront(b, e);
    e = trimBack(b, e);
    if (b == e)
        return;
    char sep = 0;
    switch (m_separator) {
    case Comma:
        sep = ',';
        break;
    case Semicolon:
        sep = ';';
        break;
    case Tab:
        sep = '\t';
        break;
    case Blank:
        break;
    case Auto:
        for (const char c : {',', ';', '\t'})
            if (std::memchr(b, c, size_t(e - b))) {
                sep = c;
                break;
            }
        break;
    }
    const int mark = out.values.size();
    int index = 0;
    const char *f = b;
    while (f <= e) {
        // one field [f, fe)
        const char *fe = f;
        if (sep)
            while (fe < e && *fe != sep)
                ++fe;
        else
            while (fe < e && !isBlank(*fe))
                ++fe;
        const char *vb = trimFront(f, fe);
        const char *ve = trimBack(vb, fe);
        if (vb < ve) {
            const char *colon = vb;
            while (colon < ve && *colon != ':' && *colon != '=')
                ++colon;
            double v;
            bool ok;
            int channel;
            if (colon < ve) {
                ok = toNumber(trimFront(colon + 1, ve), ve, &v);
                const char *ne = trimBack(vb, colon);
                channel = ok && ne > vb ? channelFor(vb, ne) : -1;
            } else {
                ok = toNumber(vb, ve, &v);
                channel = ok ? positional(index) : -1;
            }
            if (channel < 0) {
                // one bad field spoils the line: nothing of it is kept
                out.channels.resize(mark);
                out.values.resize(mark);
                ++m_nBad;
                return;
            }
            out.add(channel, v);
        }
        ++index;
        if (fe == e)
            break;
        f = fe + 1;
        if (!sep)
            f = trimFront(f, e);
    }
    if (out.values.size() == mark) {
        ++m_nBad; // separators only
        return;
    }
    out.endRecord();
    ++m_nGood;
}

int PlotTextParser::channelFor(const char *b, const char *e)
{
    const QByteArray key = QByteArray::fromRawData(b, int(e - b));
    const auto it = m_byName.constFind(key);
    if (it != m_byName.constEnd())
        return it.value();
    const QString name = m_codec ? m_codec->toUnicode(key) : QString::fromUtf8(key);
    int index = m_names.indexOf(name);
    if (index < 0) {
        // a stream of noise that looks like pairs must not grow the list for ever
        if (m_names.size() >= MaxNames)
            return MaxNames;
        index = m_names.size();
        m_names.append(name);
    }
    // other spellings of a known name, as long as there are few
    if (m_byName.size() < 4 * MaxNames)
        m_byName.insert(QByteArray(b, int(e - b)), index);
    return index;
}

int PlotTextParser::channelNamed(const QString &name)
{
    const QByteArray key = m_codec ? m_codec->fromUnicode(name) : name.toUtf8();
    return channelFor(key.constData(), key.constData() + key.size());
}

int PlotTextParser::positional(int index)
{
    if (index < m_positional.size())
        return m_positional.at(index);
    // named channels and numbered ones share one list, so "CH2:5" and a bare value in
    // the second place are the same curve
    while (m_positional.size() <= index) {
        const QByteArray name = "CH" + QByteArray::number(m_positional.size() + 1);
        m_positional.append(channelFor(name.constData(), name.constData() + name.size()));
    }
    return m_positional.at(index);
}
