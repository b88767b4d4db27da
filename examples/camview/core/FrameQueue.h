#pragma once

#include "FramePool.h"

#include <algorithm>
#include <vector>

/// A queue of frames in a ring of slots that is allocated once per capacity. Not thread-safe.
class FrameQueue
{
public:
    std::size_t size() const { return count; }
    std::size_t capacity() const { return ring.size(); }
    bool full() const { return count == ring.size(); }
    bool empty() const { return count == 0; }

    const CameraFrame& front() const { return *ring[first]; }

    void push(PooledFrame frame)
    {
        ring[(first + count) % ring.size()] = std::move(frame);
        ++count;
    }

    PooledFrame pop()
    {
        PooledFrame frame = std::move(ring[first]);
        first = (first + 1) % ring.size();
        --count;
        return frame;
    }

    void clear()
    {
        while (!empty())
            pop();
    }

    /// Keeps what is queued. The capacity never falls below that.
    void setCapacity(std::size_t wanted)
    {
        std::vector<PooledFrame> moved(std::max(wanted, count));
        const std::size_t kept = count;
        for (std::size_t i = 0; i < kept; ++i)
            moved[i] = pop();
        ring = std::move(moved);
        first = 0;
        count = kept;
    }

private:
    std::vector<PooledFrame> ring;
    std::size_t first = 0;
    std::size_t count = 0;
};
