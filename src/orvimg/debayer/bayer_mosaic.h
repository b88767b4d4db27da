#pragma once

#include <cstdint>

#include <orvimg/mirror.h>

namespace orvimg
{

/// A raw picture, packed row after row. Each row alternates green with one of the chromas, red
/// or blue.
struct BayerMosaic {
    const std::uint8_t* samples;
    int width;
    int height;
    int redColumn; ///< 0 or 1: the column of the red sample within a 2x2 cell
    int redRow;    ///< 0 or 1: its row

    /// \return sample 0 of row \p y, any row of the endless mirrored picture.
    const std::uint8_t* row(int y) const { return samples + mirrored(y, height) * width; }
    bool isRedRow(int y) const { return ((y + redRow) & 1) == 0; }
    /// 0 or 1: where the chroma of row \p y starts.
    int chromaColumn(int y) const { return redColumn ^ ((y + redRow) & 1); }
};

} // namespace orvimg
