#include "SimLog.h"

#include <cstdio>

void SimLog::line(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fprintf(stdout, "%s\n", bytes.constData());
    std::fflush(stdout);
}

void SimLog::error(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fprintf(stderr, "larksim: error: %s\n", bytes.constData());
    std::fflush(stderr);
}
