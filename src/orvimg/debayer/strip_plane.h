#pragma once

#include <cstddef>

#include <orvimg/debayer/scratch.h>

namespace orvimg
{

/// A plane of intermediate values of an upright strip of a picture, of which it holds the rows
/// of a window that rolls down. Each row holds its even columns and then its odd ones, so that
/// the sites of one kind are neighbours in memory and a vector computes nothing in vain.
class StripPlane
{
public:
    static constexpr int columns = 352;   ///< of the strip
    static constexpr int columnHalo = 16; ///< columns known left and right of it
    static constexpr int heldRows = 32;

    static std::size_t scratchBytes() { return floats * sizeof(float) + Scratch::blockOverhead; }
    explicit StripPlane(Scratch& scratch)
        : origin(scratch.take<float>(floats) + leftMargin)
    {
    }

    /// \return the value at \p column of row \p row; those 2, 4 ... columns on follow.
    float* at(int row, int column) const
    {
        const int slot = static_cast<int>(static_cast<unsigned>(row) % heldRows);
        return origin + slot * rowStride + (column & 1) * halfStride + (column >> 1);
    }

    /// The columns that a stage fills, as offsets to its first one: whole aligned vectors.
    static constexpr int firstStep = -columnHalo / 2;
    static constexpr int endStep = (columns + columnHalo) / 2;

private:
    static constexpr int leftMargin = 16; // stages look aside from the first column too
    // Aligned, and the rows of a column do not all fall into one set of the cache.
    static constexpr int halfStride = leftMargin + endStep + 24;
    static constexpr int rowStride = 2 * halfStride;
    static_assert(halfStride % 16 == 0);
    static constexpr std::size_t floats =
        static_cast<std::size_t>(rowStride) * heldRows + 2 * leftMargin;

    float* origin;
};

} // namespace orvimg
