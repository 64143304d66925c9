#ifndef SIMCOMMANDLINE_H
#define SIMCOMMANDLINE_H

#include "CameraBoard.h"
#include "SimEndpoint.h"
#include "TextSource.h"

#include <QStringList>
#include <QVector>

// The command line of larksim: a command, an endpoint and the command's options.
// Each option is written once, in a table that both the parser and the help read.
class SimCommandLine
{
public:
    // false: error() tells why in one line; help requested is not an error
    bool parse(const QStringList &args);
    static QString helpText(const QString &command);

    QString command;
    bool help = false;
    QString error;
    SimEndpoint::Config endpoint;
    CameraBoard::Options camera;
    TextSource::Options text;
    double noise = 0;
    QString file;
    double speed = 1; // 0: as fast as possible

private:
    // one option: what the help shows, and what its value does to the result (a
    // switch gets an empty value, an option whose value is missing a null one)
    struct Option {
        QString name; // without the leading dashes
        QString valueName;
        QString description;
        bool (*apply)(SimCommandLine &line, const QString &option, const QString &value);
    };
    static QVector<Option> endpointOptions();
    static QVector<Option> commandOptions(const QString &command);

    bool fail(const QString &text)
    {
        error = text;
        return false;
    }
    // out is set only when value is a number in [min, max]
    template<typename T>
    bool number(const QString &option, const QString &value, T &out, double min, double max)
    {
        bool ok = false;
        const double v = value.toDouble(&ok);
        if (!ok || v < min || v > max)
            return fail(QString("%1 needs a number from %2 to %3").arg(option).arg(min).arg(max));
        out = T(v);
        return true;
    }
    bool setEndpoint(SimEndpoint::Kind kind);
    bool setHostPort(SimEndpoint::Kind kind, const QString &option, const QString &value);

    int m_endpoints = 0;
};

#endif // SIMCOMMANDLINE_H
