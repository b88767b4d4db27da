#include <AppComponents/log/CGraphicValues.h>

#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/LogMutex.h>

#include <algorithm>
#include <mutex>

CGraphicValues::CGraphicValues() = default;

CGraphicValues::CGraphicValues(CDelayedValueSequenceLog* log)
    : owner(log)
{
}

CGraphicValues::CGraphicValues(const CGraphicValues& other)
    : CValueSequenceWriter(other)
{
    copyValues(other);
}

// The holders of this stream stay its own, so the base is left alone.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
CGraphicValues& CGraphicValues::operator=(const CGraphicValues& other)
{
    if (this != &other)
        copyValues(other);
    return *this;
}

CGraphicValues::~CGraphicValues()
{
    if (!owner)
        return;
    try {
        std::unique_lock lock(*owner->mutex, std::defer_lock);
        if (!owner->mutex->isHeldHere()) // as it is while the log deletes the stream
            lock.lock();
        owner->notifyProcessor();
    } catch (...) {
        // What the application's processor throws must not end the program here.
    }
}

void CGraphicValues::write(double value)
{
    if (!owner) {
        store(value);
        return;
    }
    const std::lock_guard lock(*owner->mutex);
    store(value);
    owner->notifyProcessor();
}

void CGraphicValues::store(double value)
{
    if (empty) {
        empty = false;
        std::fill(std::begin(values), std::end(values), value);
    }
    values[iterStart] = value;
    iterStart = (iterStart + 1) % arraySize;
}

void CGraphicValues::copyValues(const CGraphicValues& other)
{
    if (other.empty)
        return;
    std::copy(std::begin(other.values), std::end(other.values), std::begin(values));
    iterStart = other.iterStart;
    empty = false;
}
