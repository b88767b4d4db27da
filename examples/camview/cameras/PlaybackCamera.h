#pragma once

#include "SourceText.h"
#include "StreamingCamera.h"
#include "core/RecordingReader.h"

/// A recording of camview, played as the camera delivered it: with the recorded frame numbers
/// and camera times. A bit depth of 10 or 12 is told by the stamp file.
class PlaybackCamera : public StreamingCamera, private PlaybackControl
{
public:
    static std::unique_ptr<Camera> open(const SourceText& source);
    ~PlaybackCamera() override;

    CameraInfo info() const override;
    PlaybackControl* playback() override { return this; }

protected:
    CameraSettings adjusted(const CameraSettings& wanted) const override;
    bool fill(CameraFrame& frame, const CameraSettings& now) override;
    bool waitUntilDue(std::unique_lock<std::mutex>& lock) override;
    bool exposesOnItsOwn() const override { return false; }
    bool waitForMore() override;

private:
    PlaybackCamera(std::unique_ptr<RecordingReader> opened, bool playInLoop);
    void setPaused(bool on) override;
    void step() override;
    void setLoop(bool on) override;
    bool loops() const override;

    const std::unique_ptr<RecordingReader> reader;
    const Recording& recording; ///< the reader's
    std::size_t position = 0;   ///< of the frame that comes next
    // Guarded by the base's mutex:
    bool loop;
    bool paused = false;
    int steps = 0;
};
