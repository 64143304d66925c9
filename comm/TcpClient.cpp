#include "TcpClient.h"

TcpClient::TcpClient(QObject *parent)
    : QTcpSocket(parent)
{
    connect(this, SIGNAL(readyRead()), this, SLOT(SltReadMessage()));
}

TcpClient::~TcpClient()
{
    if (isOpen())
        close();
}

QString TcpClient::name() const
{
    return m_name;
}

void TcpClient::setName(const QString &name)
{
    m_name = name;
}

void TcpClient::SltReadMessage()
{
    const QByteArray bytes = readAll();
    emit signalReadMessage(m_name, bytes);
}
