#ifndef LINKTAPRIG_H
#define LINKTAPRIG_H

#include "LarkPtyPair.h"
#include "LinkTap.h"

#include <QSerialPort>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <memory>
#include <utility>

// A LinkTap wired the way a page wires it, on a real link: the program's end is a
// QSerialPort on a socat pty or the accepted socket of a loopback TCP pair, and the
// test plays the board on the other end.
class LinkTapRig
{
public:
    LinkTap tap;

    bool openPty() { return m_pty.start() && openPort(m_pty.programPath()); }

    // the program's end on a port another process made, such as larksim's pty
    bool openPort(const QString &path)
    {
        auto *port = new QSerialPort(path);
        m_device.reset(port);
        return port->open(QIODevice::ReadWrite) && wire(path);
    }

    // the program's end as the TCP client of a board that listens, such as larksim
    bool connectTcp(quint16 port)
    {
        auto *socket = new QTcpSocket;
        m_device.reset(socket);
        socket->connectToHost(QHostAddress::LocalHost, port);
        return socket->waitForConnected(5000) && wire("TCP Client 127.0.0.1");
    }

    bool openTcp()
    {
        if (!m_server.listen(QHostAddress::LocalHost, 0))
            return false;
        m_board = std::make_unique<QTcpSocket>();
        m_board->connectToHost(QHostAddress::LocalHost, m_server.serverPort());
        if (!m_server.waitForNewConnection(5000) || !m_board->waitForConnected(5000))
            return false;
        m_device.reset(m_server.nextPendingConnection());
        return wire("TCP Client 127.0.0.1");
    }

    void boardWrite(const QByteArray &bytes)
    {
        if (m_board)
            m_board->write(bytes), m_board->flush();
        else
            m_pty.boardWrite(bytes);
    }

    // what the board received, once at least n bytes came (or 5 s passed)
    QByteArray boardReadAtLeast(int n)
    {
        if (!m_board)
            return m_pty.boardReadAtLeast(n);
        // the program's side needs the event loop to write
        (void)QTest::qWaitFor([&] { return (m_boardIn += m_board->readAll()).size() >= n; }, 5000);
        return std::exchange(m_boardIn, QByteArray());
    }

private:
    bool wire(const QString &name)
    {
        QIODevice *device = m_device.get();
        QObject::connect(device, &QIODevice::readyRead, &tap, [this, device]() { tap.reportReceived(device->readAll()); });
        tap.setWriter([this, device](const QByteArray &bytes) {
            const qint64 n = device->write(bytes);
            tap.reportSent(bytes);
            return n;
        });
        tap.reportOpened(name);
        return true;
    }

    LarkPtyPair m_pty;
    QTcpServer m_server;
    std::unique_ptr<QTcpSocket> m_board;
    std::unique_ptr<QIODevice> m_device;
    QByteArray m_boardIn;
};

#endif // LINKTAPRIG_H
