#pragma once

#include "FramePool.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <stdexcept>

/// A part of the sensor, in sensor pixels, as the unmirrored sensor counts them.
struct SensorRegion {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const SensorRegion& other) const
    {
        return x == other.x && y == other.y && width == other.width && height == other.height;
    }
    bool operator!=(const SensorRegion& other) const { return !(*this == other); }
};

/// What can be set at a camera.
struct CameraSettings {
    SensorRegion region;
    int decimation = 1; ///< every n-th sample (of a mosaic: cell) in both directions, 1 or more
    int bitDepth = 8;   ///< bits per raw sample: 8, 10 or 12
    bool mirrorH = false;
    bool mirrorV = false;
    double exposureMs = 10.0;
    double gainDb = 0.0;
    double frameRate = 0.0; ///< frames per second; 0: as fast as the camera and its user can
};

/// What a camera is.
struct CameraInfo {
    QString name; ///< for people, and as the key under which settings are kept
    int sensorWidth = 0;
    int sensorHeight = 0;
    bool mosaic = false; ///< the sensor carries a Bayer mosaic
    /// Frames the source holds; 0 when it never ends.
    std::uint64_t frameCount = 0;
    /// The rate at which the source plays by itself, in frames per second.
    double naturalRate = 60.0;
    bool live = false;          ///< delivers in its own time, whoever waits
    bool fixedGeometry = false; ///< region, decimation, depth and mirroring cannot be set
};

/// Frames that the camera knows it exposed and that did not arrive whole.
struct CameraLosses {
    std::uint64_t lost = 0;       ///< never arrived
    std::uint64_t incomplete = 0; ///< arrived with holes and were thrown away
};

enum class StreamEvent {
    Ended,    ///< the source has no more frames
    Failed,   ///< the source broke down for good
    Vanished, ///< the camera is gone; it is looked for until it comes back or is stopped
    Returned  ///< a vanished camera streams again
};

/// Takes what a camera delivers. All calls come from the camera's thread, one at a time.
class FrameSink
{
public:
    virtual ~FrameSink() = default;
    virtual void frameArrived(PooledFrame frame) = 0;
    virtual void streamChanged(StreamEvent event, const QString& detail) = 0;
};

/// Running control of a source that replays something.
class PlaybackControl
{
public:
    virtual ~PlaybackControl() = default;
    virtual void setPaused(bool paused) = 0;
    virtual void step() = 0;             ///< delivers one frame while paused
    virtual void setLoop(bool loop) = 0; ///< goes on also after the end
    virtual bool loops() const = 0;
};

/// A source that cannot be opened; what() is one line for the user.
class CameraError : public std::runtime_error
{
public:
    explicit CameraError(const QString& message)
        : std::runtime_error(message.toStdString())
    {
    }
};

/// A camera, or what stands in for one. It is open from construction to destruction and streams
/// on a thread of its own between start and stop. All operations belong to one controlling
/// thread; they may be called while the camera streams.
class Camera
{
public:
    virtual ~Camera() = default;

    virtual CameraInfo info() const = 0;
    virtual CameraSettings settings() const = 0;

    /// Sets what is wanted as nearly as the camera can.
    /// \return the settings that hold from the next exposure on
    virtual CameraSettings apply(const CameraSettings& wanted) = 0;

    /// Streams to sink, which must live until stop() has returned.
    virtual void start(FrameSink& sink) = 0;
    /// No call reaches the sink after this has returned. A sink that blocks must let go first.
    virtual void stop() = 0;

    virtual CameraLosses losses() const { return {}; }
    virtual PlaybackControl* playback() { return nullptr; }

protected:
    Camera() = default;
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;
};
