#include "PlaybackCamera.h"

#include <algorithm>

namespace
{

CameraSettings settingsOf(const Recording& recording, std::size_t frame)
{
    const _FrameParams& params = recording.entries[frame].params;
    CameraSettings settings;
    settings.region = {params.posX, params.posY, params.width, params.height};
    settings.decimation = params.decimation;
    settings.bitDepth = recording.layout.bitDepth;
    settings.mirrorH = params.mirrorH;
    settings.mirrorV = params.mirrorV;
    return settings;
}

double recordedRate(const Recording& recording)
{
    constexpr double usual = 25;
    if (recording.entries.size() < 2)
        return usual;
    const auto span =
        recording.entries.back().stamp.hostTime - recording.entries.front().stamp.hostTime;
    const double seconds = std::chrono::duration<double>(span).count();
    return seconds > 0 ? std::clamp(double(recording.entries.size() - 1) / seconds, 0.1, 1000.0)
                       : usual;
}

} // namespace

std::unique_ptr<Camera> PlaybackCamera::open(const SourceText& source)
{
    source.allowOnly({"loop"});
    source.requirePath();
    try {
        auto reader = std::make_unique<RecordingReader>(source.path());
        return std::unique_ptr<Camera>(
            new PlaybackCamera(std::move(reader), source.flag("loop", false)));
    } catch (const RecordingError& error) {
        throw CameraError(QString::fromUtf8(error.what()));
    }
}

PlaybackCamera::PlaybackCamera(std::unique_ptr<RecordingReader> opened, bool playInLoop)
    : StreamingCamera(settingsOf(opened->recording(), 0))
    , reader(std::move(opened))
    , recording(reader->recording())
    , loop(playInLoop)
{
}

PlaybackCamera::~PlaybackCamera()
{
    stop();
}

CameraInfo PlaybackCamera::info() const
{
    CameraInfo info;
    info.name = "play " + reader->name();
    for (const Recording::Entry& entry : recording.entries) {
        info.sensorWidth = std::max(info.sensorWidth, entry.params.posX + entry.params.width);
        info.sensorHeight = std::max(info.sensorHeight, entry.params.posY + entry.params.height);
    }
    info.mosaic = recording.layout.mosaic;
    const std::lock_guard lock(mutex);
    info.frameCount = loop ? 0 : recording.entries.size();
    info.naturalRate = recordedRate(recording);
    info.fixedGeometry = true;
    return info;
}

CameraSettings PlaybackCamera::adjusted(const CameraSettings& wanted) const
{
    CameraSettings fixed = settingsOf(recording, 0);
    fixed.frameRate = std::clamp(wanted.frameRate, 0.0, 10000.0);
    return fixed;
}

bool PlaybackCamera::fill(CameraFrame& frame, const CameraSettings&)
{
    if (position == recording.entries.size()) {
        const std::lock_guard lock(mutex);
        if (!loop)
            return false;
        position = 0;
    }
    try {
        reader->read(position, frame);
    } catch (const RecordingError& error) {
        throw CameraError(QString::fromUtf8(error.what()));
    }
    ++position;
    return true;
}

bool PlaybackCamera::waitUntilDue(std::unique_lock<std::mutex>& lock)
{
    if (paused) {
        wake.wait(lock, [this] { return stopping || !paused || steps > 0; });
        if (steps > 0) {
            --steps;
            return !stopping;
        }
    }
    return StreamingCamera::waitUntilDue(lock);
}

void PlaybackCamera::setPaused(bool on)
{
    const std::lock_guard lock(mutex);
    paused = on;
    steps = 0;
    wake.notify_all();
}

void PlaybackCamera::step()
{
    const std::lock_guard lock(mutex);
    if (paused)
        ++steps;
    wake.notify_all();
}

void PlaybackCamera::setLoop(bool on)
{
    const std::lock_guard lock(mutex);
    loop = on;
    wake.notify_all();
}

bool PlaybackCamera::loops() const
{
    const std::lock_guard lock(mutex);
    return loop;
}

bool PlaybackCamera::waitForMore()
{
    std::unique_lock lock(mutex);
    wake.wait(lock, [this] { return stopping || loop; });
    return !stopping;
}
