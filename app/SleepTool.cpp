#include "SleepTool.h"

#include <QCoreApplication>
#include <QElapsedTimer>

void SleepTool::myMSleep(int msec)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < msec)
        QCoreApplication::processEvents(QEventLoop::AllEvents, msec);
}
