#include <AppComponents/log/LogMutex.h>

#include <system_error>

void LogMutex::lock()
{
    // Relaxed will do: only the thread that stored its own id can find it here.
    const std::thread::id self = std::this_thread::get_id();
    if (owner.load(std::memory_order_relaxed) == self)
        throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
    mutex.lock();
    owner.store(self, std::memory_order_relaxed);
}

void LogMutex::unlock()
{
    owner.store({}, std::memory_order_relaxed);
    mutex.unlock();
}
