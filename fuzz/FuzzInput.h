#ifndef FUZZINPUT_H
#define FUZZINPUT_H

#include <QByteArray>
#include <cstddef>
#include <cstdint>

// Reads a fuzzer's input the way the links receive bytes: a few leading bytes choose
// options, the rest arrives in chunks whose sizes the input chooses too, so that
// frames split at every possible place are tried.
class FuzzInput
{
public:
    FuzzInput(const uint8_t *data, size_t size)
        : m_data(reinterpret_cast<const char *>(data))
        , m_size(int(size))
    {
    }

    // one option byte, 0 when the input is used up
    quint8 byte() { return m_pos < m_size ? quint8(m_data[m_pos++]) : 0; }
    quint16 word() { const quint16 hi = byte(); return quint16(hi << 8 | byte()); }

    // the next chunk: a size byte (1..64 bytes follow), or all that is left
    bool chunk(QByteArray &out)
    {
        if (m_pos >= m_size)
            return false;
        int n = byte() % 65;
        if (n == 0)
            n = m_size;
        n = qMin(n, m_size - m_pos);
        out = QByteArray(m_data + m_pos, n);
        m_pos += n;
        return true;
    }

    // the rest of the input to two parsers alike: to chunked in the chunks the input
    // chooses, to whole at once, so a target can check that the split changes nothing;
    // returns the bytes fed
    template <typename Parser, typename Out>
    QByteArray feedBoth(Parser &chunked, Out &a, Parser &whole, Out &b)
    {
        QByteArray chunk, all;
        while (this->chunk(chunk)) {
            chunked.feed(chunk, a);
            all += chunk;
        }
        whole.feed(all, b);
        return all;
    }

    QByteArray rest() const { return QByteArray(m_data + m_pos, m_size - m_pos); }

private:
    const char *m_data;
    int m_size;
    int m_pos = 0;
};

#endif // FUZZINPUT_H
