#ifndef SCRIPTWATCHDOG_H
#define SCRIPTWATCHDOG_H

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

// Watches calls into a script from a thread of its own: a script that never returns
// holds the GUI thread, so only another thread can ask the engine to stop it.
//
// arm() and disarm() bracket every call and are two atomic stores, cheap enough for
// each received chunk. While enabled, the thread looks every 10 ms; a call armed for
// longer than the limit gets expire() once, on the watchdog's thread: it must be
// thread-safe (QJSEngine::setInterrupted is). While disabled the thread sleeps.
class ScriptWatchdog
{
public:
    ScriptWatchdog(int limitMs, std::function<void()> expire);
    ~ScriptWatchdog();

    void setEnabled(bool enabled);
    void arm();
    // true when the call ended in time; false when it was expired, and then only once
    // expire() has returned, so the caller may undo what expire() did
    bool disarm();

private:
    void run();

    const int m_limitMs;
    const std::function<void()> m_expire;
    std::atomic<long long> m_armedAt{0}; // steady clock in ms, 0 when disarmed
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_enabled = false;
    bool m_quit = false;
    std::thread m_thread;
};

#endif // SCRIPTWATCHDOG_H
