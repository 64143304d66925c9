#ifndef SCRIPTHOST_H
#define SCRIPTHOST_H

#include <QByteArray>
#include <QObject>
#include <QString>

class ScriptRuntime;

// What a script may ask of the program, and nothing more. The script never holds this
// object: the runtime's prelude keeps it in a closure and gives the script plain
// functions (send, log, plot, timers, hex and CRC helpers) built on it.
class ScriptHost : public QObject
{
    Q_OBJECT
public:
    explicit ScriptHost(ScriptRuntime *runtime);

    Q_INVOKABLE double send(const QByteArray &bytes);
    Q_INVOKABLE double sendText(const QString &text);
    Q_INVOKABLE void log(const QString &text);
    Q_INVOKABLE void plot(const QString &name, double value);
    Q_INVOKABLE int addTimer(double ms, bool repeat, const QString &entry);
    Q_INVOKABLE void removeTimer(int id);
    Q_INVOKABLE QString toHex(const QByteArray &bytes) const;
    Q_INVOKABLE QByteArray fromHex(const QString &text);
    Q_INVOKABLE QString text(const QByteArray &bytes) const;
    Q_INVOKABLE QByteArray encode(const QString &text) const;
    Q_INVOKABLE int crc16modbus(const QByteArray &bytes) const;
    Q_INVOKABLE QString codec() const;

private:
    ScriptRuntime *m_runtime;
};

#endif // SCRIPTHOST_H
