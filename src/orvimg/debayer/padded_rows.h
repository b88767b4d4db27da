#pragma once

#include <orvimg/debayer/bayer_mosaic.h>
#include <orvimg/debayer/scratch.h>

namespace orvimg
{

/// Bytes of the longest vector that a kernel works with.
constexpr int longestVector = 64;

/// The ends of the rows in a window that rolls down a mosaic. They are copies, mirrored beyond the
/// mosaic, so that a kernel needs no border rules and may run over both ends by a vector and its
/// reach.
class PaddedRows
{
public:
    /// \param count rows held at a time
    static std::size_t scratchBytes(int width, int count);
    PaddedRows(const BayerMosaic& source, int count, Scratch& scratch);

    /// Holds the ends of row \p y, any row of the endless mirrored picture, in place of those of
    /// row y - count. They are whole for all vectors that run over an end or start within a
    /// vector's length of it; the samples between are left out.
    void load(int y);

    /// \return sample 0 of row \p y, which must be held.
    const std::uint8_t* row(int y) const { return rows + slot(y) * stride + margin; }

private:
    // Samples of the mirrored picture on either side of a row.
    static constexpr int margin = longestVector + 16;

    static std::size_t strideFor(int width);
    std::size_t slot(int y) const
    {
        // Rows start a little above the picture.
        return static_cast<std::size_t>(y + margin * count) % static_cast<std::size_t>(count);
    }
    std::uint8_t* target(int y) { return rows + slot(y) * stride + margin; }
    void loadWhole(int y);
    void mirrorEnds(const std::uint8_t* from, std::uint8_t* to) const;

    BayerMosaic mosaic;
    int count;
    std::size_t stride;
    std::uint8_t* rows;
};

} // namespace orvimg
