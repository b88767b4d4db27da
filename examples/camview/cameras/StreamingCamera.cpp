#include "StreamingCamera.h"

#include <cmath>

using namespace std::chrono_literals;

namespace
{

// As a camera's own memory would, a late source catches up by this many frames; what is later
// than that was never exposed.
constexpr int framesOfSlack = 3;

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
        frame->stamp.number = nextNumber++;
    }
    const auto exposures = static_cast<std::int64_t>(frame->stamp.number);
    frame->stamp.cameraTime = now.frameRate > 0 ? period(now.frameRate) * exposures : hostNow();
    frame->raw.invalidateFrame();
    if (!fill(*frame, now)) {
        sink.streamChanged(StreamEvent::Ended, QString());
        return false;
    }
    frame->stamp.hostTime = hostNow();
    sink.frameArrived(std::move(frame));
    return true;
}

bool StreamingCamera::waitUntilDue(std::unique_lock<std::mutex>& lock)
{
    if (current.frameRate <= 0)
        return !stopping;
    const auto step = period(current.frameRate);
    due += step;
    const auto late = hostNow() - due;
    if (late > framesOfSlack * step) {
        const auto missed = late / step;
        due += missed * step;
        nextNumber += static_cast<std::uint64_t>(missed);
        missedExposures += static_cast<std::uint64_t>(missed);
    }
    const std::chrono::steady_clock::time_point moment(due);
    wake.wait_until(lock, moment, [this] { return stopping; });
    return !stopping;
}
