#pragma once

#include "FramePool.h"

#include <condition_variable>
#include <mutex>

/// What happens to a frame that arrives while the one before it still waits.
enum class Delivery {
    NewestWins, ///< live: the waiting frame is dropped, the camera never waits
    EveryFrame  ///< batch: the source waits until the frame has been taken
};

enum class PutResult {
    Stored,   ///< the frame waits to be taken
    Replaced, ///< so does it, and the one before was dropped
    Refused   ///< the slot is closed
};

/// Hands frames from the camera's thread to the processing thread. It holds one frame, so a
/// slow reader can never make a queue grow.
class FrameSlot
{
public:
    void open(Delivery delivery);
    /// No more frames come. A waiting frame can still be taken; everyone who waits is woken.
    void close();

    /// Waits for room where every frame counts. \return what became of the frames
    PutResult put(PooledFrame frame);
    /// Waits for a frame. \return null when the slot is closed and empty
    PooledFrame take();

private:
    std::mutex mutex;
    std::condition_variable changed;
    PooledFrame waiting;
    Delivery delivery = Delivery::NewestWins;
    bool closed = true;
};
