#include "FrameSlot.h"

void FrameSlot::open(Delivery wanted)
{
    const std::lock_guard lock(mutex);
    delivery = wanted;
    waiting.reset();
    closed = false;
}

void FrameSlot::close()
{
    const std::lock_guard lock(mutex);
    closed = true;
    changed.notify_all();
}

PutResult FrameSlot::put(PooledFrame frame)
{
    std::unique_lock lock(mutex);
    if (delivery == Delivery::EveryFrame)
        changed.wait(lock, [this] { return closed || !waiting; });
    if (closed)
        return PutResult::Refused;
    const auto result = waiting ? PutResult::Replaced : PutResult::Stored;
    waiting = std::move(frame);
    changed.notify_all();
    return result;
}

PooledFrame FrameSlot::take()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return closed || waiting; });
    PooledFrame frame = std::move(waiting);
    changed.notify_all();
    return frame;
}
