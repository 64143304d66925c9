#ifndef RECORDER_H
#define RECORDER_H

#include <QElapsedTimer>
#include <QFile>
#include <QObject>

class SimEndpoint;

// Records the bytes an endpoint receives, each chunk with the time it came, and
// plays such a recording back. The file: "LARKREC1", then per chunk the
// microseconds since the first peer as 8 bytes and the chunk's size as 4 bytes,
// both little-endian, and the chunk's bytes.
class Recorder : public QObject
{
    Q_OBJECT
public:
    static const QByteArray Magic;

    explicit Recorder(SimEndpoint *endpoint, QObject *parent = nullptr);
    bool record(const QString &path, QString *error);
    // plays the file into the endpoint once a peer is there; quits the application
    // when done
    bool replay(const QString &path, double speed, QString *error);
    qint64 chunks() const { return m_chunks; }

private slots:
    void received(const QByteArray &data);
    void peerChanged(bool present);
    void playNext();

private:
    struct Chunk {
        qint64 us;
        QByteArray bytes;
    };
    SimEndpoint *m_endpoint;
    QFile m_file;
    QElapsedTimer m_clock;
    qint64 m_chunks = 0;
    QList<Chunk> m_play;
    int m_next = -1;
    double m_speed = 1; // 0: as fast as possible
};

#endif // RECORDER_H
