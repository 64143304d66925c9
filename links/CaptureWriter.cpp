#include "CaptureWriter.h"
#include "CaptureClock.h"
#include "CaptureLog.h"
#include "LinkTap.h"

#include <QFileInfo>
#include <QTimer>

#include <sys/stat.h>

CaptureWriter::CaptureWriter(QObject *parent)
    : QObject(parent), m_timer(new QTimer(this))
{
    m_timer->setSingleShot(true);
    m_timer->setInterval(flushInterval);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(SltFlush()));
}

CaptureWriter::~CaptureWriter()
{
    stop();
}

CaptureWriter::Format CaptureWriter::formatFor(const QString &path, bool hex)
{
    if (path.endsWith(QLatin1String(".bin"), Qt::CaseInsensitive))
        return Raw;
    return hex ? LogHex : LogText;
}

QString CaptureWriter::rolledPath(const QString &path, int index)
{
    if (index == 0)
        return path;
    const QFileInfo info(path);
    const QString suffix = info.suffix();
    const QString stem = suffix.isEmpty() ? path : path.left(path.size() - suffix.size() - 1);
    return suffix.isEmpty() ? QString("%1.%2").arg(stem).arg(index) : QString("%1.%2.%3").arg(stem).arg(index).arg(suffix);
}

bool CaptureWriter::start(const QString &path, Format format, QTextCodec *codec, qint64 rollBytes)
{
    stop();
    m_path = path;
    m_format = format;
    m_codec = format == LogText ? codec : nullptr;
    m_roll = rollBytes;
    m_rollIndex = 0;
    m_total = 0;
    m_error.clear();
    if (!openFile(path))
        return false;
    m_clock.start();
    return true;
}

bool CaptureWriter::openFile(const QString &path)
{
    m_file.setFileName(path);
    // unbuffered: a write reaches the kernel when SltFlush runs, not when QFile decides
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        m_error = m_file.errorString();
        return false;
    }
    m_fileBytes = 0;
    return true;
}

void CaptureWriter::stop()
{
    if (!m_file.isOpen())
        return;
    SltFlush();
    m_timer->stop();
    m_pending.clear();
    if (m_file.isOpen()) {
        m_file.close();
        emit stopped();
    }
}

void CaptureWriter::attach(LinkTap *tap)
{
    connect(tap, SIGNAL(received(QByteArray)), this, SLOT(SltReceived(QByteArray)));
    connect(tap, SIGNAL(sent(QByteArray)), this, SLOT(SltSent(QByteArray)));
}

void CaptureWriter::SltReceived(const QByteArray &bytes)
{
    add(false, bytes);
}

void CaptureWriter::SltSent(const QByteArray &bytes)
{
    if (m_format != Raw)
        add(true, bytes);
}

void CaptureWriter::add(bool sent, const QByteArray &bytes)
{
    if (!m_file.isOpen() || bytes.isEmpty())
        return;
    if (m_format == Raw) {
        m_pending += bytes;
    } else {
        CaptureLog::appendLine(&m_pending, sent, m_wallClock.now(), m_clock.elapsed(), bytes, m_codec);
    }
    if (m_pending.size() >= flushBytes)
        SltFlush();
    else if (!m_timer->isActive())
        m_timer->start();
}

bool CaptureWriter::fileStillOurs() const
{
    struct stat byName, byHandle;
    if (::stat(QFile::encodeName(m_file.fileName()).constData(), &byName) != 0)
        return false;
    if (::fstat(m_file.handle(), &byHandle) != 0)
        return false;
    return byName.st_dev == byHandle.st_dev && byName.st_ino == byHandle.st_ino;
}

void CaptureWriter::SltFlush()
{
    m_timer->stop();
    if (!m_file.isOpen() || m_pending.isEmpty())
        return;
    // bytes written to a file nobody can find any more would be lost at the end
    if (!fileStillOurs()) {
        fail(QString("记录文件 %1 已被删除或移动").arg(m_file.fileName()));
        return;
    }
    // a raw capture rolls over at exactly the size; a log at the end of the lines
    // that reached it
    int done = 0;
    while (done < m_pending.size()) {
        int len = m_pending.size() - done;
        if (m_roll > 0 && m_format == Raw)
            len = int(qMin<qint64>(len, m_roll - m_fileBytes));
        const qint64 n = m_file.write(m_pending.constData() + done, len);
        if (n > 0) {
            // what did go out is part of the file even when the rest fails
            m_total += n;
            m_fileBytes += n;
            done += int(n);
        }
        if (n != len) {
            fail(QString("写入记录文件 %1 失败: %2").arg(m_file.fileName(), m_file.errorString()));
            return;
        }
        if (m_roll > 0 && m_fileBytes >= m_roll) {
            m_file.close();
            if (!openFile(rolledPath(m_path, ++m_rollIndex))) {
                fail(QString("无法创建记录文件 %1: %2").arg(m_file.fileName(), m_error));
                return;
            }
        }
    }
    m_pending.clear();
    emit progress(m_total);
}

void CaptureWriter::fail(const QString &reason)
{
    m_error = reason;
    m_pending.clear();
    m_timer->stop();
    m_file.close();
    emit failed(reason);
    emit stopped();
}
