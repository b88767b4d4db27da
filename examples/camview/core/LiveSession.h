#pragma once

#include "Camera.h"
#include "FrameProcessor.h"
#include "FrameSlot.h"
#include "Recorder.h"

#include <atomic>
#include <memory>
#include <thread>

/// What has become of the frames of a session so far.
struct SessionCounters {
    std::uint64_t received = 0;  ///< arrived whole from the camera
    std::uint64_t processed = 0; ///< became pictures
    std::uint64_t shown = 0;     ///< pictures that the user interface drew
    std::uint64_t dropped = 0;   ///< received, but a newer frame or the end took their place
    std::uint64_t recorded = 0;  ///< written by the recording that runs or ran last
    CameraLosses camera;         ///< exposed, but not received
};

/// Takes the results of a session.
class SessionObserver
{
public:
    virtual ~SessionObserver() = default;
    /// Called on the processing thread; the frame is valid until it returns.
    virtual void pictureReady(const ProcessedFrame& frame) = 0;
    /// Called on the camera's or the processing thread.
    virtual void streamChanged(StreamEvent event, const QString& detail) = 0;
};

/// A camera and the processing of its frames, each on a thread of its own. The observer must
/// outlive the session. All operations belong to one controlling thread unless noted.
class LiveSession : private FrameSink
{
public:
    LiveSession(std::unique_ptr<Camera> what, SessionObserver& who);
    ~LiveSession() override;

    Camera& camera() { return *source; }
    /// Records the raw frames as they come from the camera, whatever becomes of them here.
    Recorder& recorder() { return recording; }

    /// Holds from the next frame on. Any thread may call it.
    void setProcessing(const ProcessingSettings& settings);

    /// Makes the raw samples, as the camera sent them, part of the pictures from the next frame
    /// on (ProcessedFrame::untouched), at the price of a copy. Any thread may call it.
    void keepRaw(bool on) { rawWanted = on; }

    /// Starts both threads.
    /// \param limit the stream ends by itself after so many pictures; 0: never
    void start(Delivery how, std::uint64_t limit = 0);
    /// Returns when both threads have ended; no call reaches the observer afterwards.
    void stop();

    /// Any thread may call these two.
    SessionCounters counters() const;
    void countShown() { ++shown; }

private:
    void frameArrived(PooledFrame frame) override;
    void streamChanged(StreamEvent event, const QString& detail) override;
    void processFrames();
    void processFrame(CameraFrame& frame);
    void adoptSettings();
    bool limitReached() const;

    const std::unique_ptr<Camera> source;
    SessionObserver& observer;
    Recorder recording;
    FrameSlot slot;
    FrameProcessor processor;
    std::thread processing;

    std::mutex settingsMutex;
    ProcessingSettings wanted;
    bool settingsChanged = false;

    Delivery delivery = Delivery::NewestWins;
    std::uint64_t frameLimit = 0;

    std::atomic<bool> rawWanted{false};
    CameraFrame rawCopy;

    std::atomic<std::uint64_t> received{0};
    std::atomic<std::uint64_t> processed{0};
    std::atomic<std::uint64_t> shown{0};
    std::atomic<std::uint64_t> dropped{0};
};
