#include "PlaybackCamera.h"

#include <QFileInfo>
#include <QtEndian>

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

// The image engine uses samples as table indices: a damaged file must not hold larger ones.
void limitSamples(FrameEx2& frame)
{
    auto* sample = reinterpret_cast<quint16*>(frame.getImageBuffer());
    const auto largest = static_cast<quint16>((1 << frame.rawBitDepth) - 1);
    const int count = frame.imgWidth * frame.imgHeight;
    for (int i = 0; i < count; ++i)
        sample[i] = std::min(qFromLittleEndian(sample[i]), largest);
}

} // namespace

std::unique_ptr<Camera> PlaybackCamera::open(const SourceText& source)
{
    source.allowOnly({"loop"});
    source.requirePath();
    const QString base = recordingBaseOf(source.path());
    try {
        return std::unique_ptr<Camera>(new PlaybackCamera(Recording::open(base), dataFileOf(base),
                                                          source.flag("loop", false)));
    } catch (const RecordingError& error) {
        throw CameraError(QString::fromUtf8(error.what()));
    }
}

PlaybackCamera::PlaybackCamera(Recording what, const QString& dataFile, bool playInLoop)
    : StreamingCamera(settingsOf(what, 0))
    , recording(std::move(what))
    , data(dataFile)
    , loop(playInLoop)
{
    if (!data.open(QIODevice::ReadOnly))
        throw RecordingError(QString("%1: %2").arg(dataFile, data.errorString()));
}

PlaybackCamera::~PlaybackCamera()
{
    stop();
}

CameraInfo PlaybackCamera::info() const
{
    CameraInfo info;
    info.name = "play " + QFileInfo(data.fileName()).completeBaseName();
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
    const Recording::Entry& entry = recording.entries[position];
    const qint64 bytes = recording.layout.frameBytes();
    _FrameParams params = entry.params;
    frame.mosaic = recording.layout.mosaic;
    frame.stamp = entry.stamp;
    frame.raw.InitFrame(params, static_cast<unsigned char>(recording.layout.bitDepth));
    auto* out = reinterpret_cast<char*>(frame.raw.getImageBuffer());
    if (!data.seek(qint64(position) * bytes) || data.read(out, bytes) != bytes)
        throw CameraError(QString("%1: %2").arg(data.fileName(), data.errorString()));
    if (recording.layout.bitDepth > 8)
        limitSamples(frame.raw);
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
