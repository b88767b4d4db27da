#include "FramePool.h"

FramePool::FramePool()
    : shelf(std::make_shared<Shelf>())
{
}

FramePool::Frame FramePool::take()
{
    {
        const std::lock_guard lock(shelf->mutex);
        if (!shelf->idle.empty()) {
            Frame frame(shelf->idle.back().release(), Recycler(shelf));
            shelf->idle.pop_back();
            return frame;
        }
    }
    return Frame(std::make_unique<CameraFrame>().release(), Recycler(shelf));
}

void FramePool::Recycler::operator()(CameraFrame* frame) const
{
    std::unique_ptr<CameraFrame> owned(frame);
    const std::lock_guard lock(home->mutex);
    home->idle.push_back(std::move(owned));
}
