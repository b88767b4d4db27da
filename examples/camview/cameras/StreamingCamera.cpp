#include "StreamingCamera.h"

#include <cmath>

using namespace std::chrono_literals;

namespace
{

// As a camera's driver has buffers, a late source catches up by this many frames; what is later
// than that was never exposed.
constexpr int framesOfSlack = 16;

// The camera's clock of a source that delivers as fast as it can.
constexpr double unpacedRate = 60;

std::chrono::nanoseconds period(double frameRate)
{
    return std::chrono::nanoseconds(std::llround(1e9 / frameRate));
}

} // namespace

StreamingCamera::~StreamingCamera() = default;

CameraSettings StreamingCamera::settings() const
{
    const std::lock_guard lock(mutex);
    return current;
}

CameraSettings StreamingCamera::apply(const CameraSettings& wanted)
{
    const CameraSettings possible = adjusted(wanted);
    const std::lock_guard lock(mutex);
    if (possible.frameRate != current.frameRate) {
        due = hostNow();
        ++paceNumber;
    }
    current = possible;
    wake.notify_all();
    return current;
}

CameraLosses StreamingCamera::losses() const
{
    const std::lock_guard lock(mutex);
    return {missedExposures, 0};
}

void StreamingCamera::start(FrameSink& sink)
{
    stop();
    stopping = false;
    due = hostNow();
    thread = std::thread([this, &sink] { run(sink); });
}

void StreamingCamera::stop()
{
    {
        const std::lock_guard lock(mutex);
        stopping = true;
        wake.notify_all();
    }
    if (thread.joinable())
        thread.join();
}

void StreamingCamera::run(FrameSink& sink)
{
    try {
        while (deliverOne(sink)) {
        }
    } catch (const std::exception& error) {
        sink.streamChanged(StreamEvent::Failed, QString::fromUtf8(error.what()));
    }
}

bool StreamingCamera::deliverOne(FrameSink& sink)
{
    PooledFrame frame = pool.take();
    CameraSettings now;
    {
        std::unique_lock lock(mutex);
        if (!waitUntilDue(lock))
            return false;
        now = current;
        clock += period(now.frameRate > 0 ? now.frameRate : unpacedRate);
        frame->stamp.number = nextNumber++;
        frame->stamp.cameraTime = clock;
    }
    frame->raw.invalidateFrame();
    if (!fill(*frame, now)) {
        sink.streamChanged(StreamEvent::Ended, QString());
        return waitForMore();
    }
    frame->stamp.hostTime = hostNow();
    sink.frameArrived(std::move(frame));
    return true;
}

bool StreamingCamera::waitUntilDue(std::unique_lock<std::mutex>& lock)
{
    while (!stopping && current.frameRate > 0) {
        scheduleNext();
        const int pace = paceNumber;
        const std::chrono::steady_clock::time_point moment(due);
        wake.wait_until(lock, moment, [&] { return stopping || pace != paceNumber; });
        if (pace == paceNumber)
            break;
    }
    return !stopping;
}

void StreamingCamera::scheduleNext()
{
    const auto step = period(current.frameRate);
    due += step;
    const auto late = hostNow() - due;
    if (late <= framesOfSlack * step)
        return;
    if (!exposesOnItsOwn()) {
        due += late;
        return;
    }
    const auto missed = late / step;
    due += missed * step;
    clock += missed * step;
    nextNumber += static_cast<std::uint64_t>(missed);
    missedExposures += static_cast<std::uint64_t>(missed);
}
