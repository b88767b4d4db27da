#pragma once

#include <AppComponents/frames/FrameEx2.h>

#include <array>
#include <vector>

/// Histograms of a raw frame and of the picture made of it, in the form that HistogramBox takes:
/// all arrays have one size.
struct Histograms {
    std::vector<int> raw; ///< 256 bins for 8-bit samples, else 1024
    /// Grey level in the first, or red, green and blue; 8-bit levels in the first 256 bins.
    std::array<std::vector<int>, 3> channels;
    bool colour = false;
    double meanLevel = 0; ///< mean of the raw samples as a fraction of full scale

    /// Counts all samples of a raw frame.
    void countRaw(const FrameEx2& frame);
    /// Counts all pixels of a finished picture.
    void countPicture(const FrameEx2& picture);

private:
    std::vector<int> levels;
};
