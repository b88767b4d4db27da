#pragma once

#include <cstddef>

namespace orvimg
{

/// A band of picture rows that one thread filters in place.
template <typename Sample>
struct MedianBand {
    Sample* picture;         ///< the whole picture
    std::ptrdiff_t width;    ///< pixels
    std::ptrdiff_t height;   ///< rows of the whole picture
    std::ptrdiff_t channels; ///< interleaved samples of a pixel
    std::ptrdiff_t distance; ///< of neighbours, in pixels and rows
    std::ptrdiff_t firstRow; ///< of the band
    std::ptrdiff_t endRow;   ///< the row after the band
    const Sample* rowsAbove; ///< what the `distance` rows before the band held before filtering
    const Sample* rowsBelow; ///< and those after it; both null at the picture's edges
    Sample* scratch;         ///< medianScratchSize() samples

    std::ptrdiff_t rowSamples() const { return width * channels; }
};

/// Room on either side of a row of sorted columns for the mirrored ones; keeps rows aligned.
constexpr std::ptrdiff_t medianMargin = 64;

constexpr std::ptrdiff_t roundedToMargin(std::ptrdiff_t samples)
{
    return (samples + medianMargin - 1) / medianMargin * medianMargin;
}

/// Three rows of sorted columns, and the rows that later ones still need as they were.
constexpr std::ptrdiff_t medianScratchSize(std::ptrdiff_t rowSamples, std::ptrdiff_t distance)
{
    const std::ptrdiff_t rounded = roundedToMargin(rowSamples);
    return 3 * (rounded + 2 * medianMargin) + (distance + 1) * rounded;
}

} // namespace orvimg
