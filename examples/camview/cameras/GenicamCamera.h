#pragma once

#include "GenicamDevice.h"

#include <condition_variable>
#include <mutex>
#include <thread>

/// A GigE Vision or USB3 Vision camera. One that vanishes in mid-stream is looked for until it
/// comes back, and then streams on under the same settings; frame numbers go on rising.
class GenicamCamera : public Camera
{
public:
    /// \param name as GenicamDevice::list() gives it, or an address; empty: the first one found
    explicit GenicamCamera(const QString& name);
    ~GenicamCamera() override;

    CameraInfo info() const override { return description; }
    CameraSettings settings() const override;
    CameraSettings apply(const CameraSettings& wanted) override;
    void start(FrameSink& to) override;
    void stop() override;
    CameraLosses losses() const override;

private:
    void set(const CameraSettings& wanted);
    void run();
    void receiveFrames();
    bool findAgain();
    void countId(std::uint64_t id, bool complete);
    void deliver(const GenicamImage& image);

    mutable std::mutex mutex; ///< guards what follows
    std::condition_variable wake;
    std::unique_ptr<GenicamDevice> device; ///< null while the camera is gone
    CameraSettings current;
    CameraLosses lost;
    bool stopping = false;

    const CameraInfo description;

    // Used by the camera's thread alone:
    FrameSink* sink = nullptr;
    FramePool pool;
    std::vector<std::uint16_t> words;
    std::uint64_t number = 0;
    std::uint64_t previousId = 0; ///< the camera's number of the last frame; 0 before the first
    bool shortIds = false;

    std::thread thread;
};

/// Copies a picture into a frame, without the columns and rows at its edges that would shift
/// the mosaic out of the phase that the frame's mirror flags stand for.
/// \param samples words for formats of more than 8 bits, else bytes; image.columns a row
void copyInPhase(const GenicamImage& image, const void* samples, const CameraSettings& settings,
                 CameraFrame& frame);
