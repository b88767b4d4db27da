#pragma once

#include "CameraFrame.h"

#include <memory>
#include <mutex>
#include <vector>

/// Keeps frames for re-use, with their buffers and the frames that processing derived from
/// them, so that a steady stream allocates nothing. Any thread may take and give back.
class FramePool
{
    struct Shelf {
        std::mutex mutex;
        std::vector<std::unique_ptr<CameraFrame>> idle;
    };

    /// Puts a frame back on the shelf that it came from; keeps that shelf alive.
    class Recycler
    {
    public:
        Recycler() = default;
        explicit Recycler(std::shared_ptr<Shelf> shelf)
            : home(std::move(shelf))
        {
        }
        void operator()(CameraFrame* frame) const;

    private:
        std::shared_ptr<Shelf> home;
    };

public:
    /// A frame with one owner at a time; it returns to its pool when the owner lets it go.
    using Frame = std::unique_ptr<CameraFrame, Recycler>;

    FramePool();

    /// The frame given back last, whose memory is the warmest, or a new one when all are out.
    /// Its content is left from its last use.
    Frame take();

private:
    std::shared_ptr<Shelf> shelf;
};

using PooledFrame = FramePool::Frame;
