#include "CameraRegisterRequest.h"

#include "CameraFrame.h"

CameraRegisterRequest::CameraRegisterRequest(const QString &strAddr, const QString &strValue, int regId,
                                             int addrLen, int valueLen)
    : m_addr(strAddr.toUInt(nullptr, 16))
    , m_value(strValue.toUInt(nullptr, 16))
    , m_regId(regId)
    , m_addrLen(addrLen)
    , m_valueLen(valueLen)
    , m_bWrite(!strValue.isEmpty())
{
}

QString CameraRegisterRequest::error() const
{
    if (m_addrLen < 1 || m_addrLen > 4)
        return "寄存器地址长度设置错误[1~4]";
    if (m_bWrite && (m_valueLen < 1 || m_valueLen > 4))
        return "寄存器值长度设置错误[1~4]";
    return QString();
}

unsigned char CameraRegisterRequest::command() const
{
    return m_bWrite ? CameraFrame::CMD_WRITE_REG : CameraFrame::CMD_READ_REG;
}

QByteArray CameraRegisterRequest::payload() const
{
    if (m_bWrite)
        return CameraFrame::le(m_addr, m_addrLen) + CameraFrame::le(m_value, m_valueLen);
    return CameraFrame::le(unsigned(m_regId), 2) + CameraFrame::le(m_addr, m_addrLen);
}

