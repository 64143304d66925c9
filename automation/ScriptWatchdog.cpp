#include "ScriptWatchdog.h"

#include <chrono>

static long long nowMs()
{
    using namespace std::chrono;
    // never 0, which means disarmed
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count() + 1;
}

ScriptWatchdog::ScriptWatchdog(int limitMs, std::function<void()> expire)
    : m_limitMs(limitMs)
    , m_expire(std::move(expire))
    , m_thread(&ScriptWatchdog::run, this)
{
}

ScriptWatchdog::~ScriptWatchdog()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void ScriptWatchdog::setEnabled(bool enabled)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_enabled = enabled;
    }
    m_wake.notify_all();
}

void ScriptWatchdog::arm()
{
    m_armedAt.store(nowMs());
}

bool ScriptWatchdog::disarm()
{
    if (m_armedAt.exchange(0) != 0)
        return true;
    // the watchdog took the call and expires it under this lock
    std::lock_guard<std::mutex> lock(m_mutex);
    return false;
}

void ScriptWatchdog::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_quit) {
        if (!m_enabled) {
            m_wake.wait(lock);
            continue;
        }
        m_wake.wait_for(lock, std::chrono::milliseconds(10));
        long long since = m_armedAt.load();
        // taken by exchange, so that either this thread or disarm() ends the call
        if (since != 0 && nowMs() - since > m_limitMs && m_armedAt.compare_exchange_strong(since, 0))
            m_expire();
    }
}
