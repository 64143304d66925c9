#ifndef SLEEPTOOL_H
#define SLEEPTOOL_H

class SleepTool
{
public:
    // Waits without blocking: the event loop is re-entered while waiting.
    static void myMSleep(int msec);
};

#endif // SLEEPTOOL_H
