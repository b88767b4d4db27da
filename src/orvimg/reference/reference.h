#pragma once

#include <cstddef>
#include <cstdint>

/// The primitives written straight from their formulas, slow and obvious. The fast kernels are
/// checked against them. Arguments are trusted: pointers are valid and sizes positive.
namespace orvimg::reference
{

void histogram(const std::uint16_t* samples, std::size_t count, std::size_t levels, int* bins);

/// Column and row of the red sample within a 2x2 cell; blue lies on the other diagonal end.
struct RedPosition {
    int column;
    int row;
};

struct WhiteBalanceGains {
    double red;
    double blue;
};

WhiteBalanceGains whiteBalance(const std::uint8_t* mosaic, int width, int height, RedPosition red);

struct ColorSettings {
    double redGain = 1.0;
    double redOffset = 0.0;
    double greenGain = 1.0;
    double greenOffset = 0.0;
    double blueGain = 1.0;
    double blueOffset = 0.0;
    double hue = 0.0; ///< degrees
    double saturation = 1.0;
    double lightness = 1.0;
    double offset = 0.0;
};

void colorCorrection(const ColorSettings& settings, std::uint8_t* rgb, std::size_t pixels);

/// \param channels 1: a mosaic, neighbours two samples apart; 3: interleaved channels,
///   neighbours one pixel apart.
void median(std::uint8_t* picture, int width, int height, int channels);
void median(std::uint16_t* picture, int width, int height, int channels);

} // namespace orvimg::reference
