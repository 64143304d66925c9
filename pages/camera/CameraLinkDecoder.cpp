#include "CameraLinkDecoder.h"

#include "CameraFrame.h"
#include "NumberTool.h"

#include <QtGlobal>

namespace {
const char Head[] = "LARK";
const char Soi[] = "\xFF\xD8";
const char Eoi[] = "\xFF\xD9";

bool beginsWithHead(const QByteArray &data)
{
    return data.size() >= 4 && memcmp(data.constData(), Head, 4) == 0;
}

CameraLinkEvent event(CameraLinkEvent::Kind kind, unsigned int value = 0)
{
    CameraLinkEvent e{kind};
    e.value = value;
    return e;
}

CameraLinkEvent toast(const QString &text)
{
    CameraLinkEvent e{CameraLinkEvent::Toast};
    e.text = text;
    return e;
}
} // namespace

void CameraLinkDecoder::receive(const QByteArray &chunk, const Options &options,
                                std::vector<CameraLinkEvent> &events)
{
    if (options.jpegMode) {
        m_recvBuffer.append(chunk);
        parseJpegData(chunk.size(), events);
        return;
    }
    // framed bytes invalidate what the marker searches knew of the buffer
    m_soiScanFrom = m_eoiScanFrom = 0;
    if (beginsWithHead(chunk)) {
        m_recvBuffer.clear();
        m_bRecvImage = false;
    }
    m_recvBuffer.append(chunk);
    if (m_recvBuffer.size() >= CameraFrame::MinimumSize)
        parseProtocolData(options, events);
}

void CameraLinkDecoder::stopRecvImage()
{
    m_bRecvImage = false;
    m_recvBuffer.clear();
    m_soiScanFrom = m_eoiScanFrom = 0;
}

void CameraLinkDecoder::resetLink()
{
    stopRecvImage();
    m_nFrameLen = 0;
}

void CameraLinkDecoder::removeFront(qint64 n)
{
    if (n > 0)
        m_recvBuffer.remove(0, int(qMin<qint64>(n, m_recvBuffer.size())));
}

void CameraLinkDecoder::parseProtocolData(const Options &options, std::vector<CameraLinkEvent> &events)
{
    // A finished image looks at what follows it once more; a head read there ends
    // the pass (a further frame waits for the next chunk).
    for (;;) {
        if (!m_bRecvImage) {
            parseHead(options, events);
            return;
        }
        if (!takeImage(options, events))
            return;
        if (m_recvBuffer.size() <= CameraFrame::MinimumSize)
            return;
    }
}

bool CameraLinkDecoder::takeImage(const Options &options, std::vector<CameraLinkEvent> &events)
{
    if (m_nFrameLen > m_recvBuffer.size())
        return false;
    m_bRecvImage = false;
    // a length below 0 takes nothing
    const int len = qMax(0, m_nFrameLen);
    const QByteArray packet = m_recvBuffer.left(len);
    removeFront(len);

    const int slot = int(CameraFrame::readLe(packet, 4, 1) & 1);
    const qint32 ownLength = qint32(CameraFrame::readLe(packet, 5, 4));
    bool good = false;
    if (packet.size() >= 2 + 1) {
        const QByteArray crc = NumberTool::getCRCData(QByteArray::fromRawData(packet.constData(), packet.size() - 2));
        good = crc == packet.right(2) && ownLength == m_nFrameLen;
    }
    if (!good) {
        events.push_back(event(CameraLinkEvent::Reply, 1));
        if (options.crcCheck)
            return false;
    }

    CameraImageFormat &format = m_imgFormat[slot];
    format.device = uchar(slot);
    CameraLinkEvent draw{CameraLinkEvent::DrawRaw};
    draw.slot = slot;
    draw.data = packet;
    switch (format.format) {
    case 1:
    case 3:
        events.push_back(draw);
        break;
    case 2:
    case 4:
        draw.kind = CameraLinkEvent::DrawRgb565;
        draw.offset = qMin(CameraFrame::HeaderSize, packet.size());
        draw.length = int(qBound<qint64>(0, qint64(ownLength) - CameraFrame::MinimumSize, packet.size() - draw.offset));
        events.push_back(draw);
        break;
    default:
        break;
    }
    events.push_back(event(CameraLinkEvent::FrameDone));
    events.push_back(event(CameraLinkEvent::RefreshCounts));
    events.push_back(event(CameraLinkEvent::Reply, 0));
    events.push_back(event(CameraLinkEvent::RefreshCounts));
    return true;
}

void CameraLinkDecoder::parseHead(const Options &options, std::vector<CameraLinkEvent> &events)
{
    if (!beginsWithHead(m_recvBuffer)) {
        stopRecvImage();
        return;
    }
    m_nFrameLen = qint32(CameraFrame::readLe(m_recvBuffer, 5, 4));
    const int cmd = uchar(m_recvBuffer.at(9));
    const int slot = m_recvBuffer.at(4) & 1;

    switch (cmd) {
    case CameraFrame::CMD_IMAGE_FORMAT:
        if (m_nFrameLen <= m_recvBuffer.size()) {
            CameraImageFormat &f = m_imgFormat[slot];
            f.format = uchar(CameraFrame::readLe(m_recvBuffer, 10, 1));
            f.width = ushort(CameraFrame::readLe(m_recvBuffer, 11, 2));
            f.height = ushort(CameraFrame::readLe(m_recvBuffer, 13, 2));
            CameraLinkEvent note{CameraLinkEvent::Notify};
            note.slot = slot;
            note.text = QString("设备[%1]修改图像格式[%2]成功: 宽度: %3像素,高度：%4像素.")
                            .arg(slot + 1).arg(CameraFrame::imageSuffix(f.format)).arg(f.width).arg(f.height);
            events.push_back(note);
            events.push_back(event(CameraLinkEvent::Reply, 0));
        }
        break;
    case CameraFrame::CMD_IMAGE_DATA:
        if (m_nFrameLen > MaximumImageFrame) {
            stopRecvImage();
            events.push_back(event(CameraLinkEvent::Reply, 1));
            return;
        }
        m_bRecvImage = true;
        events.push_back(event(CameraLinkEvent::RestartFrameTimer));
        return;
    case CameraFrame::CMD_READ_REG:
        if (m_nFrameLen <= m_recvBuffer.size()) {
            const int valueLength = options.valueLength;
            if (qint64(valueLength) + 15 != m_nFrameLen) {
                // the answer stays at the front and is judged again with every chunk
                events.push_back(toast("当前数据长度与配置不符合！"));
                return;
            }
            const int status = uchar(m_recvBuffer.at(10));
            if (status == 0) {
                CameraLinkEvent answer{CameraLinkEvent::RegisterValue};
                answer.regId = ushort(CameraFrame::readLe(m_recvBuffer, 11, 2));
                answer.value = CameraFrame::readLe(m_recvBuffer, 13, valueLength);
                events.push_back(answer);
            } else if (status == 1) {
                events.push_back(toast("数据包接收错误!"));
            } else if (status == 2) {
                events.push_back(toast("没有这个寄存器!"));
            } else {
                events.push_back(toast(QString("寄存器读取错误，错误代码[%1]!").arg(status)));
            }
        }
        break;
    default:
        break;
    }
    // not guarded: a short frame that is not whole takes the whole buffer with it
    removeFront(m_nFrameLen);
}

void CameraLinkDecoder::parseJpegData(int appended, std::vector<CameraLinkEvent> &events)
{
    // what the previous searches covered, less a byte for a marker split by the chunk
    const int fresh = qMax(0, m_recvBuffer.size() - appended - 1);
    if (m_nJpegStart == -1) {
        m_nJpegStart = m_recvBuffer.indexOf(QByteArray::fromRawData(Soi, 2), qMin(m_soiScanFrom, fresh));
        if (m_nJpegStart != -1) {
            events.push_back(event(CameraLinkEvent::RestartFrameTimer));
            if (m_nJpegStart > 0) {
                m_recvBuffer.remove(0, m_nJpegStart);
                m_eoiScanFrom = qMax(0, m_eoiScanFrom - m_nJpegStart);
            }
        } else {
            m_soiScanFrom = qMax(0, m_recvBuffer.size() - 1);
        }
    }
    // the EOI is looked for with or without an SOI
    const int eoiFrom = qMin(m_eoiScanFrom, qMax(0, m_recvBuffer.size() - appended - 1));
    m_nJpegEnd = m_recvBuffer.indexOf(QByteArray::fromRawData(Eoi, 2), eoiFrom);
    if (m_nJpegEnd == -1) {
        m_eoiScanFrom = qMax(0, m_recvBuffer.size() - 1);
        if (m_recvBuffer.size() > MaximumJpegImage)
            dropUnendedJpeg(events);
        return;
    }
    CameraLinkEvent image{CameraLinkEvent::DrawJpeg};
    image.data = m_recvBuffer.left(m_nJpegEnd + 2);
    events.push_back(image);
    m_recvBuffer.remove(0, m_nJpegEnd + 2);
    events.push_back(event(CameraLinkEvent::FrameDone));
    m_nJpegStart = -1;
    m_nJpegEnd = -1;
    // the rest has not been searched yet
    m_soiScanFrom = m_eoiScanFrom = 0;
    events.push_back(event(CameraLinkEvent::RefreshCounts));
}

void CameraLinkDecoder::dropUnendedJpeg(std::vector<CameraLinkEvent> &events)
{
    // One search and one cut, however many SOIs the stream repeats: the start kept is
    // the first one from which what follows fits the bound.
    const int from = m_recvBuffer.size() - MaximumJpegImage;
    const int soi = m_recvBuffer.indexOf(QByteArray::fromRawData(Soi, 2), from);
    m_recvBuffer.remove(0, soi != -1 ? soi : m_recvBuffer.size() - 1);
    m_nJpegStart = soi != -1 ? 0 : -1;
    m_soiScanFrom = 0;
    // everything left was searched for an EOI already
    m_eoiScanFrom = qMax(0, m_recvBuffer.size() - 1);
    // in the status bar, where it stays: the images stop and the user wants to know why
    CameraLinkEvent note{CameraLinkEvent::Notify};
    note.text = QString("JPEG数据超过%1MB仍无结束标记，已丢弃").arg(MaximumJpegImage >> 20);
    events.push_back(note);
    if (soi != -1)
        events.push_back(event(CameraLinkEvent::RestartFrameTimer));
}
