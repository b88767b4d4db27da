#include <AppComponents/log/LogMutex.h>

#include <system_error>

void LogMutex::lock()
{
    if (isHeldHere())
        throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
    mutex.lock();
    owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
}

void LogMutex::unlock()
{
    owner.store({}, std::memory_order_relaxed);
    mutex.unlock();
}

bool LogMutex::isHeldHere() const
{
    // Relaxed will do: only the thread that stored its own id can find it here.
    return owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
}
