#include "GenicamCamera.h"

#include <cstring>

using namespace std::chrono_literals;

namespace
{

constexpr auto searchPause = 500ms;
constexpr std::uint64_t shortIdCount = 65535; // 1 ... 65535

bool sameGeometry(const CameraSettings& a, const CameraSettings& b)
{
    return a.region == b.region && a.decimation == b.decimation && a.bitDepth == b.bitDepth &&
           a.mirrorH == b.mirrorH && a.mirrorV == b.mirrorV;
}

int parity(int value)
{
    return value & 1;
}

} // namespace

GenicamCamera::GenicamCamera(const QString& name)
    : device(std::make_unique<GenicamDevice>(name))
    , current(device->settings())
    , description(device->info())
    , shortIds(device->hasShortFrameIds())
{
}

GenicamCamera::~GenicamCamera()
{
    stop();
}

CameraSettings GenicamCamera::settings() const
{
    const std::lock_guard lock(mutex);
    return current;
}

CameraSettings GenicamCamera::apply(const CameraSettings& wanted)
{
    // The size of pictures cannot change under a stream.
    const bool restart = thread.joinable() && !sameGeometry(wanted, settings());
    if (restart)
        stop();
    try {
        set(wanted);
    } catch (const CameraError&) {
        if (restart)
            start(*sink);
        throw;
    }
    if (restart)
        start(*sink);
    return settings();
}

void GenicamCamera::set(const CameraSettings& wanted)
{
    const std::lock_guard lock(mutex);
    if (!device) {
        current = wanted; // applied when the camera is back
        return;
    }
    if (!sameGeometry(wanted, current))
        device->applyGeometry(wanted);
    device->applyExposure(wanted);
    current = device->settings();
}

CameraLosses GenicamCamera::losses() const
{
    const std::lock_guard lock(mutex);
    return lost;
}

void GenicamCamera::start(FrameSink& to)
{
    stop();
    sink = &to;
    stopping = false;
    thread = std::thread([this] { run(); });
}

void GenicamCamera::stop()
{
    {
        const std::lock_guard lock(mutex);
        stopping = true;
        wake.notify_all();
    }
    if (thread.joinable())
        thread.join();
}

void GenicamCamera::run()
{
    for (;;) {
        // Also when a stream starts: the camera may have vanished from the one before.
        if (!device) {
            if (!findAgain())
                return;
            sink->streamChanged(StreamEvent::Returned, description.name);
        }
        QString reason = "the camera does not answer";
        try {
            receiveFrames();
        } catch (const CameraError& error) {
            reason = QString::fromUtf8(error.what());
        }
        {
            const std::lock_guard lock(mutex);
            if (stopping)
                return;
            device.reset();
        }
        sink->streamChanged(StreamEvent::Vanished, reason);
    }
}

// Returns when the camera is lost or the stream is to stop.
void GenicamCamera::receiveFrames()
{
    previousId = 0;
    {
        const std::lock_guard lock(mutex);
        device->startStream();
    }
    GenicamDevice& source = *device; // changed by this thread only
    const auto goesOn = [&] {
        const std::lock_guard lock(mutex);
        return !stopping && !source.isLost();
    };
    while (goesOn()) {
        GenicamImage image{};
        const GenicamDevice::Receipt receipt = source.receive(image);
        if (receipt == GenicamDevice::Receipt::Nothing)
            continue;
        countId(source.lastId(), receipt == GenicamDevice::Receipt::Image);
        if (receipt == GenicamDevice::Receipt::Image)
            deliver(image);
    }
    const std::lock_guard lock(mutex);
    source.stopStream();
}

bool GenicamCamera::findAgain()
{
    std::unique_lock lock(mutex);
    while (!wake.wait_for(lock, searchPause, [this] { return stopping; })) {
        const CameraSettings wanted = current;
        lock.unlock();
        std::unique_ptr<GenicamDevice> found;
        try {
            found = std::make_unique<GenicamDevice>(description.name);
            found->applyGeometry(wanted);
            found->applyExposure(wanted);
        } catch (const CameraError&) {
            found.reset(); // still gone, or not ready yet
        }
        lock.lock();
        if (found) {
            device = std::move(found);
            current = device->settings();
            return true;
        }
    }
    return false;
}

// Gaps in the camera's own numbers are frames that never arrived.
void GenicamCamera::countId(std::uint64_t id, bool complete)
{
    std::uint64_t step = 1;
    if (previousId != 0 && id != previousId)
        step = shortIds && id < previousId ? id + shortIdCount - previousId : id - previousId;
    previousId = id;
    number += step;
    const std::lock_guard lock(mutex);
    lost.lost += step - 1;
    if (!complete)
        ++lost.incomplete;
}

void GenicamCamera::deliver(const GenicamImage& image)
{
    PooledFrame frame = pool.take();
    frame->stamp = {number, image.time, hostNow()};
    const void* samples = image.data;
    if (image.format->bitDepth > 8) {
        words.resize(std::size_t(image.columns) * std::size_t(image.rows));
        unpackSamples(*image.format, image.data, words.size(), words.data());
        samples = words.data();
    }
    copyInPhase(image, samples, settings(), *frame);
    sink->frameArrived(std::move(frame));
}

void copyInPhase(const GenicamImage& image, const void* samples, const CameraSettings& settings,
                 CameraFrame& frame)
{
    int skipX = 0;
    int skipY = 0;
    if (image.format->phase) {
        const BayerPhase wanted = BayerPhase::ofMirroring(settings.mirrorH, settings.mirrorV);
        skipX = parity(image.format->phase->redX - wanted.redX);
        skipY = parity(image.format->phase->redY - wanted.redY);
    }
    // Whole cells, and rows that QImage need not pad, unless the picture is smaller than that.
    const int columns = std::max(1, (image.columns - skipX) & ~3);
    const int rows = std::max(1, (image.rows - skipY) & ~1);

    const int decimation = settings.decimation;
    _FrameParams params{};
    params.width = columns * decimation;
    params.height = rows * decimation;
    // Mirrored, the first column is the last one of the region.
    params.posX =
        image.x + (settings.mirrorH ? image.columns - skipX - columns : skipX) * decimation;
    params.posY = image.y + (settings.mirrorV ? image.rows - skipY - rows : skipY) * decimation;
    params.decimation = decimation;
    params.bitsPerPixel = 8;
    params.mirrorH = settings.mirrorH;
    params.mirrorV = settings.mirrorV;
    frame.mosaic = image.format->phase.has_value();
    frame.raw.invalidateFrame();
    frame.raw.InitFrame(params, static_cast<unsigned char>(image.format->bitDepth));

    const std::size_t sampleBytes = image.format->bitDepth > 8 ? 2 : 1;
    const std::size_t rowBytes = std::size_t(columns) * sampleBytes;
    const auto* from = static_cast<const std::uint8_t*>(samples);
    unsigned char* to = frame.raw.getImageBuffer();
    for (int y = 0; y < rows; ++y) {
        const std::size_t first = std::size_t(y + skipY) * std::size_t(image.columns) + skipX;
        std::memcpy(to + std::size_t(y) * rowBytes, from + first * sampleBytes, rowBytes);
    }
}
