#include "TextSource.h"

#include "SimEndpoint.h"

#include <QCoreApplication>
#include <QTextCodec>
#include <QTimer>

#include <cmath>
#include <cstring>

namespace {
const qint64 MaximumBacklog = 1 << 20;
const char *const s_lines[] = {
    "temp=25.3 状态正常 <ok> 计数 %1",
    "电机转速 1500 rpm, 电流 0.42 A, 第%1行",
    "ADC: 1023 2047 3071 警告：电压偏低 #%1",
    "[info] 传感器初始化完成 (id=%1)",
};
}

TextSource::TextSource(SimEndpoint *endpoint, const Options &options, QObject *parent)
    : QObject(parent)
    , m_endpoint(endpoint)
    , m_opt(options)
    , m_codec(QTextCodec::codecForName(options.encoding))
    , m_timer(new QTimer(this))
{
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(tick()));
    connect(m_endpoint, SIGNAL(received(QByteArray)), this, SLOT(received(QByteArray)));
}

QByteArray TextSource::item(qint64 n) const
{
    switch (m_opt.kind) {
    case Counter:
        return QString("count=%1\r\n").arg(n).toLatin1();
    case Binary: {
        // 0xAA 0x55, the burst's number, then a ramp
        QByteArray out(qMax(4, m_opt.burst), 0);
        out[0] = char(0xAA), out[1] = char(0x55), out[2] = char(n >> 8), out[3] = char(n);
        for (int i = 4; i < out.size(); ++i)
            out[i] = char((n + i) & 0xFF);
        return out;
    }
    case Csv:
    case Named:
    case Frame:
        return plotItem(n);
    case Lines:
        break;
    }
    const QString line = QString::fromUtf8(s_lines[n % 4]).arg(n) + "\r\n";
    return m_codec->fromUnicode(line);
}

QStringList TextSource::kindNames()
{
    return {"lines", "counter", "binary", "csv", "named", "frame"};
}

QByteArray TextSource::plotItem(qint64 n) const
{
    const double phase = n * 0.05;
    if (m_opt.kind == Csv)
        return QString::asprintf("%.3f,%.3f,%lld\r\n", 100 * std::sin(phase), 50 * std::cos(phase), n % 100).toLatin1();
    if (m_opt.kind == Named)
        return QString::asprintf("temp:%.2f speed=%d current:%.3f\n", 25 + std::sin(phase / 4), 1500 + int(n % 50), 0.4 + 0.1 * std::cos(phase)).toLatin1();
    // AA 55, payload length 10, counter u16 LE, sine i16 LE (x1000), cosine f32 LE,
    // temperature i16 BE (x100), CRC-16/MODBUS LE over everything before it
    QByteArray f = QByteArray::fromHex("AA550A");
    const quint16 counter = quint16(n);
    const qint16 sine = qint16(std::lround(1000 * std::sin(phase)));
    const float cosine = float(std::cos(phase));
    quint32 cosBits;
    std::memcpy(&cosBits, &cosine, 4);
    const qint16 temp = qint16(std::lround(100 * (25 + std::sin(phase / 4))));
    f += char(counter), f += char(counter >> 8), f += char(sine), f += char(quint16(sine) >> 8);
    for (int i = 0; i < 4; ++i)
        f += char(cosBits >> (8 * i));
    f += char(quint16(temp) >> 8), f += char(temp);
    quint16 crc = 0xFFFF;
    for (const char c : qAsConst(f)) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = crc & 1 ? quint16((crc >> 1) ^ 0xA001) : quint16(crc >> 1);
    }
    return f + char(crc) + char(crc >> 8);
}

void TextSource::start()
{
    m_clock.start();
    if (m_opt.linesPerSecond > 0 || m_opt.bytesPerSecond > 0)
        m_timer->start(5);
}

void TextSource::tick()
{
    if (!m_endpoint->hasPeer()) {
        // The pace starts when a peer is there; the count goes on across peers, so a
        // board told to send N items ends after N whatever reopens came between.
        m_clock.restart();
        m_paceItems = m_items;
        m_bytes = 0;
        return;
    }
    const double seconds = m_clock.nsecsElapsed() / 1e9;
    QByteArray out;
    for (;;) {
        if (m_opt.count >= 0 && m_items >= m_opt.count)
            break;
        if (m_opt.bytesPerSecond > 0 ? m_bytes + out.size() >= seconds * m_opt.bytesPerSecond
                                     : m_items - m_paceItems >= qint64(seconds * m_opt.linesPerSecond) + 1)
            break;
        // A link that drains slower than the pace (a closed port, a reader that stalls)
        // holds the board back rather than piling the backlog up in memory: at a pace
        // of gigabytes a second the backlog would outgrow any buffer within seconds.
        if (m_endpoint->pending() + out.size() >= MaximumBacklog)
            break;
        out += item(m_items++);
    }
    m_bytes += out.size();
    m_endpoint->write(out);
    if (m_opt.count >= 0 && m_items >= m_opt.count && m_endpoint->pending() == 0) {
        m_timer->stop();
        QTimer::singleShot(m_endpoint->lingerMs(), qApp, SLOT(quit()));
    }
}

void TextSource::received(const QByteArray &data)
{
    if (m_opt.echo)
        m_endpoint->write(data);
}
