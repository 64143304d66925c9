#ifndef TCPCLIENT_H
#define TCPCLIENT_H

#include <QByteArray>
#include <QString>
#include <QTcpSocket>

// One connected peer of a TcpServer. Its name ("address descriptor") is the key in
// the server's table and also the text the user sees and picks in the page.
class TcpClient : public QTcpSocket
{
    Q_OBJECT
public:
    explicit TcpClient(QObject *parent = nullptr);
    ~TcpClient() override;

    QString name() const;
    void setName(const QString &name);

signals:
    void signalReadMessage(QString name, QByteArray data);

public slots:
    void SltReadMessage();

private:
    QString m_name;
};

#endif // TCPCLIENT_H
