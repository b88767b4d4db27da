#pragma once

#include <AppComponents/imgproc/ImgCorrectionSettings.h>

#include <chrono>

/// Everything the user chooses about the way from raw samples to the shown picture.
struct ProcessingSettings {
    /// Method, switches, tone, mirroring and colour, as the settings file keeps them.
    ImgCorrectionSettings correction;
    /// The picture is made of the mean of this many frames, 1 ... RingFrameBuffer::maxFrames.
    int averageFrames = 1;
    /// Each frame gets the tone table that best spreads its own histogram. Methods 1 and up.
    bool autoStretch = false;
    /// A mosaic becomes a grey picture through the library's mosaic-to-grey conversion instead
    /// of the colour stages.
    bool greyFromMosaic = false;
    /// Histograms are taken at most this often; 0 takes them of every frame.
    std::chrono::milliseconds histogramPeriod{0};
};
