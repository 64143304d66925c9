#ifndef SIMCOMMANDLINE_H
#define SIMCOMMANDLINE_H

#include "CameraBoard.h"
#include "SimEndpoint.h"
#include "TextSource.h"

#include <QStringList>

// The command line of larksim: a command, an endpoint and the command's options.
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
    bool fail(const QString &text)
    {
        error = text;
        return false;
    }
    bool number(const QStringList &args, int &i, double &out, double min, double max);
};

#endif // SIMCOMMANDLINE_H
