#pragma once

#include <cstddef>

#include <orvimg/debayer/scratch.h>

namespace orvimg
{

/// A plane of intermediate values of one tile of a picture. Each row holds its even columns and
/// then its odd ones, so that the sites of one kind are neighbours in memory and a vector
/// computes nothing in vain.
class TilePlane
{
public:
    static constexpr int columns = 192; ///< of the tile
    static constexpr int rows = 64;
    static constexpr int halo = 12; ///< rows and columns known on either side

    static std::size_t scratchBytes() { return floats * sizeof(float) + Scratch::blockOverhead; }
    explicit TilePlane(Scratch& scratch)
        : origin(scratch.take<float>(floats) + halo * rowStride + leftMargin)
    {
    }

    /// \return the value at \p column of row \p row; those 2, 4 ... columns on follow.
    float* at(int row, int column) const
    {
        return origin + row * rowStride + (column & 1) * halfStride + (column >> 1);
    }

    /// The columns that a stage fills, as offsets to its first one; a vector may run over the end.
    static constexpr int firstStep = -halo / 2;
    static constexpr int endStep = (columns + halo) / 2;

private:
    static constexpr int leftMargin = 16;
    static constexpr int halfStride = leftMargin + endStep + 22; // 22: a vector and its reach
    static constexpr int rowStride = 2 * halfStride;
    static constexpr std::size_t floats =
        static_cast<std::size_t>(rowStride) * (rows + 2 * halo) + 2 * leftMargin;

    float* origin;
};

} // namespace orvimg
