#pragma once

#include <atomic>
#include <mutex>
#include <thread>

/// The lock of a log. Not re-entrant: where a thread asks for it a second time, which a processor
/// does that calls back into its log, the lock throws instead of waiting for ever.
class LogMutex
{
public:
    /// \throws std::system_error (resource_deadlock_would_occur) if this thread holds the lock.
    void lock();
    void unlock();

    /// Whether this thread holds the lock.
    bool isHeldHere() const;

private:
    std::mutex mutex;
    std::atomic<std::thread::id> owner = {}; // the holder, none by default
};
