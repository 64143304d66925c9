#ifndef CAMERAREGISTERREQUEST_H
#define CAMERAREGISTERREQUEST_H

#include <QByteArray>
#include <QString>

// One register read or write asked of the camera board, from the texts of a register
// row and the two field widths of the page. An empty value means a read: its payload
// is the row id (2 bytes) and the address; a write's is the address and the value.
// Every field is little-endian in the width the user set, cut to that width.
class CameraRegisterRequest
{
public:
    // address and value are hexadecimal texts; widths are taken as typed
    CameraRegisterRequest(const QString &strAddr, const QString &strValue, int regId, int addrLen, int valueLen);

    // the toast that refuses the request, or an empty string when it may go. The value
    // width is checked for writes only: a read never sends a value.
    QString error() const;
    bool isWrite() const { return m_bWrite; }
    unsigned char command() const;
    QByteArray payload() const;

private:
    unsigned int m_addr;
    unsigned int m_value;
    int m_regId;
    int m_addrLen;
    int m_valueLen;
    bool m_bWrite;
};

#endif // CAMERAREGISTERREQUEST_H
