#pragma once

#include <AppComponents/frames/FrameEx2.h>

#include <chrono>
#include <cstdint>

/// When a frame was taken, and how the camera counts it.
struct FrameStamp {
    /// The camera's own frame number. It rises by one per exposure, so a gap means frames that
    /// were exposed and never arrived.
    std::uint64_t number = 0;
    /// The camera's clock at the exposure. Its origin is the camera's own (often power-on):
    /// only differences between frames of one stream mean something.
    std::chrono::nanoseconds cameraTime{0};
    /// The host's steady clock when the complete frame had arrived, comparable with
    /// std::chrono::steady_clock::now() of this run of the program.
    std::chrono::nanoseconds hostTime{0};
};

/// One camera picture on its way through the application: the raw samples, in the library's
/// frame record, beside what the camera says about them.
struct CameraFrame {
    FrameEx2 raw;
    FrameStamp stamp;
    /// The samples carry a Bayer mosaic, whose phase follows from the mirror flags of raw.
    bool mosaic = false;
};

/// Makes a frame hold the picture of another one; frames derived from that stay behind.
void copyPixels(const FrameEx2& from, FrameEx2& to);

/// Copies the raw samples and what belongs to them; frames derived from them stay behind.
void copyRaw(const CameraFrame& from, CameraFrame& to);

/// The host time to stamp a frame with.
inline std::chrono::nanoseconds hostNow()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}
