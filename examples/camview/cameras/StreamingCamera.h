#pragma once

#include "core/Camera.h"

#include <condition_variable>
#include <mutex>
#include <thread>

/// Base of the sources that make their own frames: runs the thread, keeps the pace, and stamps
/// each frame. A derived class ends its destructor's first line with stop().
class StreamingCamera : public Camera
{
public:
    ~StreamingCamera() override;

    CameraSettings settings() const override;
    CameraSettings apply(const CameraSettings& wanted) override;
    void start(FrameSink& sink) override;
    void stop() override;
    CameraLosses losses() const override;

protected:
    explicit StreamingCamera(const CameraSettings& initial)
        : current(initial)
    {
    }

    /// The nearest settings that the source can do.
    virtual CameraSettings adjusted(const CameraSettings& wanted) const = 0;

    /// Makes exposure number \p frame.stamp.number under \p now, on the camera's thread.
    /// \return false when the source has no more frames
    /// \throws std::runtime_error when the source broke down
    virtual bool fill(CameraFrame& frame, const CameraSettings& now) = 0;

    /// Called on the camera's thread before each frame; returns once the frame is due.
    /// The mutex is held. \return false when the stream is being stopped
    virtual bool waitUntilDue(std::unique_lock<std::mutex>& lock);

    /// Whether exposures go on when nobody takes them, as a sensor's do and a file's do not.
    virtual bool exposesOnItsOwn() const { return true; }

    /// Called on the camera's thread after the end was told; waits as long as there may be more
    /// frames. \return whether there are
    virtual bool waitForMore() { return false; }

    mutable std::mutex mutex;
    std::condition_variable wake;
    bool stopping = false;

private:
    void run(FrameSink& sink);
    bool deliverOne(FrameSink& sink);
    void scheduleNext();

    CameraSettings current;
    std::uint64_t nextNumber = 0;
    std::uint64_t missedExposures = 0;
    std::chrono::nanoseconds due{0};   ///< of the exposure that was waited for last, host time
    std::chrono::nanoseconds clock{0}; ///< of that exposure, the camera's own time
    int paceNumber = 0;                ///< counts the changes of the frame rate
    FramePool pool;
    std::thread thread;
};
